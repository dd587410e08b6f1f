// Rewrites a document in one of the writer's layouts.
#pragma once

#include "bag.h"
#include "document.h"
#include "findings.h"

namespace ccml {

struct Layout {
  bool multiLine = false;  // every attribute on a line of its own
  int indentSize = 2;      // spaces per level; 0: one TAB
};

// Writes the document anew into `out`. Names, attributes, text, comments and instructions stay as
// they are, and so does every element that mixes text with markup; only the white space between
// elements and inside tags changes. False, with the reasons in `findings` and nothing written, for
// a document that is not inside the format.
bool format(Document& document, const Layout& layout, Bag& out, Findings& findings);

}  // namespace ccml
