// Real documents are rewritten into the small format, so that every parser reads the same bytes
// and counts the same lengths: no DOCTYPE, no CDATA, double quotes only, no references but the
// five named ones, none at all inside attribute values (some parsers decode them, some do not),
// and no line break at the ends of a value.

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <functional>
#include <iterator>

#include "inputs.h"

namespace bench {
namespace {

struct Source {
  const char* name;
  const char* path;
};

constexpr Source sources[] = {
    {"MIME database", "/usr/share/mime/packages/freedesktop.org.xml"},
    {"languages", "/usr/share/xml/iso-codes/iso_639-3.xml"},
    {"keyboard layouts", "/usr/share/X11/xkb/rules/evdev.xml"},
    {"SVG paths", "/usr/share/fonts-font-awesome/fonts/fontawesome-webfont.svg"},
};

constexpr std::size_t recordBytes = 50 * megabyte;

class Rewriter {
 public:
  explicit Rewriter(std::string_view text) : source(text) {}

  std::string run() {
    while (at < source.size()) {
      if (starts("<!--")) {
        copyUntil("-->");
      } else if (starts("<![CDATA[")) {
        escapeSection();
      } else if (starts("<!")) {
        skipDeclaration();
      } else if (starts("<?")) {
        copyUntil("?>");
      } else if (source[at] == '<') {
        copyTag();
      } else if (source[at] == '&') {
        copyReference();
      } else {
        result += source[at++];
      }
    }
    return std::move(result);
  }

 private:
  bool starts(std::string_view prefix) const {
    return source.compare(at, prefix.size(), prefix) == 0;
  }

  std::size_t endOf(std::string_view mark) const {
    const std::size_t found = source.find(mark, at);
    return found == source.npos ? source.size() : found + mark.size();
  }

  void copyUntil(std::string_view mark) {
    const std::size_t end = endOf(mark);
    result += source.substr(at, end - at);
    at = end;
  }

  void escapeSection() {
    const std::size_t end = endOf("]]>");
    for (const char c : source.substr(at + 9, end - 3 - (at + 9))) {
      if (c == '<')
        result += "&lt;";
      else if (c == '>')
        result += "&gt;";
      else if (c == '&')
        result += "&amp;";
      else
        result += c;
    }
    at = end;
  }

  // A DOCTYPE ends at the first '>' outside brackets, quotes and comments.
  void skipDeclaration() {
    int brackets = 0;
    while (at < source.size()) {
      if (starts("<!--")) {
        at = endOf("-->");
        continue;
      }
      const char c = source[at++];
      if (c == '"' || c == '\'') {
        at = endOf(std::string_view(&c, 1));
      } else if (c == '[') {
        ++brackets;
      } else if (c == ']') {
        --brackets;
      } else if (c == '>' && brackets == 0) {
        return;
      }
    }
  }

  void copyReference() {
    for (const char* named : {"&amp;", "&apos;", "&quot;", "&lt;", "&gt;"}) {
      if (starts(named)) {
        copyUntil(";");
        return;
      }
    }
    result += '+';
    at = endOf(";");
  }

  void copyTag() {
    while (at < source.size() && source[at] != '>') {
      const char c = source[at++];
      if (c == '"' || c == '\'') {
        copyValue(c);
      } else {
        result += c;
      }
    }
  }

  void copyValue(char quote) {
    const std::size_t end = source.find(quote, at);
    std::string_view value = source.substr(at, end - at);
    const auto breaks = [](char c) { return c == '\n' || c == '\r'; };
    while (!value.empty() && breaks(value.front())) value.remove_prefix(1);
    while (!value.empty() && breaks(value.back())) value.remove_suffix(1);
    result += '"';
    for (std::size_t i = 0; i < value.size(); ++i) {
      if (value[i] == '&') {
        result += '+';
        i = std::min(value.find(';', i), value.size());
      } else {
        result += value[i] == '"' ? '+' : value[i];
      }
    }
    result += '"';
    at = end + 1;
  }

  std::string_view source;
  std::size_t at = 0;
  std::string result;
};

std::string attributeRecord(Random& random, std::size_t number) {
  static const char* const towns[] = {"Aachen",  "Bergen", "Córdoba",  "Dresden", "Évreux",
                                      "Firenze", "Gdańsk", "Helsinki", "İzmir",   "Jyväskylä"};
  char text[512];
  std::snprintf(text, sizeof text,
                "  <item id=\"%zu\" key=\"%08zx\" town=\"%s\" x=\"%zu.%03zu\" y=\"-%zu.%03zu\" "
                "date=\"20%02zu-%02zu-%02zuT%02zu:30:00\" state=\"%s\" size=\"%zu\" flags=\"r w\" "
                "note=\"%s\"/>\n",
                number, random.below(0xFFFFFFFFu), towns[random.below(10)], random.below(180),
                random.below(1000), random.below(90), random.below(1000), random.below(25),
                1 + random.below(12), 1 + random.below(28), random.below(24),
                random.below(3) ? "done" : "waiting", random.below(1000000),
                random.below(4) ? "" : "to be looked at again by the end of the month");
  return text;
}

// Sentences with the two references that such text has now and then.
std::string paragraph(Random& random, const std::string& prose) {
  const std::size_t length = 200 + random.below(1000);
  std::size_t start = random.below(prose.size() - length);
  while ((prose[start] & 0xC0) == 0x80) ++start;
  std::size_t end = start + length;
  while ((prose[end] & 0xC0) == 0x80) --end;
  std::string text = prose.substr(start, end - start);
  const std::size_t space = text.find(' ', text.size() / 2);
  if (space != text.npos) text.replace(space, 1, random.below(2) ? " &amp; " : " &lt;…&gt; ");
  return text;
}

Document records(const char* name, const std::function<std::string(Random&, std::size_t)>& make) {
  Random random(11);
  std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<records>\n";
  const std::string closing = "</records>\n";
  for (std::size_t i = 1;; ++i) {
    const std::string record = make(random, i);
    if (record.size() > recordBytes - closing.size() - text.size()) break;
    text += record;
  }
  text += closing;
  return {name, bufferOf(text)};
}

}  // namespace

const std::vector<Document>& realDocuments() {
  static const std::vector<Document> documents = [] {
    std::vector<Document> made;
    for (const Source& source : sources) {
      std::ifstream file(source.path, std::ios::binary);
      if (!file) {
        std::fprintf(stderr, "%s is missing: its rows are left out\n", source.path);
        continue;
      }
      const std::string text((std::istreambuf_iterator<char>(file)),
                             std::istreambuf_iterator<char>());
      made.push_back({source.name, bufferOf(Rewriter(text).run())});
    }
    return made;
  }();
  return documents;
}

const Document& attributeRecords() {
  static const Document document = records("50 MB of attributes", attributeRecord);
  return document;
}

const Document& textRecords() {
  static const Document document = [] {
    const std::string prose = sentences(French, megabyte, 5) + sentences(Ascii, megabyte, 6);
    return records("50 MB of text", [&prose](Random& random, std::size_t number) {
      return "  <p n=\"" + std::to_string(number) + "\">" + paragraph(random, prose) + "</p>\n";
    });
  }();
  return document;
}

}  // namespace bench
