// Searches, comparisons, case and hexadecimal digits of byte strings, each with every set of hot
// loops, beside the plain models.
#include "charproc.h"
#include "fuzz/fuzz.h"
#include "tests/reference/text_model.h"

namespace {

void checkCase(const std::string& text) {
  std::string upper = text;
  std::string lower = text;
  strup_ascii(upper.data(), upper.data() + upper.size());
  strlw_ascii(lower.data(), lower.data() + lower.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const unsigned char c = reference::byteAt(text, i);
    fuzz::expect(reference::byteAt(upper, i) == chr_upper_table_ascii[c]);
    fuzz::expect(reference::byteAt(lower, i) == chr_lower_table_ascii[c]);
  }
}

void check(const std::string& a, const std::string& b) {
  const auto na = static_cast<unsigned int>(a.size());
  const auto nb = static_cast<unsigned int>(b.size());
  const char* const pattern = a.data();
  const char* const text = b.data();
  fuzz::expect(fuzz::offsetIn(b, strfind(text, nb, pattern, na)) == reference::find(b, a, false));
  fuzz::expect(fuzz::offsetIn(b, strfind_i_ascii(text, nb, pattern, na)) ==
               reference::find(b, a, true));
  fuzz::expect(strcmp_i_ascii(pattern, pattern + na, text, text + nb) ==
               reference::compareNoCase(a, b));
  fuzz::expect(streq_i_ascii(pattern, na, text, nb) == reference::equalNoCase(a, b));
  fuzz::expect(reference::sign(strcompare(pattern, na, text, nb)) == reference::sign(a.compare(b)));
  checkCase(b);
  std::string hex(2 * b.size(), 0);
  bin2str(text, static_cast<int>(nb), hex.data());
  std::string back(b.size(), 'x');
  str2bin(hex.c_str(), back.data(), static_cast<int>(nb));
  fuzz::expect(back == b);
  str2bin(text, back.data(), static_cast<int>(nb));  // any bytes; they end with a 0
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  return fuzz::withTwoTexts(data, size, check);
}
