// The five bytes that are written as entities, and texts in which they are.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace cc {

// An entity as it is copied: eight bytes, of which the first `size` count.
struct Entity {
  std::array<char, 8> bytes{};
  std::uint8_t size = 0;

  constexpr Entity() = default;
  constexpr explicit Entity(std::string_view text) : size(static_cast<std::uint8_t>(text.size())) {
    for (std::size_t i = 0; i < text.size(); ++i) bytes[i] = text[i];
  }
};

// The entity for each byte that needs one, else an empty one.
inline constexpr auto entityOfByte = [] {
  std::array<Entity, 256> table{};
  table['"'] = Entity("&quot;");
  table['\''] = Entity("&apos;");
  table['&'] = Entity("&amp;");
  table['<'] = Entity("&lt;");
  table['>'] = Entity("&gt;");
  return table;
}();

inline const Entity& entityOf(char c) { return entityOfByte[static_cast<unsigned char>(c)]; }

// Number of bytes that the text takes with entities.
unsigned long long escapedLength(const char* begin, const char* end);

// Writes the text with entities to `to`, which has room for just that; returns the end.
char* escapeText(const char* begin, const char* end, char* to);

}  // namespace cc
