// The five bytes that are written as entities, and texts in which they are.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace cc {

// What a byte is written as: seven bytes, of which the first `size` count.
struct Escaped {
  std::array<char, 7> bytes{};
  std::uint8_t size = 0;

  constexpr Escaped() = default;
  constexpr explicit Escaped(std::string_view text) : size(static_cast<std::uint8_t>(text.size())) {
    for (std::size_t i = 0; i < text.size(); ++i) bytes[i] = text[i];
  }
};

// An entity for each byte that needs one, every other byte as it is.
inline constexpr auto escapedBytes = [] {
  std::array<Escaped, 256> table{};
  for (std::size_t i = 0; i < table.size(); ++i) {
    const char byte = static_cast<char>(i);
    table[i] = Escaped(std::string_view(&byte, 1));
  }
  table['"'] = Escaped("&quot;");
  table['\''] = Escaped("&apos;");
  table['&'] = Escaped("&amp;");
  table['<'] = Escaped("&lt;");
  table['>'] = Escaped("&gt;");
  return table;
}();

inline const Escaped& escaped(char c) { return escapedBytes[static_cast<unsigned char>(c)]; }

// Number of bytes that the text takes with entities.
unsigned long long escapedLength(const char* begin, const char* end);

// Writes the text with entities to `to`, which has room for just that; returns the end.
char* escapeText(const char* begin, const char* end, char* to);

}  // namespace cc
