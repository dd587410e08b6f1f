// Searches in byte strings.
//
// A pattern search looks for the two bytes of the pattern that are rarest in ordinary text, in
// whole blocks, and compares the rest where both stand. Text and patterns that make many such
// places without a match are searched by the two-way algorithm from there on, so that the time
// stays linear. Where the locale folds more than the ASCII letters, everything goes through the
// upper-case table.

#include <algorithm>
#include <cstring>

#include "charproc.h"
#include "core/case_tables.h"
#include "core/kernels.h"
#include "core/kernels_search.h"
#include "core/kernels_two_way.h"

using namespace cc::kernels;

namespace {

unsigned char byteOf(char c) { return static_cast<unsigned char>(c); }

unsigned char upper(char c) { return chr_upper_table_ascii[byteOf(c)]; }

bool isLetter(unsigned char c) { return (c | 0x20) >= 'a' && (c | 0x20) <= 'z'; }

// Offsets of the two rarest bytes among the first ones of a pattern of at least two.
struct RarePlaces {
  std::size_t first = 0;
  std::size_t second = 1;

  template <class RankOf>
  RarePlaces(const char* pat, std::size_t n, RankOf rankOf) {
    unsigned int least = rankOf(pat[0]);
    unsigned int next = rankOf(pat[1]);
    if (next < least) {
      std::swap(least, next);
      std::swap(first, second);
    }
    n = std::min(n, std::size_t{64});
    for (std::size_t i = 2; i < n; ++i) {
      const unsigned int rank = rankOf(pat[i]);
      if (rank < least) {
        next = least;
        second = first;
        least = rank;
        first = i;
      } else if (rank < next && pat[i] != pat[first]) {
        next = rank;
        second = i;
      }
    }
  }
};

struct Exactly {
  static constexpr auto find = &Loops::findPattern;
  static unsigned char fold(char c) { return byteOf(c); }
  static unsigned char otherCase(unsigned char c) { return c; }
  static std::size_t match(const char* a, const char* b, std::size_t n) {
    // In pieces, for the account of what was compared.
    for (std::size_t i = 0; i < n; i += 64) {
      const std::size_t piece = std::min(n - i, std::size_t{64});
      if (std::memcmp(a + i, b + i, piece) != 0) return i;
    }
    return n;
  }
};

struct WithoutCase {
  static constexpr auto find = &Loops::findPatternNoCase;
  static unsigned char fold(char c) { return upper(c); }
  static unsigned char otherCase(unsigned char c) { return isLetter(c) ? c ^ 0x20 : c; }
  static std::size_t match(const char* a, const char* b, std::size_t n) {
    return loops->matchNoCase(a, b, n);
  }
};

template <class Kind>
const char* findLinear(const char* text, std::size_t n, const char* pat, std::size_t m) {
  const auto patternAt = [pat](std::size_t i) { return Kind::fold(pat[i]); };
  const auto textAt = [text](std::size_t i) { return Kind::fold(text[i]); };
  const auto accept = [](std::size_t) { return true; };
  const std::size_t at = searchTwoWay(patternAt, m, textAt, n, accept);
  return at == n ? nullptr : text + at;
}

// For patterns of at least two bytes, no longer than the text.
template <class Kind>
const char* findFiltered(const char* text, std::size_t n, const char* pat, std::size_t m) {
  const RarePlaces rare(pat, m, [](char x) {
    const unsigned char c = byteOf(x);
    return std::max(commonness(c), commonness(Kind::otherCase(c)));
  });
  PatternFilter filter;
  filter.offset[0] = rare.first;
  filter.offset[1] = rare.second;
  for (std::size_t k = 0; k < 2; ++k) {
    const unsigned char c = byteOf(pat[filter.offset[k]]);
    filter.byte[k][0] = c;
    filter.byte[k][1] = Kind::otherCase(c);
  }
  Effort effort;
  const char* const last = text + (n - m) + 1;
  for (const char* p = text; p != last; ++p) {
    p = (loops->*Kind::find)(p, last, filter);
    if (p == last) break;
    const std::size_t same = Kind::match(p, pat, m);
    if (same == m) return p;
    const std::size_t progress = static_cast<std::size_t>(p - text);
    if (effort.isTooMuch(same, progress)) return findLinear<Kind>(p, n - progress, pat, m);
  }
  return nullptr;
}

const char* endOf(const char* text, unsigned int n) { return text ? text + n : nullptr; }

}  // namespace

const char* strbchr(const char* begin, const char* end, char c) {
  if (end <= begin) return nullptr;
  return static_cast<const char*>(memrchr(begin, c, static_cast<std::size_t>(end - begin)));
}

const char* strfind(const char* s, unsigned int n, char c) {
  return n == 0 ? nullptr : static_cast<const char*>(std::memchr(s, c, n));
}

const char* strfind(const char* text, unsigned int textLen, const char* pat, unsigned int patLen) {
  if (!pat || !text || patLen == 0 || textLen == 0) return endOf(text, textLen);
  if (textLen < patLen) return nullptr;
  if (patLen == 1) return strfind(text, textLen, *pat);
  return findFiltered<Exactly>(text, textLen, pat, patLen);
}

const char* strfind_i_ascii(const char* begin, const char* end, char c) {
  if (begin >= end) return nullptr;
  if (cc::caseTables.plainBytes) {
    const unsigned char wanted = byteOf(c);
    if (!isLetter(wanted)) {
      return static_cast<const char*>(std::memchr(begin, c, static_cast<std::size_t>(end - begin)));
    }
    const unsigned char other = wanted ^ 0x20;
    const PatternFilter filter = {{0, 0}, {{wanted, other}, {wanted, other}}};
    const char* found = loops->findPatternNoCase(begin, end, filter);
    return found == end ? nullptr : found;
  }
  const unsigned char wanted = upper(c);
  const char* found = std::find_if(begin, end, [wanted](char x) { return upper(x) == wanted; });
  return found == end ? nullptr : found;
}

const char* strfind_i_ascii(const char* text, unsigned int textLen, const char* pat,
                            unsigned int patLen) {
  if (!pat || !text || patLen == 0 || textLen == 0) return endOf(text, textLen);
  if (textLen < patLen) return nullptr;
  if (patLen == 1) return strfind_i_ascii(text, text + textLen, *pat);
  if (cc::caseTables.plainBytes) return findFiltered<WithoutCase>(text, textLen, pat, patLen);
  return findLinear<WithoutCase>(text, textLen, pat, patLen);
}
