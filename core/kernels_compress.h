// Conversion by compression, for processors that close the gaps in 64 bytes at once and write any
// part of a register. Included where kernels_loops.h is, behind it.
//
// Decoding makes, at each byte that ends a character, the two bytes of its unit from that byte and
// the two before it, and drops what stands at all other bytes. Encoding makes four bytes from each
// unit, three at the most of use, and drops the others.

// The bits of units moved up or down; those that cross from one byte into another are not wanted.
template <int bits>
inline Bytes up(Bytes v) {
  return _mm512_maskz_slli_epi16(~__mmask32{0}, v, bits);
}
template <int bits>
inline Bytes down(Bytes v) {
  return _mm512_maskz_srli_epi16(~__mmask32{0}, v, bits);
}

// The same for each four bytes.
template <int bits>
inline Bytes up4(Bytes v) {
  return _mm512_maskz_slli_epi32(0xFFFF, v, bits);
}
template <int bits>
inline Bytes down4(Bytes v) {
  return _mm512_maskz_srli_epi32(0xFFFF, v, bits);
}

template <int which>
inline __m256i halfOf(Bytes v) {
  return _mm512_maskz_extracti64x4_epi64(0x0F, v, which);
}

inline std::uint64_t lowBits(std::size_t n) {
  return n >= 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << n) - 1;
}

// The first `n` <= 32 units.
inline void storeUnits(unsigned short* to, Bytes units, std::size_t n) {
  _mm512_mask_storeu_epi16(to, static_cast<__mmask32>(lowBits(n)), units);
}

// The low and the high bytes of units, 32 of them, put together.
inline Bytes unitsFrom(__m256i low, __m256i high) {
  return Block::either(_mm512_maskz_cvtepu8_epi16(~__mmask32{0}, low),
                       up<8>(_mm512_maskz_cvtepu8_epi16(~__mmask32{0}, high)));
}

// The bytes of the units that the characters of valid text make, at the last byte of each.
struct UnitBytes {
  Bytes low;
  Bytes high;

  UnitBytes(Bytes v, Marks continuing) {
    const Bytes six = Block::all(0x3F);
    const Bytes middle = _mm512_maskz_mov_epi8(continuing, Block::both(Block::moved1(v), six));
    const Bytes first = _mm512_maskz_mov_epi8(continuing & continuing << 1, Block::moved2(v));
    const Bytes near = Block::both(v, Block::all(0x7F));
    low = Block::either(near, Block::both(up<6>(middle), Block::all(0xC0)));
    high = Block::either(Block::both(down<2>(middle), Block::all(0x0F)),
                         Block::both(up<4>(first), Block::all(0xF0)));
  }
};

// Decodes the valid text [src, stop) as far as there is room.
inline void decodeValid(const char*& src, const char* stop, unsigned short*& dst,
                        const unsigned short* dstEnd) {
  while (src < stop && dst != dstEnd) {
    const std::size_t left = sizeOf(src, stop);
    const std::size_t room = static_cast<std::size_t>(dstEnd - dst);
    const Bytes v = left >= 64 ? loadAt(src) : Block::loadPart(src, left);
    if (left >= 64 && room >= 64 && Block::isAscii(v)) {
      Block::store(dst, Block::widened(src));
      Block::store(dst + 32, Block::widened(src + 32));
      src += 64;
      dst += 64;
      continue;
    }
    const Marks continuing = Block::continuations(v);
    // What follows tells where the last character ends, so it waits for the next turn.
    const std::size_t n = left > 64 ? 63 - _lzcnt_u64(~continuing) : left < 64 ? left : 64;
    const Marks ends = (~continuing & lowBits(n)) >> 1 | std::uint64_t{1} << (n - 1);
    const UnitBytes bytes(v, continuing);
    const Bytes low = _mm512_maskz_compress_epi8(ends, bytes.low);
    const Bytes high = _mm512_maskz_compress_epi8(ends, bytes.high);
    const std::size_t made = static_cast<std::size_t>(_mm_popcnt_u64(ends));
    const std::size_t fitting = made < room ? made : room;
    storeUnits(dst, unitsFrom(halfOf<0>(low), halfOf<0>(high)), fitting < 32 ? fitting : 32);
    if (fitting > 32)
      storeUnits(dst + 32, unitsFrom(halfOf<1>(low), halfOf<1>(high)), fitting - 32);
    src += n;
    dst += fitting;
  }
}

