// Conversion by tables of shuffles, for processors that move the bytes of 16 about at once.
// Included where kernels_loops.h is, behind it.
//
// Decoding takes eight bytes of valid text at a time. A bit for each byte that ends a character
// picks the shuffles that bring the last byte of every character, the one before it and the one
// before that to the unit that they make. Encoding lays out the most bytes that each unit may need
// and then closes the gaps. Both write whole registers: what they write too much is overwritten by
// what follows, so they stop where too little does, and the rest goes through a buffer of their
// own.

inline __m128i loadHalf(const char* p) {
  return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p));
}

inline __m128i load16(const void* p) { return _mm_loadu_si128(static_cast<const __m128i*>(p)); }

inline void store16(void* p, __m128i v) { _mm_storeu_si128(static_cast<__m128i*>(p), v); }

// `n` <= 64 bytes to the front of 64 zeros.
inline void copyUpTo64(char* to, const char* from, std::size_t n) {
  if (n < 32) {
    Avx2Block::store(to, Avx2Block::loadPart(from, n));
    return;
  }
  Avx2Block::store(to, Avx2Block::load(from));
  if (n == 64) {
    Avx2Block::store(to + 32, Avx2Block::load(from + 32));
  } else {
    Avx2Block::store(to + 32, Avx2Block::loadPart(from + 32, n - 32));
  }
}

// ------------------------------------------------------------------ UTF-8 to units

// `near` holds the last byte of each character and the one before it, `far` the first of three.
inline __m128i unitsOf(__m128i near, __m128i far) {
  const __m128i low = _mm_and_si128(near, _mm_set1_epi16(0x7F));
  const __m128i middle = _mm_srli_epi16(_mm_and_si128(near, _mm_set1_epi16(0x3F00)), 2);
  return _mm_or_si128(_mm_or_si128(low, middle), _mm_slli_epi16(far, 12));
}

// The low halves of both halves.
inline __m128i lowQuarters(__m256i v) {
  return _mm256_castsi256_si128(_mm256_permute4x64_epi64(v, 0x08));
}

// Eight characters of three bytes each.
inline __m128i unitsOfThrees(const char* p) {
  const __m256i near = _mm256_setr_epi8(2, 1, 5, 4, 8, 7, 11, 10, -1, -1, -1, -1, -1, -1, -1, -1, 2,
                                        1, 5, 4, 8, 7, 11, 10, -1, -1, -1, -1, -1, -1, -1, -1);
  const __m256i far = _mm256_setr_epi8(0, -1, 3, -1, 6, -1, 9, -1, -1, -1, -1, -1, -1, -1, -1, -1,
                                       0, -1, 3, -1, 6, -1, 9, -1, -1, -1, -1, -1, -1, -1, -1, -1);
  const __m256i v = _mm256_set_m128i(load16(p + 12), load16(p));
  return unitsOf(lowQuarters(_mm256_shuffle_epi8(v, near)),
                 lowQuarters(_mm256_shuffle_epi8(v, far)));
}

// Decodes the whole characters among the 32 bytes at `p`, without the last, and returns how many
// bytes they take. Writes up to seven units more than they make.
inline std::size_t decode32(const char* p, std::uint32_t continuing, unsigned short*& dst) {
  const std::uint32_t starts = ~continuing;
  const std::size_t last = 31 - _lzcnt_u32(starts);
  std::uint32_t ends = starts >> 1;
  unsigned short* to = dst;
  for (std::size_t at = 0; at < last;) {
    constexpr std::uint32_t threes = 0x924924;  // the ends of eight characters of three bytes
    if ((ends & 0xFFFFFF) == threes) {
      store16(to, unitsOfThrees(p + at));
      to += 8;
      at += 24;
      ends >>= 24;
      continue;
    }
    const std::uint32_t pattern = ends & 0xFF;
    const __m128i v = loadHalf(p + at);
    const ShuffleTables& tables = shuffleTables;
    const __m128i near = _mm_shuffle_epi8(v, load16(tables.decodeNear[pattern]));
    const __m128i far = _mm_shuffle_epi8(v, load16(tables.decodeFar[pattern]));
    store16(to, unitsOf(near, far));
    to += _mm_popcnt_u32(pattern);
    const unsigned int length = 32 - _lzcnt_u32(pattern);
    at += length;
    ends >>= length;
  }
  dst = to;
  return last;
}

// Decodes the valid text [p, stop), of which `spare` bytes at the end are only looked at: a
// character less than one for every three of them may be overwritten.
inline const char* decodeRun(const char* p, const char* stop, std::size_t spare,
                             unsigned short*& dst, const unsigned short* dstEnd) {
  while (sizeOf(p, stop) >= 32 + spare && dstEnd - dst >= 40) {
    const __m256i v = Avx2Block::load(p);
    if (Avx2Block::isAscii(v)) {
      Avx2Block::store(dst, Avx2Block::widened(p));
      Avx2Block::store(dst + 16, Avx2Block::widened(p + 16));
      p += 32;
      dst += 32;
    } else {
      p += decode32(p, Avx2Block::mask(Avx2Block::continuations(v)), dst);
    }
  }
  return p;
}

