// Searches, comparisons, case and hexadecimal digits of byte strings, each with every set of hot
// loops, beside the plain models.
#include "charproc.h"
#include "fuzz/fuzz.h"
#include "tests/reference/text_model.h"

using fuzz::expect;

static void check(const std::string& a, const std::string& b) {
  const auto na = static_cast<unsigned int>(a.size());
  const auto nb = static_cast<unsigned int>(b.size());
  const char* const pattern = a.data();
  const char* const text = b.data();
  expect(fuzz::offsetIn(b, strfind(text, nb, pattern, na)) == reference::find(b, a, false));
  expect(fuzz::offsetIn(b, strfind_i_ascii(text, nb, pattern, na)) == reference::find(b, a, true));
  expect(strcmp_i_ascii(pattern, pattern + na, text, text + nb) == reference::compareNoCase(a, b));
  expect(streq_i_ascii(pattern, na, text, nb) == (reference::compareNoCase(a, b) == 0));
  expect(reference::sign(strcompare(pattern, na, text, nb)) == reference::sign(a.compare(b)));
  std::string upper = b, lower = b;
  strup_ascii(upper.data(), upper.data() + nb);
  strlw_ascii(lower.data(), lower.data() + nb);
  for (std::size_t i = 0; i < b.size(); ++i) {
    const unsigned char c = reference::byteAt(b, i);
    expect(reference::byteAt(upper, i) == chr_upper_table_ascii[c]);
    expect(reference::byteAt(lower, i) == chr_lower_table_ascii[c]);
  }
  std::string hex(2 * b.size(), 0), back(b.size(), 'x');
  bin2str(text, static_cast<int>(nb), hex.data());
  str2bin(hex.c_str(), back.data(), static_cast<int>(nb));
  expect(back == b);
  str2bin(text, back.data(), static_cast<int>(nb));  // any bytes; they end with a 0
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  return fuzz::withTwoTexts(data, size, check);
}
