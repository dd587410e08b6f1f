// Elements by path and attributes by name.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "document.h"

namespace ccml {

// A path such as "mime-type/glob/@pattern": element names from the top, "*" for any, and an
// attribute at the end if it is one that is wanted.
struct Path {
  std::vector<std::string> elements;
  std::string attribute;

  // False when the text is no path.
  bool parse(std::string_view text);
};

// The values of everything at the path, in the document's order: of an attribute its value and of
// an element of plain text its text, both with entities decoded; of any other element its markup.
// Throws the reader's errors.
std::vector<std::string> query(Document& document, const Path& path);

}  // namespace ccml
