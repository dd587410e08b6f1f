// Console output in UTF-8 and the command line.
//
// Streams and command lines are UTF-8 byte strings already, so nothing is converted. One buffer,
// made by the first formatted output, serves all later ones.

#include "utf8io.h"

#include <cstring>

#include "charproc.h"
#include "charr.h"
#include "core/init_order.h"
#include "platform/locale.h"
#include "platform/platform.h"

namespace {

constexpr std::size_t formatRoom = 32768;  // the terminator included

__attribute__((init_priority(cc::InitConsoleBuffer))) ChArr conversionBuffer1;

// The shared buffer: `formatRoom` bytes and one more, which stays 0.
char* formatBuffer() {
  if (!conversionBuffer1.get()) conversionBuffer1.adopt(new char[formatRoom + 1]());
  return const_cast<char*>(conversionBuffer1.get());
}

}  // namespace

void utf8printf_s(FILE* stream, const char* text) {
  if (text && *text) cc::platform::writeStreamText(stream, text);
}

void utf8printf_s(FILE* stream, const char* begin, const char* end) {
  if (!begin || begin >= end) return;
  const std::size_t n = strnlen(begin, static_cast<std::size_t>(end - begin));
  if (n != 0) cc::platform::writeStream(stream, begin, n);
}

void utf8printf_va(FILE* stream, const char* format, va_list args) {
  char* text = formatBuffer();
  text[0] = 0;
  cc::locale::formatText(text, formatRoom, format, args);
  utf8printf_s(stream, text);
}

void utf8printf(const char* format, ...) {
  va_list args;
  va_start(args, format);
  utf8printf_va(stdout, format, args);
  va_end(args);
}

void utf8printf(FILE* stream, const char* format, ...) {
  va_list args;
  va_start(args, format);
  utf8printf_va(stream, format, args);
  va_end(args);
}

char** utf8args(int, char** argv, StringVector<char>& args) {
  args.removeAll();
  for (; *argv; ++argv) {
    ArrayHolder<char> copy(strnew(*argv, static_cast<unsigned int>(std::strlen(*argv))));
    args.append(copy.get());
    copy.steal();
  }
  return args.getData();
}
