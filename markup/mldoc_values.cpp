// MLDoc: strings and numbers of raw slices.

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>

#include "charproc.h"
#include "loc/message_numbers.h"
#include "markup/text_range.h"
#include "mlproc.h"
#include "platform/locale.h"

namespace {

struct Entity {
  std::string_view name;
  char byte;
};

constexpr Entity entities[] = {
    {"amp;", '&'}, {"apos;", '\''}, {"quot;", '"'}, {"lt;", '<'}, {"gt;", '>'},
};

// The entity that stands at `p`, behind its `&`, or null.
const Entity* entityAt(const char* p, const char* end) {
  const std::string_view rest(p, static_cast<std::size_t>(end - p));
  for (const Entity& entity : entities) {
    if (rest.substr(0, entity.name.size()) == entity.name) return &entity;
  }
  return nullptr;
}

// Decodes up to the first `&` that begins no entity, if there is one, and terminates `out`. True
// when all was decoded.
bool decode(const ChPair& source, char* out) {
  const char* p = source.begin;
  bool good = true;
  while (p != source.end) {
    const std::size_t left = static_cast<std::size_t>(source.end - p);
    const void* found = std::memchr(p, '&', left);
    const char* const stop = found ? static_cast<const char*>(found) : source.end;
    std::memcpy(out, p, static_cast<std::size_t>(stop - p));
    out += stop - p;
    p = stop;
    if (p == source.end) break;
    const Entity* entity = entityAt(++p, source.end);
    good = entity != nullptr;
    if (!good) break;
    *out++ = entity->byte;
    p += entity->name.size();
  }
  *out = 0;
  return good;
}

// Whether a number that stands before `c` may go on with it.
bool continuesNumber(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
         (c != 0 && std::strchr("+-.()_", c) != nullptr);
}

// White space before a number, as in the "C" locale.
bool isWhiteSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// True when the longest number at `begin` ends exactly at `end` and is in range. The bytes from
// `begin` on must hold one that continues no number, at `end` or behind it.
bool parseWhole(const char* begin, const char* end, double& value) {
  char* stop = nullptr;
  errno = 0;
  value = cc::locale::parseDouble(begin, &stop);
  return errno == 0 && stop == end;
}

// The same for text whose readable bytes end at `limit`: a terminated copy is parsed.
bool parseCopy(const char* begin, const char* end, const char* limit, double& value) {
  char small[256];
  std::unique_ptr<char[]> large;
  const std::size_t n = static_cast<std::size_t>(limit - begin);
  char* copy = small;
  if (n >= sizeof small) {
    large.reset(new char[n + 1]);
    copy = large.get();
  }
  std::memcpy(copy, begin, n);
  copy[n] = 0;
  return parseWhole(copy, copy + (end - begin), value);
}

}  // namespace

void MLDoc::convertEscape(const ChPair& source, ChArr& out) {
  ArrayHolder<char> decoded(new char[static_cast<std::size_t>(source.end - source.begin) + 1]);
  const bool good = decode(source, decoded.get());
  out.adopt(decoded.steal());
  if (!good) erro(LocDictionaryCommonCore, cc::MsgBadEntity);
}

long long MLDoc::getInt(const ChPair& number) const {
  long long value = 0;
  if (!strtoint64(number.begin, number.end, value)) {
    erro(LocDictionaryCommonCore, cc::MsgNotAnInteger);
  }
  return value;
}

int MLDoc::getCountOrInfinity(const ChPair& number) const {
  return static_cast<int>(getInt(number));
}

double MLDoc::getDouble(const ChPair& number) const {
  cc::locale::requireNumericC();
  double value = 0;
  // The parser skips white space, past the slice's end if it may.
  const char* const begin = std::find_if_not(number.begin, number.end, isWhiteSpace);
  bool good = begin != number.end;
  if (good) {
    // A number goes on behind the slice only within the document's own text.
    const char* limit = number.end;
    const bool own =
        cc::isInText(text, textSize, number.begin) && cc::isInText(text, textSize, number.end);
    const char* const end = own ? text + textSize : number.end;
    while (limit != end && continuesNumber(*limit)) ++limit;
    good = limit == number.end && limit != end ? parseWhole(begin, number.end, value)
                                               : parseCopy(begin, number.end, limit, value);
  }
  if (!good) erro(LocDictionaryCommonCore, cc::MsgNotADouble);
  return value;
}
