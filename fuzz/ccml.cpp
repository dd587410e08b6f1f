// A document through the markup tool: checked, outlined, queried with the path in the first part of
// the input, and formatted, which loses nothing and changes nothing the second time.
#include "fuzz/document_lines.h"
#include "fuzz/fuzz.h"
#include "tools/ccml/check.h"
#include "tools/ccml/format.h"
#include "tools/ccml/outline.h"
#include "tools/ccml/query.h"

namespace {

template <class Action>
void with(std::string_view text, Action action) {
  ccml::Document document;
  document.load("", text.data(), static_cast<int>(text.size()));
  ccml::Findings findings;
  try {
    action(document, findings);
  } catch (const TTT&) {
    // The document has errors.
  }
  for (const ccml::Finding& found : findings) fuzz::expect(found.offset <= document.size());
}

std::string formatted(std::string_view text, const ccml::Layout& layout) {
  Bag out;
  bool good = false;
  with(text, [&](auto& doc, auto& found) { good = ccml::format(doc, layout, out, found); });
  fuzz::expect(good || out.getSize() == 0);
  return {out.getBuffer(), static_cast<std::size_t>(out.getSize())};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  fuzz::silence();
  fuzz::Input input(data, size);
  const ccml::Layout layout = {input.number(0, 1) == 1, input.number(0, 2)};
  ccml::Path path;
  const bool good = path.parse(input.part());
  const std::string_view text = input.rest();
  for (const auto form : {tools::Format::Text, tools::Format::Json})
    with(text, [&](auto& doc, auto& found) {
      ccml::outline(doc, "d", form, found);
      ccml::Printer(form).document("d", doc, found);
    });
  if (good) with(text, [&](auto& doc, auto&) { ccml::query(doc, path); });
  const std::string once = formatted(text, layout);
  fuzz::expect(once.empty() || fuzz::linesOf(once) == fuzz::linesOf(text));
  fuzz::expect(once.empty() || formatted(once, layout) == once);
  return 0;
}
