// A document through the markup tool: checked, outlined, queried with the path in the first part of
// the input, and formatted, which loses nothing and changes nothing the second time.
#include "fuzz/ccml_actions.h"
#include "fuzz/document_lines.h"
#include "tools/ccml/outline.h"
#include "tools/ccml/query.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  fuzz::silence();
  fuzz::Input input(data, size);
  const ccml::Layout layout = {input.number(0, 1) == 1, input.number(0, 2)};
  ccml::Path path;
  const bool good = path.parse(input.part());
  const std::string_view text = input.rest();
  for (const auto form : {tools::Format::Text, tools::Format::Json})
    fuzz::withDocument(text, [&](auto& doc, auto& found) {
      ccml::outline(doc, "d", form, found);
      ccml::Printer(form).document("d", doc, found);
    });
  if (good) fuzz::withDocument(text, [&](auto& doc, auto&) { ccml::query(doc, path); });
  const std::string once = fuzz::formatted(text, layout);
  fuzz::expect(once.empty() || fuzz::linesOf(once) == fuzz::linesOf(text));
  fuzz::expect(once.empty() || fuzz::formatted(once, layout) == once);
  return 0;
}
