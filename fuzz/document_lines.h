/// @file
/// What a document says, whatever its layout: names, attributes, texts and ends, one a line.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tests/markup/reader_trace.h"

namespace fuzz {

using Lines = std::vector<std::string>;

/// `text` without white space at its ends.
inline std::string trimmed(const std::string& text) {
  const char* const space = " \t\r\n";
  const std::size_t first = text.find_first_not_of(space);
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(space) + 1 - first);
}

/// The value of an attribute as the reader gives it: no line breaks at its ends, spaces for control
/// bytes.
inline std::string attributeValue(const std::string& text) {
  const std::size_t first = text.find_first_not_of("\r\n");
  if (first == std::string::npos) return {};
  std::string value = text.substr(first, text.find_last_not_of("\r\n") + 1 - first);
  for (char& c : value) c = static_cast<unsigned char>(c) < 0x20 ? ' ' : c;
  return value;
}

/// The lines of a document without errors.
inline Lines linesOf(std::string_view text) {
  cc::test::OpenDoc doc(text);
  Lines lines;
  const auto decoded = [&](const ChPair& raw) {
    ChArr out;
    doc.convertEscape(raw, out);
    return std::string(out.c_str());
  };
  const char* behind = doc.begin();
  MLDoc::Token token;
  MLDoc::Attribute attribute;
  while (doc.step(token)) {
    const std::string before = trimmed(decoded(ChPair(behind, token.tag.begin)));
    if (!before.empty()) lines.push_back(before);
    behind = token.tag.end;
    if (token.type != MLDoc::Token::Element) continue;
    if (token.opening) lines.push_back("<" + cc::test::str(token.name));
    while (token.opening && doc.attribute(token, attribute))
      lines.push_back(cc::test::str(attribute.name) + "=" + decoded(attribute.value));
    if (token.closing) lines.emplace_back(">");
  }
  return lines;
}

}  // namespace fuzz
