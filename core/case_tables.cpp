// Looks through the character tables once.

#include "core/case_tables.h"

#include "charproc.h"

namespace cc {
namespace {

unsigned int plainUpper(unsigned int c) { return c >= 'a' && c <= 'z' ? c - 0x20 : c; }
unsigned int plainLower(unsigned int c) { return c >= 'A' && c <= 'Z' ? c + 0x20 : c; }

template <class T>
bool isPlain(const T* lower, const T* upper, unsigned int n) {
  for (unsigned int c = 0; c < n; ++c) {
    if (lower[c] != plainLower(c) || upper[c] != plainUpper(c)) return false;
  }
  return true;
}

}  // namespace

constinit CaseTables caseTables;

void deriveCaseTables() {
  caseTables.plainBytes = isPlain(chr_lower_table_ascii, chr_upper_table_ascii, 256);
  caseTables.plainAscii =
      caseTables.plainBytes && isPlain(chr_lower_table_utf16, chr_upper_table_utf16, 128);
}

}  // namespace cc
