/// @file
/// The C library's own conversions in the "C" locale, whatever the process and the thread use.
#pragma once

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace cc::test {

/// Calls `action` with this thread in the "C" locale.
template <class Action>
auto inPlainLocale(Action&& action) {
  static const locale_t plain = ::newlocale(LC_ALL_MASK, "C", nullptr);
  const locale_t old = ::uselocale(plain);
  const auto result = action();
  ::uselocale(old);
  return result;
}

/// strtod.
inline double plainStrtod(const char* text, char** end = nullptr) {
  return inPlainLocale([&] { return std::strtod(text, end); });
}

/// snprintf of one number.
inline std::string plainFormat(const char* format, double value) {
  char text[512];
  inPlainLocale([&] { return std::snprintf(text, sizeof text, format, value); });
  return text;
}

}  // namespace cc::test
