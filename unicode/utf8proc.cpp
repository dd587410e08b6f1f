// The UTF-8 and UTF-16 codec and its operations without regard to case.
//
// Everything rests on one test: a byte whose top bits are 10 continues a character, every other
// byte starts one.

#include "utf8proc.h"

#include <cstring>

#include "charproc.h"
#include "core/case_tables.h"
#include "core/kernels.h"
#include "core/kernels_character.h"

using namespace cc::kernels;

namespace {

// Replaces each character by its entry in the map's table where the entry fits in the same bytes.
void changeCase(char* s, const char* end, const CaseMap& map) {
  if (!s || s >= end) return;
  if (cc::caseTables.plainAscii) {
    loops->mapCase(s, s + (end - s), map);
    return;
  }
  while (s < end) {
    unsigned short u = 0;
    const std::ptrdiff_t length = decodeCharacter(u, s, end) - s;
    const unsigned short mapped = map.units[u];
    if (mapped != u && encodedLength(mapped) == length) encodeCharacter(mapped, s, end);
    s += length;
  }
}

// Start of the character that holds the byte at `p`, itself where that is a stray continuation.
const char* characterAt(const char* begin, const char* p) {
  const char* start = chrback_utf8(begin, p + 1);
  return start < p && isAscii(*start) ? start + 1 : start;
}

}  // namespace

const char* strchk_utf8(const char* s, unsigned int n) {
  if (!s) return nullptr;
  const char* end = s + n;
  s = loops->validPrefix(s, end);
  while (s != end) {
    const unsigned char lead = static_cast<unsigned char>(*s);
    if (lead < 0x80) {
      ++s;
      continue;
    }
    if (lead < 0xC0 || lead >= 0xF0) return s;
    const int more = lead < 0xE0 ? 1 : 2;
    if (end - s <= more) return s;
    ++s;
    for (int i = 0; i < more; ++i, ++s) {
      if (!continues(*s)) return s;
    }
  }
  return nullptr;
}

unsigned int strlen_utf8(const char* s) {
  if (!s) return 0;
  // In pieces that stay in the cache: each is measured, then counted.
  constexpr std::size_t piece = 4096;
  unsigned int n = 0;
  for (std::size_t length = piece; length == piece; s += piece) {
    length = strnlen(s, piece);
    n += strlen_utf8(s, s + length);
  }
  return n;
}

unsigned int strlen_utf8(const char* begin, const char* end) {
  if (begin >= end) return 0;
  return static_cast<unsigned int>(loops->countCharacters(begin, end));
}

unsigned int strlen_utf8(const unsigned short* s) {
  return s ? strlen_utf8(s, strchr_utf16(s, 0)) : 0;
}

unsigned int strlen_utf8(const unsigned short* begin, const unsigned short* end) {
  if (begin >= end) return 0;
  return static_cast<unsigned int>(loops->encodedSize(begin, end));
}

const char* chrpass_utf8(const char* p, const char* end) {
  if (p >= end) return end;
  do {
    ++p;
  } while (p != end && continues(*p));
  return p;
}

const char* chrback_utf8(const char* begin, const char* p) {
  if (p <= begin) return begin;
  do {
    --p;
  } while (p != begin && continues(*p));
  return p;
}

const char* getch_utf8(unsigned short& out, const char* p, const char* end) {
  if (!p) return nullptr;
  if (p != end) return decodeCharacter(out, p, end);
  out = 0xFFFF;
  return p;
}

char* putch_utf8(unsigned short u, char* p, const char* end) { return encodeCharacter(u, p, end); }

char* utf16_to_utf8(const unsigned short* src, const unsigned short* srcEnd, char* dst,
                    const char* dstEnd) {
  if (!src || src >= srcEnd || dst >= dstEnd) return dst;
  return loops->encode(src, srcEnd, dst, dstEnd);
}

unsigned short* utf8_to_utf16(const char* src, const char* srcEnd, unsigned short* dst,
                              const unsigned short* dstEnd) {
  if (!src || src >= srcEnd || dst >= dstEnd) return dst;
  return loops->decode(src, srcEnd, dst, dstEnd);
}

void strup_utf8(char* s, const char* end) { changeCase(s, end, cc::caseTables.upper); }

void strlw_utf8(char* s, const char* end) { changeCase(s, end, cc::caseTables.lower); }

int strcmp_i_utf8(const char* a, const char* aEnd, const char* b, const char* bEnd) {
  if (!a) a = aEnd = empty_string;
  if (!b) b = bEnd = empty_string;
  const char* p = a;
  const char* q = b;
  while (p < aEnd && q < bEnd) {
    if (*p == *q) {
      ++p;
      ++q;
      continue;
    }
    unsigned short left = 0;
    unsigned short right = 0;
    if (isAscii(*p) && isAscii(*q)) {
      left = chr_upper_table_ascii[static_cast<unsigned char>(*p++)];
      right = chr_upper_table_ascii[static_cast<unsigned char>(*q++)];
    } else {
      p = getch_utf8(left, characterAt(a, p), aEnd);
      q = getch_utf8(right, characterAt(b, q), bEnd);
      left = chr_upper_table_utf16[left];
      right = chr_upper_table_utf16[right];
    }
    if (left != right) return left > right ? 1 : -1;
  }
  return (p < aEnd ? 1 : 0) - (q < bEnd ? 1 : 0);
}

const char* strfind_i_utf8(const char* s, const char* sEnd, const char* pat, const char* patEnd) {
  if (!pat || !s || pat >= patEnd || s >= sEnd) return sEnd;
  if (sEnd - s < patEnd - pat) return nullptr;
  unsigned short first = 0;
  const char* rest = getch_utf8(first, pat, patEnd);
  first = chr_upper_table_utf16[first];
  const char* limit = sEnd - (patEnd - rest);
  while (s < limit) {
    unsigned short u = 0;
    const char* next = getch_utf8(u, s, limit);
    if (chr_upper_table_utf16[u] == first &&
        strcmp_i_utf8(next, next + (patEnd - rest), rest, patEnd) == 0) {
      return s;
    }
    s = next;
  }
  return nullptr;
}
