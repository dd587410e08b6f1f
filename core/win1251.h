// The Windows-1251 code page: the UTF-16 unit of each byte.
//
// Unicode Consortium, mapping table CP1251. Byte 0x98, which the code page leaves undefined, is a
// space, so that every byte yields a character.
#pragma once

#include <array>

namespace cc {

constexpr std::array<unsigned short, 256> makeWin1251Mapper() {
  constexpr unsigned short kMiddle[64] = {
      // 0x80 to 0xBF
      0x0402, 0x0403, 0x201A, 0x0453, 0x201E, 0x2026, 0x2020, 0x2021,  //
      0x20AC, 0x2030, 0x0409, 0x2039, 0x040A, 0x040C, 0x040B, 0x040F,  //
      0x0452, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  //
      0x0020, 0x2122, 0x0459, 0x203A, 0x045A, 0x045C, 0x045B, 0x045F,  //
      0x00A0, 0x040E, 0x045E, 0x0408, 0x00A4, 0x0490, 0x00A6, 0x00A7,  //
      0x0401, 0x00A9, 0x0404, 0x00AB, 0x00AC, 0x00AD, 0x00AE, 0x0407,  //
      0x00B0, 0x00B1, 0x0406, 0x0456, 0x0491, 0x00B5, 0x00B6, 0x00B7,  //
      0x0451, 0x2116, 0x0454, 0x00BB, 0x0458, 0x0405, 0x0455, 0x0457};
  std::array<unsigned short, 256> units{};
  for (unsigned int byte = 0; byte < 256; ++byte) {
    const unsigned int unit = byte < 0x80   ? byte
                              : byte < 0xC0 ? kMiddle[byte - 0x80]
                                            : byte - 0xC0 + 0x0410;  // the Russian letters
    units[byte] = static_cast<unsigned short>(unit);
  }
  return units;
}

inline constexpr std::array<unsigned short, 256> win1251toutf8mapper = makeWin1251Mapper();

}  // namespace cc
