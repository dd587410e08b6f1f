// Case, comparison and search of UTF-8 text, with every set of hot loops, beside the plain models.
#include "fuzz/fuzz.h"
#include "tests/reference/text_model.h"
#include "utf8proc.h"

namespace {

void check(const std::string& a, const std::string& b) {
  std::string text = b;
  strup_utf8(text.data(), text.data() + text.size());
  fuzz::expect(text == reference::mapCase(b, chr_upper_table_utf16));
  text = b;
  strlw_utf8(text.data(), text.data() + text.size());
  fuzz::expect(text == reference::mapCase(b, chr_lower_table_utf16));
  const char* const aEnd = a.data() + a.size();
  const char* const bEnd = b.data() + b.size();
  fuzz::expect(strcmp_i_utf8(a.data(), aEnd, b.data(), bEnd) == reference::compareNoCaseUtf8(a, b));
  const char* const found = strfind_i_utf8(b.data(), bEnd, a.data(), aEnd);
  fuzz::expect(fuzz::offsetIn(b, found) == reference::findNoCaseUtf8(b, a));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  return fuzz::withTwoTexts(data, size, check);
}
