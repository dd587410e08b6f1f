// Search without regard to case.
//
// The plain way walks over the characters of the text and compares the rest of the pattern behind
// each that matches its first. The fast way needs valid text and a pattern of which no character
// behind the first has a counterpart in fewer bytes. Then every character of a match behind the
// first has as many bytes as that of the pattern (all together they have, and none can have fewer),
// so its bytes stand at known places, and whole blocks are looked through for two of them. The one
// exception is the last character: the length of the pattern may cut a longer one of the text.
//
// Candidates are compared as the plain way does. Where too many of them fail, the text is searched
// by the two-way algorithm over folded bytes, in linear time. Around what is malformed in the text
// the plain way is taken.

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "charproc.h"
#include "core/case_tables.h"
#include "core/kernels.h"
#include "core/kernels_search.h"
#include "core/kernels_two_way.h"
#include "unicode/utf8proc_nocase.h"
#include "utf8proc.h"

using namespace cc::kernels;

namespace {

unsigned short upper(unsigned short u) { return chr_upper_table_utf16[u]; }

// All units of one upper case.
struct CaseClass {
  unsigned short units[16];
  int count = 0;

  explicit CaseClass(unsigned short capital) {
    add(capital);
    const unsigned short small = chr_lower_table_utf16[capital];
    if (small != capital && upper(small) == capital) add(small);
    const cc::CaseTables& tables = cc::caseTables;
    if (!tables.mayHaveExtras[capital & 0xFF]) return;
    for (int i = 0; i < tables.extraCount; ++i) {
      if (tables.extras[i].upper == capital) add(tables.extras[i].unit);
    }
  }

  bool isWhole() const { return count <= static_cast<int>(std::size(units)); }

  // Of the encoding.
  std::ptrdiff_t leastLength() const {
    return encodedLength(*std::min_element(units, units + count));
  }

 private:
  void add(unsigned short u) {
    if (count < static_cast<int>(std::size(units))) units[count] = u;
    ++count;
  }
};

// Stands for all units of one upper case whose encodings have the same length: one of them, which
// is the same for all where the upper case or its lower case has that length.
unsigned short folded(unsigned short u, std::ptrdiff_t length) {
  if (encodedLength(u) != length) return u;  // overlong: matches nothing of its length
  const unsigned short capital = upper(u);
  if (encodedLength(capital) == length) return capital;
  const unsigned short small = chr_lower_table_utf16[capital];
  return encodedLength(small) == length && upper(small) == capital ? small : u;
}

// The byte at `p` of the valid text from `begin` on, with its character folded.
unsigned char foldedByte(const char* begin, const char* p, const char* end) {
  if (isAscii(*p)) return chr_upper_table_ascii[static_cast<unsigned char>(*p)];
  const char* start = lastStartBefore(begin, p + 1);
  unsigned short u = 0;
  const char* next = decodeCharacter(u, start, end);
  const unsigned short f = folded(u, next - start);
  if (f == u) return static_cast<unsigned char>(*p);
  char bytes[3];
  encodeCharacter(f, bytes, bytes + 3);
  return static_cast<unsigned char>(bytes[p - start]);
}

// Whether a character that begins with `c` may match one that begins with `first`.
bool canMatch(char c, char first) {
  if (!isAscii(c) || !isAscii(first)) return !continues(c);
  return chr_upper_table_ascii[static_cast<unsigned char>(c)] ==
         chr_upper_table_ascii[static_cast<unsigned char>(first)];
}

// What a search is for.
struct Pattern {
  const char* begin;
  const char* end;
  unsigned short first;  // upper case of the first character
  const char* rest;      // what follows it
  std::size_t restLength;
  const char* last;  // the last character
  PatternFilter filter = {};

  Pattern(const char* pat, const char* patEnd) : begin(pat), end(patEnd) {
    rest = decodeCharacter(first, pat, patEnd);
    first = upper(first);
    restLength = static_cast<std::size_t>(patEnd - rest);
    last = lastStartBefore(pat, patEnd);
  }

  // Fills the filter; false where the fast way is not open.
  bool prepare();

