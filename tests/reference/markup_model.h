/// @file
/// The markup reader as a plain walk, one byte after another, for comparison with the library's.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace cc::reference {

/// A half-open range of offsets into a document.
struct Range {
  std::size_t begin = 0;
  std::size_t end = 0;
};

struct MarkupToken {
  Range name, tag;
  int type = 0;
  int depth = 0;
  bool opening = false;
  bool closing = false;
};

struct MarkupAttribute {
  Range name, value;
};

/// Throws the number of a message, as an `int`, for every error.
class MarkupModel {
 public:
  explicit MarkupModel(std::string document) : text(std::move(document)) {}

  std::string text;
  std::size_t position = 0;
  std::function<void(const MarkupAttribute&)> warning;

  bool step(MarkupToken& token) {
    do {
      if (position == text.size()) return false;
    } while (text[position++] != '<');
    token.tag.begin = position - 1;
    char c = read(11);
    if (c == '?') return set(token, 1, false, false), readTagEnd(token, ' '), true;
    if (c == '!') return set(token, 2, false, false), readCommentEnd(token), true;
    if (c == '/') {
      set(token, 0, false, true);
      --token.depth;
    } else {
      --position;
      set(token, 0, true, false);
    }
    const std::size_t begin = position;
    int count = 0;
    while (c = read(11), classOf(c) == 'G') {
      if (++count == 511) throw 30;
    }
    if (classOf(c) == 0) throw 0;
    if (c == '<') throw 22;
    if (count == 0) throw 14;
    token.name = {begin, position - 1};
    if (c == '>') return finish(token, c), true;
    readTagEnd(token, c);
    return true;
  }

  bool attribute(const MarkupToken& token, MarkupAttribute& attribute) {
    tagEnd = token.tag.end;
    if (position <= token.tag.begin || position >= tagEnd) {
      position = token.tag.begin;
      char c = 0;
      while (c = readInTag(33), classOf(c) != 'W') {
        if (c == '>') return position = tagEnd, false;
      }
    }
    char c = 0;
    while (c = readInTag(33), classOf(c) == 'W') {
    }
    if (std::string_view("/>!?-").find(c) != std::string_view::npos) {
      return position = tagEnd, false;
    }
    if (classOf(c) == 0) throw 2;
    attribute.name.begin = position - 1;
    for (int count = 1; c = nameByte(count), c != '=' && classOf(c) != 'W'; ++count) {
      if (classOf(c) != 'G') throw 1;
    }
    attribute.name.end = position - 1;
    bool seen = c == '=';
    while (true) {
      c = readInTag(33);
      if (classOf(c) == 'W') continue;
      if (!seen && c != '=') throw 5;
      if (seen && c == '=') throw 13;
      if (seen && c != '"') throw 18;
      if (c == '"') break;
      seen = true;
    }
    attribute.value.begin = position;
    while (readInTag(6) != '"') {
    }
    attribute.value.end = position - 1;
    clean(attribute);
    return true;
  }

  /// Line and column of the position.
  std::string place() const {
    int line = 1;
    int column = 1;
    for (std::size_t i = 0; i < position; ++i) {
      const unsigned char c = static_cast<unsigned char>(text[i]);
      if (c == '\n') {
        ++line;
        column = 1;
      } else if (c == '\t') {
        do ++column;
        while (column % 4 != 1);
      } else if (c != '\r' && (c < 0x80 || c > 0xBF)) {
        ++column;
      }
    }
    return std::to_string(line) + ":" + std::to_string(column);
  }

 private:
  static int classOf(char c) {
    if (c == '/' || c == '<' || c == '>') return 'S';
    if (c == ' ' || c == '\t' || c == '\n' || c == '\r') return 'W';
    const bool letter = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
    const bool digit = c >= '0' && c <= '9';
    return letter || digit || c == '.' || c == '_' || c == '-' || c == ':' ? 'G' : 0;
  }

  char read(int failure) {
    if (position == text.size()) throw failure;
    return text[position++];
  }

  char readInTag(int failure) {
    if (position == tagEnd) throw failure;
    return text[position++];
  }

  char nameByte(int count) {
    if (position != tagEnd && count == 512) throw 31;
    return readInTag(15);
  }

  static void set(MarkupToken& token, int type, bool opening, bool closing) {
    token.type = type;
    token.opening = opening;
    token.closing = closing;
  }

  void readTagEnd(MarkupToken& token, char last) {
    bool quoted = false;
    while (true) {
      const char c = read(11);
      if (c == '>' && !quoted) return finish(token, last);
      if (c == '"') quoted = !quoted;
      last = c;
    }
  }

  void finish(MarkupToken& token, char last) {
    token.tag.end = position;
    if (!token.opening) return;
    token.closing = last == '/';
    if (!token.closing) ++token.depth;
  }

  void readCommentEnd(MarkupToken& token) {
    for (int i = 0; i < 4; ++i) read(36);
    while (read(36) != '>' || text[position - 2] != '-' || text[position - 3] != '-') {
    }
    token.tag.end = position;
  }

  void clean(MarkupAttribute& attribute) {
    Range& value = attribute.value;
    const auto isBreak = [&](std::size_t i) { return text[i] == '\r' || text[i] == '\n'; };
    while (value.begin < value.end && isBreak(value.begin)) ++value.begin;
    while (value.begin < value.end && isBreak(value.end - 1)) --value.end;
    bool warned = false;
    for (std::size_t i = value.begin; i < value.end; ++i) {
      if (static_cast<unsigned char>(text[i]) >= 0x20) continue;
      if (!warned && warning) warning(attribute);
      warned = true;
      text[i] = ' ';
    }
  }

  std::size_t tagEnd = 0;
};

}  // namespace cc::reference
