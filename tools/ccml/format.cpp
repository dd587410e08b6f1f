// Two walks: the first finds out what each element holds, the second writes. What the writer would
// change is copied: elements of plain text are written on one line, mixed elements as they stand.
#include "format.h"

#include <vector>

#include "check.h"

namespace ccml {

namespace {

enum class Content : char {
  Children,  // elements, comments and instructions, with nothing but white space between
  Text,      // text alone, or nothing
  Mixed,     // text and markup
};

// What an element holds, and where it ends.
struct Element {
  Content content = Content::Text;
  unsigned int end = 0;
};

// The elements that have an end tag, in the order of their start tags.
std::vector<Element> readElements(Document& doc) {
  std::vector<Element> elements;
  std::vector<std::size_t> open;
  MLDoc::Token token;
  const char* behind = doc.begin() + doc.offset();
  while (doc.step(token)) {
    const bool ends = token.type == MLDoc::Token::Element && !token.opening;
    if (!open.empty()) {
      Element& element = elements[open.back()];
      const bool blank = isBlank(behind, token.tag.begin);
      if (!ends && element.content == Content::Text)
        element.content = blank ? Content::Children : Content::Mixed;
      if (!blank && element.content == Content::Children) element.content = Content::Mixed;
    }
    behind = token.tag.end;
    if (ends && !open.empty()) {
      elements[open.back()].end = doc.offsetOf(token.tag.end);
      open.pop_back();
    } else if (token.type == MLDoc::Token::Element && token.opening && !token.closing) {
      open.push_back(elements.size());
      elements.emplace_back();
    }
  }
  return elements;
}

class Writer {
 public:
  Writer(Document& document, const Layout& layout, Bag& bag)
      : doc(document), target(bag), elements(readElements(document)) {
    out.multiLine = layout.multiLine;
    out.indentSize = layout.indentSize;
    out.begin(&target);
  }

  void run(unsigned int start) {
    raw(doc.begin(), doc.begin() + start);
    doc.seek(start);
    while (doc.step(token)) {
      if (token.type != MLDoc::Token::Element) {
        copyLine(token.tag.begin, token.tag.end);
      } else if (token.opening) {
        element();
      } else {
        out.endItem(nameOf(token).c_str());
      }
    }
  }

 private:
  static std::string nameOf(const MLDoc::Token& token) {
    return std::string(std::string_view(token.name));
  }

  void raw(const char* begin, const char* end) { out.write(begin, static_cast<int>(end - begin)); }

  void copyLine(const char* begin, const char* end) {
    out.writeIndent();
    raw(begin, end);
    out.write(out.newLine);
  }

  void element() {
    if (token.closing) {
      beginItem();
      out.endItem(nullptr);
      return;
    }
    const Element here = elements[next++];
    if (here.content == Content::Children) {
      beginItem();
      out.beginChildren();
    } else if (here.content == Content::Text) {
      textElement(here);
    } else {
      copyLine(token.tag.begin, doc.begin() + here.end);
      skipTo(here);
    }
  }

  void beginItem() {
    readTag(doc, token, tag);
    out.beginItem(nameOf(token).c_str());
    for (const MLDoc::Attribute& attribute : tag.attributes) {
      const std::string value = doc.decoded(attribute.value);
      out.writePairAttr(std::string(std::string_view(attribute.name)).c_str(),
                        ChPair(value.data(), value.data() + value.size()));
    }
    doc.seek(doc.offsetOf(token.tag.end));
  }

  // The writer starts children on a new line, which would become part of the text. So the tag is
  // written as that of an empty element, and its end exchanged for the text and the end tag.
  void textElement(const Element& here) {
    const std::string name = nameOf(token);
    beginItem();
    out.endItem(nullptr);
    constexpr int emptyEnd = 3;  // "/>" and the line end
    target.setPosition(target.getSize() - emptyEnd);
    out.write(">");
    MLDoc::Token element = token;
    const ChPair text = doc.content(element);
    raw(text.begin, text.end);
    out.write(("</" + name + ">").c_str());
    out.write(out.newLine);
    doc.seek(here.end);
  }

  // Goes on behind an element whose content was copied.
  void skipTo(const Element& here) {
    while (doc.offset() < here.end && doc.step(token)) {
      if (token.type == MLDoc::Token::Element && token.opening && !token.closing &&
          doc.offset() < here.end)
        ++next;
    }
    doc.seek(here.end);
  }

  Document& doc;
  Bag& target;
  std::vector<Element> elements;
  std::size_t next = 0;
  MLDocOut out;
  MLDoc::Token token;
  Tag tag;
};

}  // namespace

bool format(Document& document, const Layout& layout, Bag& out, Findings& findings) {
  const unsigned int start = document.offset();
  check(document, true, findings);
  for (const Finding& found : findings) {
    if (found.severity == Severity::Error) return false;
  }
  document.seek(start);
  Writer(document, layout, out).run(start);
  return true;
}

}  // namespace ccml
