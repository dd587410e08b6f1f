// The UTF-8 and UTF-16 codec: checking, counting, stepping, converting and case in place.
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
