/// @file
/// The walk that reader_trace.h writes down, made by the plain model of the reader.
#pragma once

#include <string>
#include <string_view>

#include "tests/markup/reader_trace.h"
#include "tests/reference/markup_model.h"

namespace cc::test {

/// The model with the tokens and attributes of the reader.
class ModelDoc {
 public:
  explicit ModelDoc(std::string_view content) : doc(std::string(content)) {
    doc.warning = [this](const reference::MarkupAttribute& found) {
      out += " w " + str(slice(found.name));
    };
  }

  bool step(MLDoc::Token& token) {
    bool more = true;
    const int error = errorOf([&] { more = doc.step(now); });
    if (error >= 0) now.tag.end = doc.position;
    if (more) token.tag = slice(now.tag);
    token.name = slice(now.name);
    token.type = static_cast<decltype(token.type)>(now.type);
    token.depth = now.depth;
    token.opening = now.opening;
    token.closing = now.closing;
    return error >= 0 ? throw error : more;
  }
  bool attribute(const MLDoc::Token& /*token*/, MLDoc::Attribute& attribute) {
    reference::MarkupAttribute found;
    const bool more = doc.attribute(now, found);
    attribute.name = slice(found.name);
    attribute.value = slice(found.value);
    return more;
  }
  std::size_t at() const { return doc.position; }
  void moveTo(unsigned int offset) { doc.position = offset; }
  const char* begin() const { return doc.text.data(); }
  std::string place() const { return doc.place(); }
  std::string out;

 private:
  ChPair slice(reference::Range range) const {
    return {begin() + range.begin, begin() + range.end};
  }

  reference::MarkupModel doc;
  reference::MarkupToken now;
};

/// The walk over `content`.
inline std::string modelTraceOf(std::string_view content) {
  ModelDoc doc(content);
  return Walk(doc).trace();
}

}  // namespace cc::test
