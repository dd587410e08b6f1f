// Conversion by runs of ASCII, for blocks that cannot move their bytes about freely. Included where
// kernels_loops.h is, behind it.

// Decodes the valid text [src, stop) as far as there is room.
inline void decodeValid(const char*& src, const char* stop, unsigned short*& dst,
                        const unsigned short* dstEnd) {
  constexpr std::ptrdiff_t half = blockSize / 2;
  const char* p = src;
  unsigned short* to = dst;
  while (p < stop && to != dstEnd) {
    while (sizeOf(p, stop) >= blockSize && dstEnd - to >= 2 * half && Block::isAscii(loadAt(p))) {
      Block::store(to, Block::widened(p));
      Block::store(to + half, Block::widened(p + half));
      p += 2 * half;
      to += 2 * half;
    }
    const char* const pause = stop - p < 2 * half ? stop : p + 2 * half;
    while (p < pause && to != dstEnd) {
      const int lead = static_cast<unsigned char>(*p);
      if (lead < 0x80) {
        *to++ = static_cast<unsigned short>(lead);
        ++p;
      } else if (lead < 0xE0) {
        *to++ = static_cast<unsigned short>((lead & 0x1F) << 6 | (p[1] & 0x3F));
        p += 2;
      } else {
        const int tail = (p[1] & 0x3F) << 6 | (p[2] & 0x3F);
        *to++ = static_cast<unsigned short>((lead & 0x0F) << 12 | tail);
        p += 3;
      }
    }
  }
  src = p;
  dst = to;
}

inline char* encode(const unsigned short* src, const unsigned short* srcEnd, char* dst,
                    const char* dstEnd) {
  constexpr std::ptrdiff_t half = blockSize / 2;
  while (src < srcEnd && dst != dstEnd) {
    while (srcEnd - src >= half && dstEnd - dst >= half && Block::areAscii(Block::load(src))) {
      Block::storeNarrowed(dst, Block::load(src));
      src += half;
      dst += half;
    }
    const unsigned short* const pause = srcEnd - src < 2 * half ? srcEnd : src + 2 * half;
    while (src < pause && dst != dstEnd) dst = encodeCharacter(*src++, dst, dstEnd);
  }
  return dst;
}