// Decodes the valid text [src, stop) as far as there is room.
inline void decodeValid(const char*& src, const char* stop, unsigned short*& dst,
                        const unsigned short* dstEnd) {
  src = decodeRun(src, stop, 24, dst, dstEnd);
  while (src < stop && dst != dstEnd) {
    constexpr std::size_t most = 64;
    const std::size_t left = sizeOf(src, stop);
    std::size_t n = left < most ? left : most;
    while (n < left && continues(src[n])) --n;
    char in[2 * most] = {};
    unsigned short out[3 * most];
    copyUpTo64(in, src, n);
    // The zeros behind the text make a unit each.
    unsigned short* to = out;
    const char* reached = decodeRun(in, in + n + 31, 0, to, out + 3 * most);
    const std::ptrdiff_t made = (to - out) - (reached - (in + n));
    const std::ptrdiff_t fitting = made < dstEnd - dst ? made : dstEnd - dst;
    std::memcpy(dst, out, static_cast<std::size_t>(fitting) * sizeof *out);
    dst += fitting;
    src += n;
  }
}

// ------------------------------------------------------------------ units to UTF-8

// Marks in each unit.
inline __m128i atLeast(__m128i units, unsigned short least) {
  const __m128i v = _mm_set1_epi16(static_cast<short>(least));
  return _mm_cmpeq_epi16(_mm_max_epu16(units, v), units);
}

inline char* putThrees(char* to, __m128i leads, __m128i rest, unsigned int pattern) {
  const __m128i spread = _mm_unpacklo_epi16(leads, rest);
  store16(to, _mm_shuffle_epi8(spread, load16(shuffleTables.encodeThree[pattern])));
  return to + 4 + _mm_popcnt_u32(pattern);
}

// Encodes eight units; writes up to twelve bytes more than they make.
inline char* encode8(__m128i units, char* to) {
  const __m128i wide = atLeast(units, 0x80);
  const __m128i wider = atLeast(units, 0x800);
  const __m128i six = _mm_set1_epi16(0x3F);
  const __m128i high = _mm_and_si128(_mm_srli_epi16(units, 6), six);
  const __m128i low = _mm_slli_epi16(_mm_and_si128(units, six), 8);
  __m128i two = _mm_or_si128(_mm_or_si128(high, low), _mm_set1_epi16(-0x7F40));  // 0x80C0
  two = _mm_blendv_epi8(units, two, wide);
  if (_mm_testz_si128(wider, wider) != 0) {
    const unsigned int pattern =
        static_cast<unsigned int>(_mm_movemask_epi8(_mm_packs_epi16(wide, _mm_setzero_si128())));
    store16(to, _mm_shuffle_epi8(two, load16(shuffleTables.encodeTwo[pattern])));
    return to + 8 + _mm_popcnt_u32(pattern);
  }
  const __m128i rest = _mm_xor_si128(two, _mm_and_si128(wider, _mm_set1_epi16(0x40)));
  const __m128i leads = _mm_or_si128(_mm_srli_epi16(units, 12), _mm_set1_epi16(0xE0));
  const __m128i both = _mm_blendv_epi8(wide, wider, _mm_set1_epi16(-0x100));
  const unsigned int pattern = static_cast<unsigned int>(_mm_movemask_epi8(both));
  to = putThrees(to, leads, rest, pattern & 0xFF);
  return putThrees(to, _mm_unpackhi_epi64(leads, leads), _mm_unpackhi_epi64(rest, rest),
                   pattern >> 8);
}

inline char* encode(const unsigned short* src, const unsigned short* srcEnd, char* dst,
                    const char* dstEnd) {
  while (srcEnd - src >= 32 && dstEnd - dst >= 64) {
    const __m256i v = Avx2Block::load(src);
    if (_mm256_testz_si256(v, _mm256_set1_epi16(-0x80)) != 0) {
      Avx2Block::storeNarrowed(dst, v);
      dst += 16;
    } else {
      dst = encode8(_mm256_castsi256_si128(v), dst);
      dst = encode8(_mm256_extracti128_si256(v, 1), dst);
    }
    src += 16;
  }
  while (src < srcEnd && dst != dstEnd) {
    constexpr std::ptrdiff_t most = 32;
    const std::ptrdiff_t n = srcEnd - src < most ? srcEnd - src : most;
    char in[2 * most] = {};
    char out[3 * most + 16];
    copyUpTo64(in, reinterpret_cast<const char*>(src), 2 * static_cast<std::size_t>(n));
    char* to = out;
    std::ptrdiff_t taken = 0;
    for (; taken < n; taken += 8) to = encode8(load16(in + 2 * taken), to);
    const std::ptrdiff_t made = (to - out) - (taken - n);  // without the zeros, a byte each
    const std::ptrdiff_t fitting = made < dstEnd - dst ? made : dstEnd - dst;
    std::memcpy(dst, out, static_cast<std::size_t>(fitting));
    dst += fitting;
    src += n;
  }
  return dst;
}
