// One walk that knows how many of the open elements match the path from the top on.
#include "query.h"

namespace ccml {

bool Path::parse(std::string_view text) {
  if (!text.empty() && text[0] == '/') text.remove_prefix(1);
  while (!text.empty()) {
    const std::size_t slash = text.find('/');
    const std::string_view part = text.substr(0, slash);
    text = slash == std::string_view::npos ? std::string_view() : text.substr(slash + 1);
    if (part.empty() || (slash != std::string_view::npos && text.empty())) return false;
    if (part[0] == '@') {
      attribute = part.substr(1);
      return text.empty() && !attribute.empty() && !elements.empty();
    }
    elements.emplace_back(part);
  }
  return !elements.empty();
}

namespace {

class Query {
 public:
  Query(Document& document, const Path& wanted) : doc(document), path(wanted) {}

  std::vector<std::string> run() {
    while (doc.step(token)) {
      if (token.type != MLDoc::Token::Element) {
        plain = false;
      } else if (token.opening) {
        start();
      } else {
        end();
      }
    }
    return std::move(values);
  }

 private:
  void start() {
    plain = false;
    const std::size_t level = depth;
    if (!token.closing) ++depth;
    if (matched != level || level >= path.elements.size()) return;
    const std::string& name = path.elements[level];
    if (name != "*" && name != std::string_view(token.name)) return;
    if (!token.closing) ++matched;
    if (level + 1 == path.elements.size()) hit();
  }

  void hit() {
    if (!path.attribute.empty()) {
      const ChPair value = doc.getAttributeValue(token, path.attribute.c_str());
      if (value.begin) values.push_back(doc.decoded(value));
    } else if (token.closing) {
      values.emplace_back();
    } else {
      element = token.tag;
      plain = true;
    }
  }

  void end() {
    if (depth == 0) return;
    if (matched == depth--) {
      if (--matched + 1 == path.elements.size() && path.attribute.empty()) take();
    }
    plain = false;
  }

  void take() {
    const ChPair text(element.end, token.tag.begin);
    values.push_back(plain ? doc.decoded(text)
                           : std::string(std::string_view(ChPair(element.begin, token.tag.end))));
  }

  Document& doc;
  const Path& path;
  MLDoc::Token token;
  std::vector<std::string> values;
  std::size_t depth = 0;    // open elements
  std::size_t matched = 0;  // how many of them, from the top on, match the path
  ChPair element;           // start tag of the element at the path that is open
  bool plain = false;       // that element holds only text so far
};

}  // namespace

std::vector<std::string> query(Document& document, const Path& path) {
  return Query(document, path).run();
}

}  // namespace ccml
