// The tree of a document's elements, those of the same name under the same parents as one.
#pragma once

#include <string>

#include "document.h"
#include "findings.h"

namespace ccml {

// Prints the tree with how often each element and attribute stands in the document. False, with the
// failures in `findings` and nothing printed, when the document cannot be walked.
bool outline(Document& document, const std::string& path, Format format, Findings& findings);

}  // namespace ccml
