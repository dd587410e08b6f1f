// What the searches and conversions want to know about the character tables, worked out once when
// the tables are filled.
#pragma once

#include <cstdint>

#include "core/kernels.h"

namespace cc {

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
