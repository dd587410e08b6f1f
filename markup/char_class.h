// The classes of bytes in markup.
#pragma once

#include <array>
#include <string_view>

namespace cc {

// Class letters, as the table holds them.
enum CharClass : unsigned char {
  ClassOther = 0,
  ClassSeparator = 'S',
  ClassSpace = 'W',
  ClassName = 'G',
};

constexpr std::array<unsigned char, 256> makeCharTable() {
  std::array<unsigned char, 256> table{};
  constexpr std::string_view separators = "/<>";
  constexpr std::string_view spaces = " \t\n\r";
  constexpr std::string_view names =
      "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz._-:";
  for (const char c : separators) table[static_cast<unsigned char>(c)] = ClassSeparator;
  for (const char c : spaces) table[static_cast<unsigned char>(c)] = ClassSpace;
  for (const char c : names) table[static_cast<unsigned char>(c)] = ClassName;
  return table;
}

inline constexpr std::array<unsigned char, 256> xml_char_table = makeCharTable();

inline unsigned char classOf(char c) { return xml_char_table[static_cast<unsigned char>(c)]; }
inline bool isNameByte(char c) { return classOf(c) == ClassName; }
inline bool isSpaceByte(char c) { return classOf(c) == ClassSpace; }

}  // namespace cc