// Encodes up to 16 units, `used` of them, and returns how many bytes they make.
inline std::size_t encode16(__m256i units, std::size_t used, char* to, std::size_t room) {
  const Bytes u = _mm512_maskz_cvtepu16_epi32(0xFFFF, units);
  const __mmask16 two = _mm512_cmpge_epu32_mask(u, _mm512_set1_epi32(0x80));
  const __mmask16 three = _mm512_cmpge_epu32_mask(u, _mm512_set1_epi32(0x800));
  const Bytes six = _mm512_set1_epi32(0x3F);
  const Bytes low = Block::both(u, six);
  const Bytes middle = Block::both(down4<6>(u), six);
  const Bytes high = down4<12>(u);
  const Bytes twos = Block::either(Block::either(middle, up4<8>(low)), _mm512_set1_epi32(0x80C0));
  const Bytes threes = Block::either(Block::either(high, up4<8>(middle)),
                                     Block::either(up4<16>(low), _mm512_set1_epi32(0x8080E0)));
  const Bytes bytes = _mm512_mask_mov_epi32(_mm512_mask_mov_epi32(u, two, twos), three, threes);
  // The first byte of each unit, and all others that are there: they continue it.
  const Marks wanted =
      (Block::mask(bytes) | 0x1111111111111111) & (used >= 16 ? ~Marks{0} : lowBits(4 * used));
  const std::size_t made = static_cast<std::size_t>(_mm_popcnt_u64(wanted));
  const std::size_t fitting = made < room ? made : room;
  _mm512_mask_storeu_epi8(to, lowBits(fitting), _mm512_maskz_compress_epi8(wanted, bytes));
  return fitting;
}

// Writes the 32 units at `src` if all are ASCII.
inline bool encodeAscii32(const unsigned short* src, char* dst) {
  const Bytes v = Block::load(src);
  if (_mm512_test_epi16_mask(v, _mm512_set1_epi16(-0x80)) != 0) return false;
  Block::storeNarrowed(dst, v);
  return true;
}

// Writes the 64 units at `src` if all are ASCII.
inline bool encodeAscii64(const unsigned short* src, char* dst) {
  const Bytes v0 = Block::load(src);
  const Bytes v1 = Block::load(src + 32);
  if (_mm512_test_epi16_mask(Block::either(v0, v1), _mm512_set1_epi16(-0x80)) != 0) return false;
  // Packing takes eight units of each in turn.
  const Bytes order = _mm512_setr_epi64(0, 2, 4, 6, 1, 3, 5, 7);
  Block::store(dst, _mm512_maskz_permutexvar_epi64(0xFF, order, _mm512_packus_epi16(v0, v1)));
  return true;
}

// Stands by itself, so that short texts of ASCII do without its constants.
[[gnu::noinline]] inline char* encodeMixed(const unsigned short* src, const unsigned short* srcEnd,
                                           char* dst, const char* dstEnd) {
  while (src < srcEnd && dst != dstEnd) {
    const std::size_t left = static_cast<std::size_t>(srcEnd - src);
    if (left >= 32 && dstEnd - dst >= 32 && encodeAscii32(src, dst)) {
      src += 32;
      dst += 32;
      continue;
    }
    const std::size_t n = left < 16 ? left : 16;
    const __m256i units = _mm256_maskz_loadu_epi16(static_cast<__mmask16>(lowBits(n)), src);
    dst += encode16(units, n, dst, sizeOf(dst, dstEnd));
    src += n;
  }
  return dst;
}

inline char* encode(const unsigned short* src, const unsigned short* srcEnd, char* dst,
                    const char* dstEnd) {
  while (srcEnd - src >= 64 && dstEnd - dst >= 64 && encodeAscii64(src, dst)) {
    src += 64;
    dst += 64;
  }
  return src < srcEnd && dst != dstEnd ? encodeMixed(src, srcEnd, dst, dstEnd) : dst;
}
