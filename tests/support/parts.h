/// @file
/// Tables of short texts in one literal.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace cc::test {

/// The parts of `text` between its '|'.
inline std::vector<std::string> parts(std::string_view text) {
  std::vector<std::string> all(1);
  for (const char c : text) c == '|' ? all.emplace_back() : all.back() += c;
  return all;
}

}  // namespace cc::test
