/// @file
/// A whole walk over a document as text: every token, attribute, warning and error with its place.
///
///     E a d1 o [0,9) x=1      an element: name, depth, opening and closing, its tag, attributes
///     I [0,5) / C [0,7)       an instruction, a comment
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

inline std::string errorTrace(int number, unsigned int offset, const std::string& place) {
  return " !" + std::to_string(number) + " @" + std::to_string(offset) + " " + place;
}

/// The number of the error that `action` throws, -1 when it throws none.
template <class Action>
int errorOf(Action&& action) {
  try {
    action();
  } catch (const TTT& message) {
    return errorNumber(message);
  }
  return -1;
}

/// Walks a document, whose text ends at an unreadable page, and writes down what it meets.
class ReaderTrace : public OpenDoc {
 public:
  explicit ReaderTrace(std::string_view content) : pages(content) {
    load("doc", "", 0);
    release();
    text = pages.begin();
    textSize = static_cast<unsigned int>(content.size());
  }
  ~ReaderTrace() override { text = nullptr; }

  std::string walk() {
    out.clear();
    Token token;
    bool more = true;
    while (more) {
      const int error = errorOf([&] { more = step(token); });
      if (error >= 0) {
        traceToken(token, false);
        out += errorTrace(error, at(), place());
      } else if (more) {
        traceToken(token, true);
        traceAttributes(token);
      }
      out += more ? "\n" : "";
    }
    return out + "end @" + std::to_string(at()) + " d" + std::to_string(token.depth);
  }

 protected:
  void warning(const TTT& message, const Token& /*token*/, Attribute& attribute) override {
    out += errorNumber(message) == 16 ? " w " : " ? ";
    out += str(attribute.name);
  }

 private:
  void traceToken(const Token& token, bool whole) {
    out += "EIC"[token.type];
    if (token.type == 0 && whole) out += " " + str(token.name);
    if (token.type == 0) {
      out += " d" + std::to_string(token.depth) + " ";
      if (token.opening) out += "o";
      if (token.closing && (whole || !token.opening)) out += "c";
    }
    const auto offset = [&](const char* p) { return std::to_string(p - begin()); };
    out += " [" + offset(token.tag.begin) + "," + offset(token.tag.end) + ")";
  }

  void traceAttributes(const Token& token) {
    Attribute found;
    bool more = true;
    while (more) {
      const int error = errorOf([&] { more = attribute(token, found); });
      if (error >= 0) {
        out += errorTrace(error, at(), place());
        moveTo(static_cast<unsigned int>(token.tag.end - begin()));
        return;
      }
      if (more) out += " " + str(found.name) + "=" + str(found.value);
    }
  }

  GuardedBuffer pages;
  std::string out;
};

/// The walk over `content`.
inline std::string traceOf(std::string_view content) { return ReaderTrace(content).walk(); }

}  // namespace cc::test
