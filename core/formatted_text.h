// The text of one `printf`-style call, as strings, bags and documents take it.
//
// It is formatted on the stack, so that nothing is allocated before the text is known and the
// arguments may point into whatever is about to receive it.
#pragma once

#include <cstdarg>

#include "common_core_api.h"
#include "platform/locale.h"

namespace cc {

// Zero-terminated, cut to 4,095 bytes; empty when the formatting fails.
class FormattedText {
 public:
  FormattedText(const char* fmt, va_list args) COMMON_CORE_PRINTF(2, 0) {
    if (locale::formatText(text, sizeof text - 1, fmt, args) < 0) text[0] = 0;
    text[sizeof text - 1] = 0;
  }
  const char* get() const { return text; }

 private:
  char text[4097];
};

}  // namespace cc
