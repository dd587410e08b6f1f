// Forwards to the C library.

#include "platform/locale.h"

#include <langinfo.h>

#include <cctype>
#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwctype>

namespace cc::locale {

const char* characterType() { return std::setlocale(LC_CTYPE, nullptr); }

void setCharacterTypeFromEnvironment() { std::setlocale(LC_CTYPE, ""); }

void setNumericToC() { std::setlocale(LC_NUMERIC, "C"); }

void requireNumericC() {
  if (std::strcmp(std::setlocale(LC_NUMERIC, nullptr), "C") != 0) setNumericToC();
}

int lower(int byte) { return std::tolower(byte); }
int upper(int byte) { return std::toupper(byte); }
bool isLower(int byte) { return std::islower(byte) != 0; }
bool isUpper(int byte) { return std::isupper(byte) != 0; }
unsigned int lowerWide(unsigned int character) { return std::towlower(character); }
unsigned int upperWide(unsigned int character) { return std::towupper(character); }

long long parseSigned(const char* s, char** end) { return std::strtoll(s, end, 10); }
unsigned long long parseUnsigned(const char* s, char** end) { return std::strtoull(s, end, 10); }

double parseDouble(const char* s, char** end) {
  const int before = errno;
  static const locale_t plain = newlocale(LC_ALL_MASK, "C", nullptr);
  errno = before;  // a first call that waits for another thread's changes it
  return strtod_l(s, end, plain);
}

int formatText(char* buf, std::size_t size, const char* format, va_list args) {
  if (std::strcmp(nl_langinfo(RADIXCHAR), ".") == 0) {
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): it loses sight of the caller's
    return std::vsnprintf(buf, size, format, args);
  }
  const locale_t own = uselocale(locale_t());
  const locale_t copy = duplocale(own);
  const locale_t pointed = copy ? newlocale(LC_NUMERIC_MASK, "C", copy) : locale_t();
  if (pointed) uselocale(pointed);
  // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): as above
  const int length = std::vsnprintf(buf, size, format, args);
  uselocale(own);
  if (copy) freelocale(pointed ? pointed : copy);
  return length;
}

bool localTime(std::time_t t, std::tm& out) {
  tzset();  // which localtime does, but localtime_r need not
  return localtime_r(&t, &out) != nullptr;
}

std::size_t formatTime(char* buf, std::size_t size, const char* format, const std::tm& time) {
  return std::strftime(buf, size, format, &time);
}

}  // namespace cc::locale
