// The first byte says how many follow; what they make is checked afterwards.
#include "characters.h"

namespace tools {

unsigned int decode(std::string_view text, std::size_t& length) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned int first = byte(0);
  length = 1;
  if (first < 0x80) return first;
  const std::size_t n = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || text.size() < n) return NoCharacter;
  unsigned int character = first & (0x7Fu >> n);
  for (std::size_t i = 1; i < n; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return NoCharacter;
    character = character << 6 | (byte(i) & 0x3F);
  }
  const bool overlong = (n == 3 && character < 0x800) || (n == 4 && character < 0x10000);
  const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
  if (overlong || surrogate || character > 0x10FFFF) return NoCharacter;
  length = n;
  return character;
}

}  // namespace tools
