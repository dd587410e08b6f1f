// The parsers of zero-terminated numbers beside the plain models.
#include <climits>

#include "charproc.h"
#include "fuzz/fuzz.h"
#include "tests/reference/number_model.h"

using fuzz::expectParsed;
using reference::inRange;
using reference::wholeDigits;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  const std::string text(data, data + size);
  const char* const s = text.c_str();
  const auto number = reference::wholeDecimal(s, true);
  constexpr unsigned long long intMin = INT_MAX + 1ULL;
  constexpr unsigned long long longMin = LLONG_MAX + 1ULL;
  expectParsed<unsigned int>([&](auto& v) { return strtouint(s, &v); },
                             inRange(number, UINT_MAX, UINT_MAX));
  expectParsed<int>([&](auto& v) { return strtoint(s, &v); }, inRange(number, intMin, INT_MAX));
  expectParsed<long long>([&](auto& v) { return strtolonglong(s, &v); },
                          inRange(number, longMin, LLONG_MAX));
  expectParsed<unsigned long long>([&](auto& v) { return strtoqword(s, &v); },
                                   inRange(number, ULLONG_MAX, ULLONG_MAX));
  expectParsed<double>([&](auto& v) { return strtodouble(s, &v); },
                       reference::wholeDouble(s, std::strlen(s)));
  if (*s != 0 && *s != 'H')
    expectParsed<unsigned int>([&](auto& v) { return strtohex(s, &v); }, wholeDigits(s, 16, 'H'));
  if (*s != 0 && *s != 'B')
    expectParsed<unsigned int>([&](auto& v) { return strtobin(s, &v); }, wholeDigits(s, 2, 'B'));
  return 0;
}
