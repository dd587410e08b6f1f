// What every parser counts on its walk: elements, attributes, and the lengths of their names and
// values. The four counts are folded into one value, so that two walks can be compared.
#pragma once

#include <cstddef>

namespace bench {

class WalkSum {
 public:
  void element(std::size_t nameLength) {
    ++elements;
    names += nameLength;
  }
  void attribute(std::size_t nameLength, std::size_t valueLength) {
    ++attributes;
    names += nameLength;
    values += valueLength;
  }
  std::size_t value() const { return ((elements * 31 + attributes) * 31 + names) * 31 + values; }

 private:
  std::size_t elements = 0, attributes = 0, names = 0, values = 0;
};

}  // namespace bench
