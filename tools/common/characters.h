// Characters of UTF-8 as RFC 3629 has it, up to four bytes each; the library's own are shorter.
#pragma once

#include <cstddef>
#include <string_view>

namespace tools {

constexpr unsigned int NoCharacter = 0xFFFFFFFF;

// The character at the start of `text`, which is not empty, and the number of its bytes;
// NoCharacter and 1 where the bytes are no UTF-8 (overlong forms, surrogates and numbers above
// 0x10FFFF included).
unsigned int decode(std::string_view text, std::size_t& length);

}  // namespace tools
