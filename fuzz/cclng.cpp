// A document through the dictionary tool: compiled, decompiled and compiled again, it gives the
// same bytes. An input that begins with a 0 byte is a dictionary file.
#include <stdexcept>

#include "fuzz/fuzz.h"
#include "tests/support/temp_folder.h"
#include "tools/cclng/catalogue.h"
#include "tools/cclng/commands.h"
#include "tools/common/diagnostics.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  fuzz::silence();
  static const cc::test::TempFolder folder;
  static const std::string document = folder / "document";
  static const std::string dictionary = folder / "dictionary";
  static const std::string copy = folder / "copy";
  const std::string bytes(data, data + size);
  int made = tools::ExitClean;
  if (size > 0 && data[0] == 0) {
    cc::test::putFile(dictionary, bytes);
    made = cclng::decompile(dictionary, document);
    if (made == tools::ExitClean) made = cclng::check({document}, "", tools::Format::Text);
  } else {
    cc::test::putFile(document, bytes);
    fuzz::expect(cclng::check({document}, document, tools::Format::Sarif) <= tools::ExitFindings);
    made = cclng::compile(document, dictionary, tools::ByteOrder::Big);
    if (made == tools::ExitClean) fuzz::expect(cclng::decompile(dictionary, document) == made);
  }
  if (made != tools::ExitClean) return 0;
  const tools::ByteOrder order =
      bytes[0] == 0 && bytes[4] == 'L' ? tools::ByteOrder::Little : tools::ByteOrder::Big;
  fuzz::expect(cclng::compile(document, copy, order) == tools::ExitClean);
  fuzz::expect(cc::test::fileBytes(copy) == cc::test::fileBytes(dictionary));
  return 0;
}
