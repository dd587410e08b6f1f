// What the searches and conversions want to know about the character tables, worked out once when
// the tables are filled.
#pragma once

#include <cstdint>

#include "core/kernels.h"

namespace cc {

struct UnitRange {
  unsigned int begin, end;
};

/// The units that may have case; no locale is asked about the others, which is most of the cost of
/// loading. Between the ranges stand scripts without case, ideographs, symbols and what is no
/// character (Unicode 15, UnicodeData.txt).
inline constexpr UnitRange casedRanges[] = {
    {0x0000, 0x0590},  // Latin to Armenian
    {0x10A0, 0x1100},  // Georgian
    {0x13A0, 0x1400},  // Cherokee
    {0x1C80, 0x2000},  // Cyrillic, Georgian, phonetic, Latin and Greek extensions
    {0x2100, 0x2190},  // letterlike symbols, Roman numbers
    {0x24B0, 0x24F0},  // circled letters
    {0x2C00, 0x2E00},  // Glagolitic, Coptic, more of the above
    {0xA640, 0xA800},  // Cyrillic and Latin extensions
    {0xAB30, 0xABC0},  // Latin, Cherokee
    {0xFF20, 0xFF60},  // letters of full width
};

/// Facts about the tables, and shorter forms of them.
struct CaseTables {
  /// The byte tables map a-z and A-Z and nothing else.
  bool plainBytes = false;
  /// The byte tables are plain, and the first 128 entries of the unit tables map the same.
  bool plainAscii = false;
  /// By the eleven bits of a two-byte character: its bytes in upper and in lower case, the first
  /// byte in the low half; its own bytes where the counterpart has another length.
  std::uint16_t upperPairs[2048] = {};
  std::uint16_t lowerPairs[2048] = {};
  /// What the unit tables do not tell when asked for all units of one upper case: those that are
  /// neither the upper case itself nor its lower case. `extraCount` is -1 where there are too many,
  /// or where the upper case of an upper case is another.
  struct Extra {
    std::uint16_t upper;
    std::uint16_t unit;
  };
  static constexpr int mostExtras = 128;
  Extra extras[mostExtras] = {};
  int extraCount = 0;
  /// By the low byte of an upper case: whether there can be extras.
  bool mayHaveExtras[256] = {};
  /// For the loops; of use where `plainAscii` says so.
  kernels::CaseMap upper = {};
  kernels::CaseMap lower = {};
};

/// Written by `chr_tables_prepare`, read by everybody.
extern CaseTables caseTables;

/// Works the facts out again from the character tables.
void deriveCaseTables();

}  // namespace cc
