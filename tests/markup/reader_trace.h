/// @file
/// A whole walk over a document as text: every token, attribute, warning and error with its place.
///
///     E a d1 o [0,9) x=1      an element: name, depth, opening and closing, its tag, attributes
///     I a d1  [0,5) / C ...   an instruction, a comment: with the name of the element before
///     w x                     a warning about an attribute, before it
///     !14 @2 1:3              an error with the offset, line and column where reading stopped
///
/// After an error the walk goes on: behind the tag, or where the tokenizer stopped.
#pragma once

#include <cstring>
#include <string>
#include <string_view>

#include "loc/message_numbers.h"
#include "mlproc.h"
#include "tests/support/guarded_buffer.h"

namespace cc::test {

/// The number of the error in `message` of a document with or without a name.
inline int errorNumber(const TTT& message) {
  Bag bytes(message.getBag());
  bytes.setPosition(0);
  int words[6] = {};
  bytes.getData(words, 12);
  if (words[2] == MsgDocumentHeading) bytes.getData(words + 3, 12);
  return words[2] == MsgDocumentHeading ? words[5] : words[2];
}

/// A document whose state can be seen.
class OpenDoc : public MLDoc {
 public:
  OpenDoc() = default;
  explicit OpenDoc(std::string_view content) { put(content); }
  void put(std::string_view content) {
    load("doc", content.data(), static_cast<int>(content.size()));
  }
  unsigned int at() const { return position; }
  void moveTo(unsigned int offset) { position = offset; }
  unsigned int size() const { return textSize; }
  const char* begin() const { return text; }
  std::string content() const { return {text, textSize}; }
  const char* documentName() const { return name.get(); }
  std::string place() const {
    int line = 0;
    int column = 0;
    getPosition(line, column);
    return std::to_string(line) + ":" + std::to_string(column);
  }
  using MLDoc::content;
};

/// `slice` as a string.
inline std::string str(const ChPair& slice) { return {slice.begin, slice.end}; }

/// The number of the error that `action` throws, -1 when it throws none.
template <class Action>
int errorOf(Action&& action) {
  try {
    action();
  } catch (const TTT& message) {
    return errorNumber(message);
  } catch (int number) {
    return number;
  }
  return -1;
}

/// Walks a document and writes down what it meets.
template <class Doc>
class Walk {
 public:
  explicit Walk(Doc& document) : doc(document) {}

  std::string trace() {
    MLDoc::Token token;
    bool more = true;
    while (more) {
      const int error = errorOf([&] { more = doc.step(token); });
      if (more) addToken(token, error < 0);
      addError(error);
      if (more && error < 0) addAttributes(token);
      doc.out += more ? "\n" : "";
    }
    // The end of the text leaves the last token alone.
    return doc.out + "end @" + std::to_string(doc.at()) + " d" + std::to_string(token.depth) + " " +
           str(token.tag);
  }

 private:
  void addError(int error) {
    if (error < 0) return;
    doc.out += " !" + std::to_string(error) + " @" + std::to_string(doc.at()) + " " + doc.place();
  }

  void addToken(const MLDoc::Token& token, bool whole) {
    doc.out += "EIC"[token.type];
    if (whole) doc.out += " " + str(token.name);
    doc.out += " d" + std::to_string(token.depth) + " ";
    if (token.opening) doc.out += "o";
    if (token.closing && (whole || !token.opening)) doc.out += "c";
    const auto offset = [&](const char* p) { return std::to_string(p - doc.begin()); };
    doc.out += " [" + offset(token.tag.begin) + "," + offset(token.tag.end) + ")";
  }

  void addAttributes(const MLDoc::Token& token) {
    MLDoc::Attribute found;
    for (bool more = true; more;) {
      const int error = errorOf([&] { more = doc.attribute(token, found); });
      addError(error);
      if (error >= 0) return doc.moveTo(static_cast<unsigned int>(token.tag.end - doc.begin()));
      if (more) doc.out += " " + str(found.name) + "=" + str(found.value);
    }
  }

  Doc& doc;
};

/// A document whose text ends at an unreadable page, and what a walk writes down.
class TracedDoc : public OpenDoc {
 public:
  explicit TracedDoc(std::string_view content) : pages(content) {
    load("doc", "", 0);
    release();
    text = pages.begin();
    textSize = static_cast<unsigned int>(content.size());
  }
  ~TracedDoc() override { text = nullptr; }
  std::string out;

 protected:
  void warning(const TTT& message, const Token& /*token*/, Attribute& attribute) override {
    out += errorNumber(message) == 16 ? " w " : " ? ";
    out += str(attribute.name);
  }

 private:
  GuardedBuffer pages;
};

/// The walk over `content`.
inline std::string traceOf(std::string_view content) {
  TracedDoc doc(content);
  return Walk(doc).trace();
}

}  // namespace cc::test
