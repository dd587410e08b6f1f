// One walk over the markup. A failure becomes a finding, and the walk goes on behind it, so that
// one run shows everything. Once a tag could not be read, nothing is said about how tags pair.
#include "check.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "charproc.h"
#include "messages.h"
#include "utf8proc.h"

namespace ccml {

namespace {

class Check {
 public:
  Check(Document& document, bool strictly, Findings& list)
      : doc(document), strict(strictly), findings(list) {}

  void run() {
    const char* behind = doc.begin() + doc.offset();
    while (next()) {
      text(behind, token.tag.begin);
      behind = token.tag.end;
      markup();
      doc.seek(doc.offsetOf(behind));
    }
    text(behind, doc.end());
    if (!open.empty() && !unread) found(open.back().tagEnd, library(LibElementUnclosed));
    for (const unsigned int offset : doc.warnings())
      add(offset, Severity::Warning, library(LibControlByte));
    if (strict) bytes();
  }

 private:
  struct Element {
    ChPair name;
    unsigned int tagEnd;
  };

  static TTT library(int number) { return TTT(LocDictionaryCommonCore, number); }

  void add(unsigned int offset, Severity severity, const TTT& message) {
    findings.push_back({offset, severity, message});
  }
  void found(unsigned int offset, const TTT& message) { add(offset, Severity::Error, message); }
  void found(const char* byte, const TTT& message) { found(doc.offsetOf(byte), message); }
  void foundStrict(const char* byte, const TTT& message) {
    if (strict) found(byte, message);
  }

  // The next markup, past whatever cannot be read.
  bool next() {
    for (;;) {
      try {
        return doc.step(token);
      } catch (const TTT& failure) {
        found(doc.offset(), failure);
        unread = true;
      }
    }
  }

  void markup() {
    if (token.type == MLDoc::Token::Comment) {
      declaration();
    } else if (token.type == MLDoc::Token::Instruction) {
      if (isXmlDeclaration(token.tag)) attributes();
    } else if (token.opening) {
      attributes();
      if (!token.closing) start();
    } else {
      end();
    }
  }

  void declaration() {
    if (isComment(token.tag)) return;
    const bool cdata = std::string_view(token.tag).substr(0, 9) == "<![CDATA[";
    foundStrict(token.tag.begin, own(cdata ? MsgCdata : MsgDoctype));
  }

  void attributes() {
    try {
      readTag(doc, token, tag);
    } catch (const TTT& failure) {
      found(doc.offset(), failure);
      return;
    }
    for (const MLDoc::Attribute& attribute : tag.attributes) {
      entities(attribute.value.begin, attribute.value.end);
    }
    if (tag.unread) foundStrict(tag.unread, own(MsgUnreadInTag));
    if (strict) repeatedNames();
  }

  void repeatedNames() {
    if (tag.attributes.size() < 2) return;
    std::vector<ChPair> names;
    for (const MLDoc::Attribute& attribute : tag.attributes) names.push_back(attribute.name);
    std::stable_sort(names.begin(), names.end(), [](const ChPair& a, const ChPair& b) {
      return std::string_view(a) < std::string_view(b);
    });
    for (std::size_t i = 1; i < names.size(); ++i) {
      if (std::string_view(names[i - 1]) == std::string_view(names[i]))
        found(names[i].begin, named(MsgAttributeTwice, names[i]));
    }
  }

  static TTT named(Message number, const ChPair& name) {
    TTT message = own(number);
    message << std::string(std::string_view(name)).c_str();
    return message;
  }

  void start() {
    open.push_back({token.name, doc.offsetOf(token.tag.end)});
    if (open.size() == static_cast<std::size_t>(maxDepth) + 1) {
      TTT message = own(MsgTooDeep);
      foundStrict(token.tag.begin, message << maxDepth);
    }
  }

  void end() {
    if (!isBlank(token.name.end, token.tag.end - 1))
      foundStrict(token.name.end, own(MsgUnreadInTag));
    if (open.empty()) {
      if (!unread) foundStrict(token.tag.begin, named(MsgEndTagStray, token.name));
      return;
    }
    const ChPair name = open.back().name;
    open.pop_back();
    if (unread || std::string_view(name) == std::string_view(token.name)) return;
    TTT message = named(MsgEndTagMismatch, token.name);
    foundStrict(token.tag.begin, message << std::string(std::string_view(name)).c_str());
  }

  // Text between two pieces of markup.
  void text(const char* begin, const char* end) {
    if (!open.empty()) return entities(begin, end);
    while (begin != end && chr_types_table_ascii[static_cast<unsigned char>(*begin)] == 'W')
      ++begin;
    if (begin != end && !unread) foundStrict(begin, own(MsgTextOutside));
  }

  void entities(const char* begin, const char* end) {
    const auto ampersand = [end](const char* p) {
      const char* at = strfind(p, static_cast<unsigned int>(end - p), '&');
      return at ? at : end;
    };
    for (const char* p = ampersand(begin); p != end;) {
      const char* const next = ampersand(p + 1);
      constexpr std::ptrdiff_t longest = 6;
      try {
        doc.convertEscape(ChPair(p, p + std::min(next - p, longest)), decoded);
      } catch (const TTT& failure) {
        found(p, failure);
      }
      p = next;
    }
  }

  // Bytes that are no text, the first of each line.
  void bytes() {
    const auto lineEnd = [this](const char* p) {
      const char* at = strfind(p, static_cast<unsigned int>(doc.end() - p), '\n');
      return at ? at : doc.end();
    };
    const auto left = [this](const char* p) { return static_cast<unsigned int>(doc.end() - p); };
    for (const char* p = doc.begin(); (p = strchk_utf8(p, left(p))) != nullptr; p = lineEnd(p))
      found(p, own(MsgNotUtf8));
    for (const char* p = doc.begin(); (p = strfind(p, left(p), '\0')) != nullptr; p = lineEnd(p))
      found(p, own(MsgZeroByte));
  }

  Document& doc;
  bool strict;
  Findings& findings;
  MLDoc::Token token;
  Tag tag;
  ChArr decoded;
  std::vector<Element> open;
  bool unread = false;
};

}  // namespace

void check(Document& document, bool strict, Findings& findings) {
  Check(document, strict, findings).run();
}

}  // namespace ccml
