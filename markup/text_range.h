// Where a pointer lies in a document's text.
#pragma once

#include <functional>

namespace cc {

// True when `p` points to a byte of the `size` bytes at `text`, or just past the last.
inline bool isInText(const char* text, unsigned int size, const char* p) {
  constexpr std::less_equal<const char*> notAbove;
  return text && p && notAbove(text, p) && notAbove(p, text + size);
}

// The offset of `p` in the text, or `otherwise` for a pointer to elsewhere.
inline unsigned int offsetInText(const char* text, unsigned int size, const char* p,
                                 unsigned int otherwise) {
  return isInText(text, size, p) ? static_cast<unsigned int>(p - text) : otherwise;
}

}  // namespace cc
