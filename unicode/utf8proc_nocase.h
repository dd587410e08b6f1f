// Comparison without regard to case, for the comparing and the searching functions.
#pragma once

#include <cstddef>

#include "core/kernels_character.h"

namespace cc {

/// Start of the character that holds the byte at `p`; a continuation byte right behind an ASCII
/// byte starts one itself. Not before `begin`.
inline const char* characterAt(const char* begin, const char* p) {
  const char* start = kernels::lastStartBefore(begin, p + 1);
  return start < p && kernels::isAscii(*start) ? start + 1 : start;
}

/// How two texts compare, and how many bytes of the first it took to tell.
struct NoCaseOrder {
  int order;
  std::size_t looked;
};

/// Compares by upper-case units: -1, 0 or 1. No end is before its begin.
NoCaseOrder compareNoCase(const char* a, const char* aEnd, const char* b, const char* bEnd);

}  // namespace cc
