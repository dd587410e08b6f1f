// The parsers of ranges beside the plain models. The first two bytes are the limit and the
// separator of `strtonumber`.
#include <climits>

#include "charproc.h"
#include "fuzz/fuzz.h"
#include "tests/reference/number_model.h"

using reference::inRange;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  fuzz::Input input(data, size);
  const int limit = input.number(-1, 14);
  const char sep = static_cast<char>(input.byte());
  const std::string_view text = input.rest();
  const char* const begin = text.data();
  const char* const end = begin + text.size();
  auto number = reference::wholeDecimal(text, false);
  if (text.size() > 20) number.reset();
  fuzz::expectParsed<int>([&](auto& v) { return strtoint(begin, end, v); },
                          inRange(number, INT_MAX, INT_MAX));
  fuzz::expectParsed<long long>([&](auto& v) { return strtoint64(begin, end, v); },
                                inRange(number, LLONG_MAX, LLONG_MAX));

  const std::string_view field = text.substr(0, text.find(sep));
  const std::size_t ended = field.size() < text.size();
  std::optional<unsigned int> expected(0);
  for (const char c : field) *expected = *expected * 10 + static_cast<unsigned int>(c - '0');
  const bool digits = !field.empty() && field.find_first_not_of("0123456789") == field.npos;
  const bool fits = limit >= 0 && field.size() <= static_cast<std::size_t>(limit) + 1 - ended;
  if (!text.empty() && (!digits || !fits)) expected.reset();
  const char* p = begin;
  fuzz::expectParsed<unsigned int>([&](auto& v) { return strtonumber(p, end, v, limit, sep); },
                                   expected);
  fuzz::expect(p == begin + (expected ? field.size() + ended : 0));
  return 0;
}
