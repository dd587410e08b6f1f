// One character of UTF-8 at a time: what every conversion does at the ends of its fast runs and
// where the text is malformed.
#pragma once

#include <cstddef>

namespace cc::kernels {

/// True for a byte that continues a character: 10xxxxxx.
inline bool continues(char c) { return (c & 0xC0) == 0x80; }

inline bool isAscii(char c) { return (c & 0x80) == 0; }

/// Number of bytes that encode `u`: 1 to 3.
inline std::ptrdiff_t encodedLength(unsigned short u) { return u <= 0x7F ? 1 : u <= 0x7FF ? 2 : 3; }

/// Decodes the character at `p` < `end` and returns the position after it.
inline const char* decodeCharacter(unsigned short& out, const char* p, const char* end) {
  unsigned int value = static_cast<unsigned char>(*p++);
  if (value >= 0x80) {
    value &= 0x1F;
    for (; p != end && continues(*p); ++p) {
      value = (value << 6) + (static_cast<unsigned char>(*p) & 0x3F);
    }
  }
  out = static_cast<unsigned short>(value);
  return p;
}

/// Encodes `u` at `p`, as far as it fits before `end`, and returns the position reached.
inline char* encodeCharacter(unsigned short u, char* p, const char* end) {
  if (p == end) return p;
  if (u <= 0x7F) {
    *p = static_cast<char>(u);
    return p + 1;
  }
  if (u <= 0x7FF) {
    *p++ = static_cast<char>(0xC0 | u >> 6);
  } else {
    *p++ = static_cast<char>(0xE0 | u >> 12);
    if (p == end) return p;
    *p++ = static_cast<char>(0x80 | (u >> 6 & 0x3F));
  }
  if (p == end) return p;
  *p++ = static_cast<char>(0x80 | (u & 0x3F));
  return p;
}

/// Start of the last character that begins before `p`, not before `begin`.
inline const char* lastStartBefore(const char* begin, const char* p) {
  while (p > begin && continues(*--p)) {
  }
  return p;
}

}  // namespace cc::kernels
