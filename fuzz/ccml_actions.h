/// @file
/// What the markup tool does with a document, where any of it may be refused.
#pragma once

#include "fuzz/fuzz.h"
#include "tools/ccml/check.h"
#include "tools/ccml/format.h"

namespace fuzz {

/// Calls `action` with a document and the findings that it may add to, which lie inside of it.
template <class Action>
void withDocument(std::string_view text, Action action) {
  ccml::Document document;
  document.load("", text.data(), static_cast<int>(text.size()));
  ccml::Findings findings;
  try {
    action(document, findings);
  } catch (const TTT&) {
    // The document has errors.
  }
  for (const ccml::Finding& found : findings) expect(found.offset <= document.size());
}

/// The text in a layout; empty where it has errors.
inline std::string formatted(std::string_view text, const ccml::Layout& layout) {
  Bag out;
  bool good = false;
  withDocument(text, [&](auto& doc, auto& found) { good = ccml::format(doc, layout, out, found); });
  expect(good || out.getSize() == 0);
  return {out.getBuffer(), static_cast<std::size_t>(out.getSize())};
}

}  // namespace fuzz
