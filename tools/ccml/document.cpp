// Loading, and the attributes of a tag.
#include "document.h"

#include <cerrno>
#include <cstdio>

#include "charproc.h"
#include "fileproc.h"

namespace ccml {

namespace {

constexpr unsigned int maxSize = 100'000'000;
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

bool isSpace(char c) { return chr_types_table_ascii[static_cast<unsigned char>(c)] == 'W'; }

const char* skipSpace(const char* p, const char* end) {
  while (p != end && isSpace(*p)) ++p;
  return p;
}

// Messages of the library's dictionary for a standard input that cannot be taken.
constexpr int readFailed = 26;
constexpr int tooLarge = 29;

std::string readInput() {
  std::string bytes;
  char block[65536];
  while (const std::size_t n = std::fread(block, 1, sizeof block, stdin)) {
    bytes.append(block, n);
    if (bytes.size() > maxSize) throw TTT(LocDictionaryCommonCore, tooLarge);
  }
  if (std::ferror(stdin)) UTF8File(true).erro(LocDictionaryCommonCore, readFailed, "", errno);
  return bytes;
}

}  // namespace

void Document::open(const std::string& path) {
  warned.clear();
  loaded.clear();
  if (path == "-") {
    const std::string bytes = readInput();
    load("", bytes.data(), static_cast<int>(bytes.size()));
    if (bytes.compare(0, byteOrderMark.size(), byteOrderMark) == 0) seek(byteOrderMark.size());
  } else {
    load(path.c_str());
    name = "";
  }
}

std::string Document::decoded(const ChPair& raw) {
  ChArr out;
  convertEscape(raw, out);
  return out.c_str();
}

void Document::warning(const TTT& /*message*/, const Token& /*token*/, Attribute& attribute) {
  if (loaded.empty()) loaded.assign(text, textSize);
  warned.push_back(offsetOf(attribute.name.begin));
}

void readTag(Document& document, const MLDoc::Token& token, Tag& tag) {
  tag.attributes.clear();
  tag.unread = nullptr;
  const ChPair markup = token.tag;
  const char* read = token.type == MLDoc::Token::Element ? token.name.end : markup.begin + 5;
  const auto passOver = [&](const char* to) {
    const char* const other = skipSpace(read, to);
    if (other != to && !tag.unread) tag.unread = other;
  };
  document.seek(document.offsetOf(markup.begin));
  MLDoc::Attribute attribute;
  while (document.attribute(token, attribute)) {
    passOver(attribute.name.begin);
    tag.attributes.push_back(attribute);
    read = strfind(attribute.value.end, static_cast<unsigned int>(markup.end - attribute.value.end),
                   '"') +
           1;
  }
  const char* end = markup.end - 1;
  const char closer = token.type == MLDoc::Token::Instruction ? '?' : '/';
  if (end > read && end[-1] == closer) --end;
  passOver(end);
}

bool isComment(const ChPair& markup) { return std::string_view(markup).substr(0, 4) == "<!--"; }

bool isXmlDeclaration(const ChPair& markup) {
  return markup.length() > 6 && std::string_view(markup).substr(0, 5) == "<?xml" &&
         isSpace(markup.begin[5]);
}

bool isBlank(const char* begin, const char* end) { return skipSpace(begin, end) == end; }

}  // namespace ccml
