// The five bytes that are written as entities.
#pragma once

#include <array>
#include <string_view>

namespace cc {

// The entity for each byte that needs one, else an empty text.
inline constexpr auto entityOfByte = [] {
  std::array<std::string_view, 256> table{};
  table['"'] = "&quot;";
  table['\''] = "&apos;";
  table['&'] = "&amp;";
  table['<'] = "&lt;";
  table['>'] = "&gt;";
  return table;
}();

inline std::string_view entityOf(char c) { return entityOfByte[static_cast<unsigned char>(c)]; }

}  // namespace cc