 private:
  struct Places;
  void consider(const CaseClass& members, const char* p, std::ptrdiff_t length,
                Places& places) const;
  void setFilter(const Places& places);
};

// The places in the front of the rest where no more than two bytes can stand.
struct Pattern::Places {
  struct Place {
    const char* at;
    const char* character;  // that it belongs to
    unsigned char bytes[2];
    unsigned int rank;  // how common they are
  };
  static constexpr std::ptrdiff_t size = 64;  // of the front; its last character may reach behind
  Place list[size + 2];
  int count = 0;

  // The rarest place; with `taken`, the rarest of another character if there is any.
  const Place& rarest(const Place* taken) const {
    const auto rank = [taken](const Place& place) {
      if (!taken || place.character != taken->character) return place.rank;
      return place.rank + (place.at == taken->at ? 512 : 256);  // ranks are bytes
    };
    return *std::min_element(list, list + count,
                             [rank](const Place& a, const Place& b) { return rank(a) < rank(b); });
  }
};

bool Pattern::prepare() {
  if (restLength == 0 || !cc::caseTables.plainAscii || cc::caseTables.extraCount < 0) return false;
  if (loops->validPrefix(rest, end) != end) return false;
  Places places;
  for (const char* p = rest; p != end;) {
    unsigned short u = 0;
    const std::ptrdiff_t length = decodeCharacter(u, p, end) - p;
    const CaseClass members(upper(u));
    if (!members.isWhole() || encodedLength(u) != length || members.leastLength() != length) {
      return false;
    }
    if (folded(u, length) == u && upper(u) != u && chr_lower_table_utf16[upper(u)] != u) {
      return false;
    }
    if (p - rest < Places::size) consider(members, p, length, places);
    p += length;
  }
  if (places.count == 0) return false;
  setFilter(places);
  return true;
}

void Pattern::consider(const CaseClass& members, const char* p, std::ptrdiff_t length,
                       Places& places) const {
  for (std::ptrdiff_t i = 0; i < length; ++i) {
    // Of the last character, which may be cut from a longer one, the first byte may be another.
    if (p == last && i == 0 && (length == 2 || static_cast<unsigned char>(*p) < 0x20)) continue;
    unsigned char a = static_cast<unsigned char>(p[i]);
    unsigned char b = a;
    bool fits = true;
    for (int k = 0; k < members.count; ++k) {
      char bytes[3] = {};
      if (encodeCharacter(members.units[k], bytes, bytes + 3) - bytes != length) continue;
      const unsigned char c = static_cast<unsigned char>(bytes[i]);
      if (c == a || c == b) continue;
      fits = fits && a == b;
      b = c;
    }
    if (fits) {
      const unsigned int rank = std::max(commonness(a), commonness(b));
      places.list[places.count++] = {p + i, p, {a, b}, rank};
    }
  }
}

// Two places in one character tell little more than one of them.
void Pattern::setFilter(const Places& places) {
  const Places::Place& rarest = places.rarest(nullptr);
  const Places::Place* const chosen[2] = {&rarest, &places.rarest(&rarest)};
  for (int k = 0; k < 2; ++k) {
    filter.offset[k] = static_cast<std::size_t>(chosen[k]->at - rest);
    std::copy_n(chosen[k]->bytes, 2, filter.byte[k]);
  }
}

class Search {
 public:
  Search(const char* text, const char* textEnd, const Pattern& sought)
      : s(text), sEnd(textEnd), pattern(sought), limit(textEnd - sought.restLength) {}

  const char* walk() const { return walk(s, limit); }
  const char* find();

 private:
  const char* walk(const char* from, const char* stop) const;
  const char* findInValid(const char* from, const char* last, const char* valid);
  const char* findLinear(const char* from, const char* last, const char* valid) const;
  const char* startBefore(const char* rest) const;

