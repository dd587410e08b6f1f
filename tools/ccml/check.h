// Walks a document to its end and collects everything that is wrong with it.
#pragma once

#include "document.h"
#include "findings.h"

namespace ccml {

// Elements may be nested so deep in a strict check, and where the tool builds a tree.
constexpr int maxDepth = 1000;

// All failures and warnings of the library's reader. With `strict` also what the reader lets pass.
void check(Document& document, bool strict, Findings& findings);

}  // namespace ccml
