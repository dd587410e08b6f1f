// One walk over the document's markup, from the first tag to the last. Whatever is wrong becomes a
// finding, and the walk goes on behind it, so that one run shows everything.
#include <algorithm>
#include <charconv>
#include <cstring>
#include <map>

#include "catalogue.h"
#include "charr.h"
#include "fileproc.h"
#include "mlproc.h"
#include "utf8proc.h"

namespace cclng {

namespace {

constexpr unsigned int MaxDocumentSize = 100000000;

// The reader without a document name, so that an error is one message and the place is asked for.
class Document : public MLDoc {
 public:
  explicit Document(const std::string& content) : source(content.data()), places(source) {
    load("", content.data(), static_cast<int>(content.size()));
  }

  Place here() { return placeOf(text + position); }
  // Place of a byte of the document's text. The content counts, since the reader overwrites control
  // bytes in attribute values.
  Place placeOf(const char* byte) { return places.placeOf(source + (byte - text)); }

  const char* begin() const { return text; }
  const char* end() const { return text + textSize; }
  unsigned int offset() const { return position; }
  void goBehind(const MLDoc::Token& token) {
    position = static_cast<unsigned int>(token.tag.end - text);
  }

 private:
  const char* source;
  tools::PlaceCounter places;
};

std::string quoted(const ChPair& text) { return "\"" + std::string(std::string_view(text)) + "\""; }

class Reader {
 public:
  Reader(const std::string& bytes, Findings& list) : doc(bytes), findings(list) {}

  Catalogue read() {
    behind = doc.begin();
    while (next()) {
      text(behind, token.tag.begin);
      behind = token.tag.end;
      if (token.type != MLDoc::Token::Element) {
        skipped();
      } else if (token.opening) {
        start();
      } else {
        end();
      }
    }
    text(behind, doc.end());
    finish();
    return std::move(catalogue);
  }

 private:
  using Attributes = std::map<std::string, ChPair, std::less<>>;

  // The next markup, past whatever cannot be read.
  bool next() {
    for (;;) {
      const unsigned int before = doc.offset();
      try {
        return doc.step(token);
      } catch (const TTT& error) {
        findings.add(doc.here(), error);
        inMessage = false;
        behind = doc.begin() + doc.offset();
        if (doc.offset() == before) return false;
      }
    }
  }

  // Text between two tags; only messages hold any.
  void text(const char* first, const char* last) {
    if (open.size() >= 2) return;
    constexpr std::string_view space = " \t\r\n";
    if (last - first >= 3 && first == doc.begin() && std::memcmp(first, "\xEF\xBB\xBF", 3) == 0) {
      first += 3;
    }
    while (first != last && space.find(*first) != std::string_view::npos) ++first;
    if (first != last) {
      findings.add(doc.placeOf(first), RuleTextOutside, "Text stands outside of the messages.");
    }
  }

  void start() {
    const ChPair expected = open.empty() ? "dictionary" : "message";
    const Place place = doc.placeOf(token.tag.begin);
    if (open.size() >= 2) {
      findings.add(place, RuleMarkupInMessage,
                   "A message holds plain text only, but here stands an element.");
      inMessage = false;
    } else if (std::string_view(token.name) != std::string_view(expected)) {
      findings.add(
          place, RuleElementName,
          "The element is called " + quoted(token.name) + " instead of " + quoted(expected) + ".");
    } else if (open.empty()) {
      startDictionary(place);
    } else {
      startMessage(place);
    }
    if (!token.closing) {
      open.emplace_back(std::string_view(token.name));
    } else if (open.size() == 1) {
      endMessage(token.tag.end);
    }
  }

  void end() {
    if (open.empty()) {
      findings.add(doc.placeOf(token.tag.begin), RuleEndTagStray, "The end tag closes no element.");
      return;
    }
    if (open.back() != std::string_view(token.name)) {
      findings.add(doc.placeOf(token.tag.begin), RuleEndTagName,
                   "The end tag is called " + quoted(token.name) + " instead of " +
                       quoted(open.back().c_str()) + ".");
    }
    open.pop_back();
    if (open.size() == 1) endMessage(token.tag.begin);
  }

  void startDictionary(Place place) {
    if (catalogue.place.line != 0) {
      findings.add(place, RuleSecondDictionary, "The document holds a second dictionary.");
      return;
    }
    catalogue.place = place;
    const Attributes values = attributes({"name", "language", "stamp"});
    catalogue.name = required(values, "name", place);
    catalogue.language = required(values, "language", place);
    const auto stamp = values.find("stamp");
    if (stamp != values.end()) readStamp(stamp->second);
  }

  void startMessage(Place place) {
    const Attributes values = attributes({"number", "note"});
    message.place = place;
    message.text.clear();
    message.note.clear();
    const auto note = values.find("note");
    if (note != values.end()) decode(note->second, message.note);
    inMessage = number(required(values, "number", place), place);
    content = token.tag.end;
  }

  void endMessage(const char* last) {
    if (!inMessage) return;
    inMessage = false;
    const ChPair raw(content, last);
    const char* wrong = strchk_utf8(raw.begin, raw.length());
    if (wrong) findings.add(doc.placeOf(wrong), RuleNotUtf8, "The text is not in UTF-8.");
    const void* zero = std::memchr(raw.begin, 0, raw.length());
    if (zero) {
      findings.add(doc.placeOf(static_cast<const char*>(zero)), RuleZeroByte,
                   "The text holds a 0 byte.");
    }
    if (decode(raw, message.text)) catalogue.messages.push_back(message);
  }

