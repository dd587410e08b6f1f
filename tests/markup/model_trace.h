/// @file
/// The walk that reader_trace.h writes down, made by the plain model of the reader.
#pragma once

#include <string>
#include <string_view>

#include "tests/reference/markup_model.h"

namespace cc::test {

class ModelTrace {
 public:
  explicit ModelTrace(std::string_view content) : doc(std::string(content)) {
    doc.warning = [this](const reference::MarkupAttribute& attribute) {
      out += " w " + str(attribute.name);
    };
  }

  std::string walk() {
    reference::MarkupToken token;
    bool more = true;
    while (more) {
      const int error = errorOf([&] { more = doc.step(token); });
      if (error >= 0) token.tag.end = doc.position;
      if (more) traceToken(token, error < 0);
      traceError(error);
      if (error < 0 && more) traceAttributes(token);
      out += more ? "\n" : "";
    }
    return out + "end @" + std::to_string(doc.position) + " d" + std::to_string(token.depth);
  }

 private:
  template <class Action>
  static int errorOf(Action&& action) {
    try {
      action();
    } catch (int number) {
      return number;
    }
    return -1;
  }

  std::string str(reference::Range range) const {
    return doc.text.substr(range.begin, range.end - range.begin);
  }

  void traceError(int error) {
    if (error < 0) return;
    out += " !" + std::to_string(error) + " @" + std::to_string(doc.position) + " " + doc.place();
  }

  void traceToken(const reference::MarkupToken& token, bool whole) {
    out += "EIC"[token.type];
    if (token.type == 0 && whole) out += " " + str(token.name);
    if (token.type == 0) {
      out += " d" + std::to_string(token.depth) + " ";
      if (token.opening) out += "o";
      if (token.closing && (whole || !token.opening)) out += "c";
    }
    out += " [" + std::to_string(token.tag.begin) + "," + std::to_string(token.tag.end) + ")";
  }

  void traceAttributes(const reference::MarkupToken& token) {
    reference::MarkupAttribute found;
    bool more = true;
    while (more) {
      const int error = errorOf([&] { more = doc.attribute(token, found); });
      traceError(error);
      if (error >= 0) {
        doc.position = token.tag.end;
        return;
      }
      if (more) out += " " + str(found.name) + "=" + str(found.value);
    }
  }

  reference::MarkupModel doc;
  std::string out;
};

}  // namespace cc::test
