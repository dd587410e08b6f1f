// The searches that the usual document seldom or never comes to.

#include "markup/scan.h"

namespace cc {

const char* findFarByte(const char* p, const char* end, char c) { return findByte(p, end, c); }

const char* findTagEndPlainly(const char* p, const char* end, bool quoted) {
  while (p != end && (quoted || *p != '>')) quoted ^= *p++ == '"';
  return p;
}

}  // namespace cc