  // A comment or an instruction.
  void skipped() {
    const std::string_view markup = token.tag;
    if (catalogue.place.line == 0 && markup.substr(0, 4) == "<!--" && markup.size() >= 7) {
      comment(markup.substr(4, markup.size() - 7));
    }
    if (!inMessage) return;
    findings.add(doc.placeOf(token.tag.begin), RuleMarkupInMessage,
                 "A message holds plain text only; what translators should know belongs into its "
                 "attribute \"note\".");
    inMessage = false;
  }

  void comment(std::string_view lines) {
    constexpr std::string_view space = " \t\r";
    std::string_view line;
    const auto add = [&] {
      const std::size_t first = line.find_first_not_of(space);
      if (first == std::string_view::npos) return;
      if (!catalogue.comment.empty()) catalogue.comment += '\n';
      catalogue.comment += line.substr(first, line.find_last_not_of(space) + 1 - first);
    };
    for (std::size_t end; (end = lines.find('\n')) != std::string_view::npos;) {
      line = lines.substr(0, end);
      add();
      lines.remove_prefix(end + 1);
    }
    line = lines;
    add();
  }

  void finish() {
    if (!open.empty()) {
      findings.add(doc.placeOf(doc.end()), RuleEndTagMissing,
                   "The end tag of " + quoted(open.back().c_str()) + " is missing.");
    }
    if (catalogue.place.line == 0) {
      findings.add({1, 1, 1}, RuleNoDictionary, "The document holds no dictionary.");
    }
  }

  // The attributes of the tag by name, each at most once, all of them `known`.
  Attributes attributes(std::initializer_list<std::string_view> known) {
    Attributes values;
    MLDoc::Attribute attribute;
    try {
      while (doc.attribute(token, attribute)) {
        const std::string_view name = attribute.name;
        const Place place = doc.placeOf(attribute.name.begin);
        if (std::find(known.begin(), known.end(), name) == known.end()) {
          findings.add(place, RuleAttributeUnknown,
                       "The attribute " + quoted(attribute.name) + " is unknown.");
        } else if (!values.emplace(name, attribute.value).second) {
          findings.add(place, RuleAttributeTwice,
                       "The attribute " + quoted(attribute.name) + " stands twice.");
        }
      }
    } catch (const TTT& error) {
      findings.add(doc.here(), error);
      doc.goBehind(token);  // what cannot be read of the tag is not looked into for markup
    }
    return values;
  }

  std::string required(const Attributes& values, std::string_view name, Place place) {
    const auto it = values.find(name);
    std::string value;
    if (it != values.end()) decode(it->second, value);
    if (value.empty()) {
      findings.add(place, RuleAttributeMissing,
                   "The attribute \"" + std::string(name) + "\" is missing or empty.");
    }
    return value;
  }

  bool number(const std::string& value, Place place) {
    const char* end = value.data() + value.size();
    const auto [stop, error] = std::from_chars(value.data(), end, message.number);
    const bool valid =
        error == std::errc() && stop == end && message.number >= 0 && message.number <= LastNumber;
    if (!valid && !value.empty()) {
      findings.add(place, RuleNumberInvalid,
                   quoted(value.c_str()) + " is no message number from 0 to " +
                       std::to_string(LastNumber) + ".");
    }
    return valid;
  }

  void readStamp(const ChPair& value) {
    std::uint32_t stamp = 0;
    const auto [stop, error] = std::from_chars(value.begin, value.end, stamp, 16);
    if (error != std::errc() || stop != value.end) {
      findings.add(doc.placeOf(value.begin), RuleStampInvalid,
                   "The stamp is no hexadecimal number of up to 8 digits.");
      return;
    }
    catalogue.givenStamp = stamp;
  }

  bool decode(const ChPair& raw, std::string& out) {
    try {
      ChArr decoded;
      doc.convertEscape(raw, decoded);
      out = decoded.c_str();
      return true;
    } catch (const TTT& error) {
      findings.add(doc.placeOf(badEntity(raw)), error);
      return false;
    }
  }

  // The first "&" of `raw` that begins none of the five entities.
  static const char* badEntity(const ChPair& raw) {
    const std::string_view text = raw;
    for (std::size_t i = text.find('&'); i != std::string_view::npos; i = text.find('&', i + 1)) {
      bool known = false;
      for (const std::string_view entity : {"&amp;", "&apos;", "&quot;", "&lt;", "&gt;"}) {
        known = known || text.substr(i, entity.size()) == entity;
      }
      if (!known) return raw.begin + i;
    }
    return raw.begin;
  }

  Document doc;
  Findings& findings;
  Catalogue catalogue;
  MLDoc::Token token;
  const char* behind = nullptr;   // end of the markup before the current one
  std::vector<std::string> open;  // names of the elements around the current place
  Message message;                // the one being read
  const char* content = nullptr;  // where its text begins
  bool inMessage = false;         // and nothing is wrong with it so far
};

}  // namespace

Catalogue read_catalogue(const std::string& path, Findings& findings) {
  std::string content;
  UTF8File::load(path.c_str(), content, MaxDocumentSize);
  return Reader(content, findings).read();
}

}  // namespace cclng
