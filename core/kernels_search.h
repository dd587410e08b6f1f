// Pattern search: a filter of two bytes of the pattern over whole blocks, and a linear search for
// when the filter lets too much through.
#pragma once

#include <cstddef>

#include "core/kernels.h"

namespace cc::kernels {

/// How common a byte is in ordinary text: 0 for the rarest.
unsigned int commonness(unsigned char c);

/// Keeps account of the bytes that were compared in vain, so that a search can change its way
/// before they outgrow the bytes that it got past.
class Effort {
 public:
  /// True when comparing `spent` more bytes, `progress` bytes into the text, was too much.
  bool isTooMuch(std::size_t spent, std::size_t progress) {
    total += spent + callCost;
    return total > allowance && (total - allowance) / costPerByte > progress;
  }

 private:
  static constexpr std::size_t callCost = 16;
  static constexpr std::size_t costPerByte = 4;
  static constexpr std::size_t allowance = 4096;
  std::size_t total = 0;
};

}  // namespace cc::kernels
