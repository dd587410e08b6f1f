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

std::uint16_t pairOf(unsigned int u) {
  return static_cast<std::uint16_t>((0xC0 | u >> 6) | (0x80 | (u & 0x3F)) << 8);
}

void fillPairs(std::uint16_t (&pairs)[2048], const unsigned short* table) {
  for (unsigned int u = 0; u < 2048; ++u) {
    const unsigned int mapped = table[u];
    pairs[u] = pairOf(mapped >= 0x80 && mapped < 0x800 ? mapped : u);
  }
}

// The longest run of caseless leads; that of 0xE0, whose overlong forms reach everything, is none.
void findCaseless(kernels::CaseMap& map, const unsigned short* table) {
  bool changed[16] = {};  // by the high four bits of the unit, which are those of the lead
  for (const UnitRange& range : casedRanges) {
    for (unsigned int u = range.begin; u < range.end; ++u) {
      if (table[u] != u) changed[u >> 12] = true;
    }
  }
  map.caselessLow = map.caselessHigh = 0x7F;
  unsigned int longest = 0;
  unsigned int length = 0;
  for (unsigned int low = 1; low < 16; ++low) {
    length = changed[low] ? 0 : length + 1;
    if (length <= longest) continue;
    longest = length;
    map.caselessHigh = static_cast<unsigned char>(0x60 + low);
    map.caselessLow = static_cast<unsigned char>(map.caselessHigh - length + 1);
  }
}

// Adds the unit where it is one that the unit tables do not tell; false where that cannot be said.
bool addExtra(CaseTables& tables, unsigned int u) {
  const std::uint16_t upper = chr_upper_table_utf16[u];
  if (upper == u) return true;
  const bool isLast = chr_upper_table_utf16[upper] == upper;
  if (isLast && chr_lower_table_utf16[upper] == u) return true;
  if (!isLast || tables.extraCount == CaseTables::mostExtras) return false;
  tables.extras[tables.extraCount++] = {upper, static_cast<std::uint16_t>(u)};
  tables.mayHaveExtras[upper & 0xFF] = true;
  return true;
}

void findExtras(CaseTables& tables) {
  tables.extraCount = 0;
  for (bool& may : tables.mayHaveExtras) may = false;
  for (const UnitRange& range : casedRanges) {
    for (unsigned int u = range.begin; u < range.end; ++u) {
      if (addExtra(tables, u)) continue;
      tables.extraCount = -1;
      return;
    }
  }
}

}  // namespace

constinit CaseTables caseTables;

void deriveCaseTables() {
  caseTables.plainBytes = isPlain(chr_lower_table_ascii, chr_upper_table_ascii, 256);
  caseTables.plainAscii =
      caseTables.plainBytes && isPlain(chr_lower_table_utf16, chr_upper_table_utf16, 128);
  fillPairs(caseTables.upperPairs, chr_upper_table_utf16);
  fillPairs(caseTables.lowerPairs, chr_lower_table_utf16);
  caseTables.upper = {'a', 'z', 0, 0, caseTables.upperPairs, chr_upper_table_utf16};
  caseTables.lower = {'A', 'Z', 0, 0, caseTables.lowerPairs, chr_lower_table_utf16};
  findCaseless(caseTables.upper, chr_upper_table_utf16);
  findCaseless(caseTables.lower, chr_lower_table_utf16);
  findExtras(caseTables);
}

}  // namespace cc