  const char* s;
  const char* sEnd;
  const Pattern& pattern;
  const char* limit;  // the rest of a match begins here at the latest
  Effort effort;
  bool linear = false;
};

// Tries the characters that begin in [from, stop), one by one.
const char* Search::walk(const char* from, const char* stop) const {
  while (from < stop) {
    unsigned short u = 0;
    const char* next = decodeCharacter(u, from, limit);
    if (upper(u) == pattern.first &&
        (pattern.restLength == 0 ||
         cc::compareNoCase(next, next + pattern.restLength, pattern.rest, pattern.end).order ==
             0)) {
      return from;
    }
    from = next;
  }
  return nullptr;
}

// The character that ends at `rest`, where it matches the first of the pattern.
const char* Search::startBefore(const char* rest) const {
  const char* start = cc::characterAt(s, rest - 1);
  unsigned short u = 0;
  decodeCharacter(u, start, rest);
  return upper(u) == pattern.first ? start : nullptr;
}

// The first match whose rest begins behind `from` and at `last` at the latest, all of it in the
// valid text up to `valid`.
const char* Search::findInValid(const char* from, const char* last, const char* valid) {
  if (linear) return findLinear(from, last, valid);
  for (const char* q = from + 1; q <= last; ++q) {
    q = loops->findPatternNoCase(q, last + 1, pattern.filter);
    if (q > last) break;
    std::size_t looked = 1;
    if (canMatch(*q, *pattern.rest)) {
      if (const char* start = startBefore(q)) {
        const cc::NoCaseOrder result =
            cc::compareNoCase(q, q + pattern.restLength, pattern.rest, pattern.end);
        if (result.order == 0) return start;
        looked = result.looked;
      }
    }
    if (effort.isTooMuch(looked, static_cast<std::size_t>(q - s))) {
      linear = pattern.last - pattern.rest >= 16;  // shorter ones cost no more than that
      if (linear) return findLinear(q, last, valid);
    }
  }
  return nullptr;
}

// The same by folded bytes: all of the rest but its last character, which is compared by itself.
const char* Search::findLinear(const char* from, const char* last, const char* valid) const {
  const char* const begin = from + 1;
  const char* found = nullptr;
  const std::size_t lastLength = static_cast<std::size_t>(pattern.end - pattern.last);
  const std::size_t m = pattern.restLength - lastLength;
  const std::size_t n = static_cast<std::size_t>(last - begin) + m;
  const auto accept = [&](std::size_t at) {
    const char* q = begin + at;
    const char* tail = q + m;
    const char* start = startBefore(q);
    if (!start) return false;
    if (cc::compareNoCase(tail, tail + lastLength, pattern.last, pattern.end).order != 0) {
      return false;
    }
    found = start;
    return true;
  };
  if (last >= begin) {
    searchTwoWay(
        [&](std::size_t i) { return foldedByte(pattern.rest, pattern.rest + i, pattern.end); }, m,
        [&](std::size_t i) { return foldedByte(s, begin + i, valid); }, n, accept);
  }
  return found;
}

// Goes over the text in pieces: a valid one the fast way, then what is malformed behind it, if it
// ends there, the plain way.
const char* Search::find() {
  const std::ptrdiff_t restLength = static_cast<std::ptrdiff_t>(pattern.restLength);
  const std::ptrdiff_t pieceSize =
      restLength < PTRDIFF_MAX / 8 ? 16384 + 4 * restLength : PTRDIFF_MAX;
  for (const char* from = s; from < limit;) {
    const char* const stop = sEnd - from <= pieceSize ? sEnd : from + pieceSize;
    const char* const valid = loops->validPrefix(from, stop);
    const char* next = from;
    if (valid - from > restLength) {
      const char* const last = valid - restLength;
      if (const char* found = findInValid(from, last, valid)) return found;
      next = lastStartBefore(from, last);
    }
    if (valid == sEnd) return walk(next, limit);  // a character that the limit cuts
    if (stop - valid < 3 && stop != sEnd) {
      from = next;
      continue;
    }
    // Past the wrong byte; what begins before it may reach it.
    const char* behind = strchk_utf8(valid, static_cast<unsigned int>(stop - valid)) + 1;
    while (behind < limit && continues(*behind)) ++behind;
    behind = std::min(behind, limit);
    if (const char* found = walk(next, behind)) return found;
    from = std::max(behind, next);
  }
  return nullptr;
}

}  // namespace

const char* strfind_i_utf8(const char* s, const char* sEnd, const char* pat, const char* patEnd) {
  if (!pat || !s || pat >= patEnd || s >= sEnd) return sEnd;
  if (sEnd - s < patEnd - pat) return nullptr;
  constexpr std::ptrdiff_t shortText = 128;
  Pattern pattern(pat, patEnd);
  Search search(s, sEnd, pattern);
  return sEnd - s < shortText || !pattern.prepare() ? search.walk() : search.find();
}
