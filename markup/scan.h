// Searches of the markup reader. Each returns `end` when it finds nothing.
#pragma once

#include <cstring>

#include "markup/char_class.h"

namespace cc {

// The first `c`.
inline const char* findByte(const char* p, const char* end, char c) {
  while (p != end && *p != c) ++p;
  return p;
}

// The first `"` or `>`.
inline const char* findQuoteOrTagEnd(const char* p, const char* end) {
  while (p != end && *p != '"' && *p != '>') ++p;
  return p;
}

// The first byte that no name may hold.
inline const char* findNameEnd(const char* p, const char* end) {
  while (p != end && isNameByte(*p)) ++p;
  return p;
}

// The first byte below 0x20.
inline const char* findControl(const char* p, const char* end) {
  while (p != end && static_cast<unsigned char>(*p) >= 0x20) ++p;
  return p;
}

// The first byte that is no white space.
inline const char* skipSpace(const char* p, const char* end) {
  while (p != end && isSpaceByte(*p)) ++p;
  return p;
}

}  // namespace cc
