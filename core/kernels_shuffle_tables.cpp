// Makes the tables of shuffles while compiling.

#include "core/kernels_shuffle_tables.h"

namespace cc::kernels {
namespace {

constexpr std::uint8_t zero = 0x80;

constexpr bool has(std::size_t bits, std::size_t i) { return (bits >> i & 1) != 0; }

constexpr void fillDecoding(ShuffleTables& tables, std::size_t ends) {
  std::size_t unit = 0;
  std::size_t start = 0;
  for (std::size_t i = 0; i < 8; ++i) {
    if (!has(ends, i)) continue;
    const std::size_t length = i - start + 1;
    tables.decodeNear[ends][2 * unit] = static_cast<std::uint8_t>(i);
    if (length >= 2) tables.decodeNear[ends][2 * unit + 1] = static_cast<std::uint8_t>(i - 1);
    if (length >= 3) tables.decodeFar[ends][2 * unit] = static_cast<std::uint8_t>(i - 2);
    start = i + 1;
    ++unit;
  }
}

constexpr void fillEncoding(ShuffleTables& tables, std::size_t bits) {
  std::size_t n = 0;
  for (std::size_t unit = 0; unit < 8; ++unit) {
    tables.encodeTwo[bits][n++] = static_cast<std::uint8_t>(2 * unit);
    if (has(bits, unit)) tables.encodeTwo[bits][n++] = static_cast<std::uint8_t>(2 * unit + 1);
  }
  n = 0;
  for (std::size_t unit = 0; unit < 4; ++unit) {
    const std::uint8_t first = static_cast<std::uint8_t>(4 * unit);
    if (has(bits, 2 * unit + 1)) tables.encodeThree[bits][n++] = first;
    tables.encodeThree[bits][n++] = static_cast<std::uint8_t>(first + 2);
    if (has(bits, 2 * unit)) tables.encodeThree[bits][n++] = static_cast<std::uint8_t>(first + 3);
  }
}

constexpr ShuffleTables makeTables() {
  ShuffleTables tables{};
  for (std::size_t bits = 0; bits < 256; ++bits) {
    for (std::size_t i = 0; i < 16; ++i) {
      tables.decodeNear[bits][i] = zero;
      tables.decodeFar[bits][i] = zero;
      tables.encodeTwo[bits][i] = zero;
      tables.encodeThree[bits][i] = zero;
    }
    fillDecoding(tables, bits);
    fillEncoding(tables, bits);
  }
  return tables;
}

}  // namespace

constexpr ShuffleTables shuffleTables = makeTables();

}  // namespace cc::kernels
