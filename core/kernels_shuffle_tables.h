// The tables of shuffles behind the conversions: for each pattern of eight bits the places where
// the bytes of a result come from. 0x80 makes a zero.
#pragma once

#include <cstddef>
#include <cstdint>

namespace cc::kernels {

struct ShuffleTables {
  using Row = std::uint8_t[16];

  /// By the ends of characters among eight bytes: each unit's last byte and the one before it.
  alignas(16) Row decodeNear[256];
  /// The same: the byte before these two.
  alignas(16) Row decodeFar[256];
  /// By the units of eight that are not ASCII: their bytes from two for each.
  alignas(16) Row encodeTwo[256];
  /// By two bits for each of four units (not ASCII, not below 0x800): their bytes from four for
  /// each, of which the second is unused.
  alignas(16) Row encodeThree[256];
};

extern const ShuffleTables shuffleTables;

}  // namespace cc::kernels
