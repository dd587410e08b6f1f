// Conversion by tables of shuffles, for processors that move the bytes of 16 about at once.
// Included where kernels_loops.h is, behind it.
//
// Decoding takes eight bytes of valid text at a time. A bit for each byte that ends a character
// picks the shuffles that bring the last byte of every character, the one before it and the one
// before that to the unit that they make. Encoding lays out the most bytes that each unit may need
// and then closes the gaps. Whole registers are written where enough follows to overwrite what is
// too much of them, and parts of registers towards the end.

inline __m128i loadHalf(const char* p) {
  return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p));
}

inline __m128i load16(const void* p) { return _mm_loadu_si128(static_cast<const __m128i*>(p)); }

inline void store16(void* p, __m128i v) { _mm_storeu_si128(static_cast<__m128i*>(p), v); }

// The first `n` <= 16 bytes of `v`.
inline void storePart(void* p, __m128i v, std::size_t n) {
  char* const to = static_cast<char*>(p);
  alignas(16) char bytes[16];
  store16(bytes, v);
  if (n >= 8) {
    storeAs(to, loadAs<std::uint64_t>(bytes));
    storeAs(to + n - 8, loadAs<std::uint64_t>(bytes + n - 8));
  } else if (n >= 4) {
    storeAs(to, loadAs<std::uint32_t>(bytes));
    storeAs(to + n - 4, loadAs<std::uint32_t>(bytes + n - 4));
  } else {
    for (std::size_t i = 0; i < n; ++i) to[i] = bytes[i];
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

// The units of the characters that end at the bits of `ends` among the eight bytes of `v`.
inline __m128i unitsOfEight(__m128i v, unsigned int ends) {
  return unitsOf(_mm_shuffle_epi8(v, load16(shuffleTables.decodeNear[ends])),
                 _mm_shuffle_epi8(v, load16(shuffleTables.decodeFar[ends])));
}

constexpr std::uint64_t threes = 0x924924;  // the ends of eight characters of three bytes

// Walks over eight bytes of valid text at a time.
struct Decoder {
  const char* p;
  unsigned short* to;
  std::uint64_t ends;  // a bit for each byte from `p` on that ends a character

  // Writes up to six units more than it makes.
  void step(__m128i v) {
    const unsigned int pattern = static_cast<unsigned int>(ends) & 0xFF;
    store16(to, unitsOfEight(v, pattern));
    to += _mm_popcnt_u32(pattern);
    const unsigned int length = 32 - _lzcnt_u32(pattern);
    p += length;
    ends >>= length;
  }

  // Eight characters of three bytes each; 28 bytes are readable.
  void stepThrees() {
    store16(to, unitsOfThrees(p));
    to += 8;
    p += 24;
    ends >>= 24;
  }
};

// A bit for each of the 64 bytes at `p` that ends a character; 65 bytes are readable.
inline std::uint64_t endsAt(const char* p) {
  const std::uint64_t low = Avx2Block::mask(Avx2Block::continuations(Avx2Block::load(p + 1)));
  const std::uint64_t high = Avx2Block::mask(Avx2Block::continuations(Avx2Block::load(p + 33)));
  return ~(low | high << 32);
}

// The same for the last `n` <= 64 bytes of a text.
inline std::uint64_t endsOfLast(const char* p, std::size_t n) {
  const auto continuing = [](__m256i v) -> std::uint64_t {
    return Avx2Block::mask(Avx2Block::continuations(v));
  };
  std::uint64_t starts = 0;
  if (n > 32) {
    starts =
        ~(continuing(Avx2Block::load(p)) | continuing(Avx2Block::load(p + n - 32)) << (n - 32));
  } else {
    starts = ~continuing(n == 32 ? Avx2Block::load(p) : Avx2Block::loadPart(p, n));
  }
  const std::uint64_t last = std::uint64_t{1} << (n - 1);
  return (starts & (last - 1 + last)) >> 1 | last;
}

// The eight bytes at `p`, zeros in place of those behind `end`; eight bytes before `end` are
// readable.
inline __m128i loadHalfBefore(const char* p, const char* end) {
  const char* const from = p < end - 8 ? p : end - 8;
  const std::uint64_t v = loadAs<std::uint64_t>(from) >> (8 * (p - from));
  return _mm_set_epi64x(0, static_cast<long long>(v));
}

// Decodes `n` <= 64 bytes of valid text, at least 8, for which there is room. Nothing behind them
// is read, and nothing behind their units written.
inline unsigned short* decodeLast(Decoder decoder, std::size_t n) {
  const char* const end = decoder.p + n;
  unsigned short* const last = decoder.to + __builtin_popcountll(decoder.ends);
  while (last - decoder.to >= 8) {
    if ((decoder.ends & 0xFFFFFF) == threes && end - decoder.p >= 28) {
      decoder.stepThrees();
    } else {
      decoder.step(loadHalfBefore(decoder.p, end));
    }
  }
  const std::size_t rest = static_cast<std::size_t>(last - decoder.to);
  unsigned short units[16];
  unsigned short* const to = decoder.to;
  decoder.to = units;
  while (decoder.p != end) decoder.step(loadHalfBefore(decoder.p, end));
  storePart(to, load16(units), 2 * rest);
  return last;
}

// Decodes the valid text [src, stop) as far as there is room.
inline void decodeValid(const char*& src, const char* stop, unsigned short*& dst,
                        const unsigned short* dstEnd) {
  Decoder decoder{src, dst, 0};
  while (sizeOf(decoder.p, stop) >= 32 && dstEnd - decoder.to >= 32) {
    const char* const p = decoder.p;
    if (Avx2Block::isAscii(Avx2Block::load(p))) {
      Avx2Block::store(decoder.to, Avx2Block::widened(p));
      Avx2Block::store(decoder.to + 16, Avx2Block::widened(p + 16));
      decoder.p += 32;
      decoder.to += 32;
      continue;
    }
    // Behind eight steps there are 24 bytes more at the least, for the units to follow.
    if (sizeOf(p, stop) < 64 + 24 || dstEnd - decoder.to < 64 + 8) break;
    decoder.ends = endsAt(p);
    if ((decoder.ends & 0xFFFFFF) == threes) {
      decoder.stepThrees();
    } else {
      for (int i = 0; i < 8; ++i) decoder.step(loadHalf(decoder.p));
    }
  }
  while (stop - decoder.p >= 8) {
    const std::size_t left = sizeOf(decoder.p, stop);
    std::size_t n = left < 64 ? left : 64;
    while (n < left && continues(decoder.p[n])) --n;
    decoder.ends = endsOfLast(decoder.p, n);
    if (__builtin_popcountll(decoder.ends) > dstEnd - decoder.to) break;
    decoder.to = decodeLast(decoder, n);
    decoder.p += n;
  }
  src = decoder.p;
  dst = decoder.to;
  while (src < stop && dst != dstEnd) src = decodeCharacter(*dst++, src, stop);
}

// ------------------------------------------------------------------ units to UTF-8

// Marks in each unit.
inline __m128i atLeast(__m128i units, unsigned short least) {
  const __m128i v = _mm_set1_epi16(static_cast<short>(least));
  return _mm_cmpeq_epi16(_mm_max_epu16(units, v), units);
}

// Writes encoded bytes, whole registers at a time.
struct WholeWriter {
  char* to;
  void put(__m128i v, std::size_t n) {
    store16(to, v);
    to += n;
  }
};

// Writes encoded bytes and nothing behind them, as far as there is room.
struct ExactWriter {
  char* to;
  const char* end;
  void put(__m128i v, std::size_t n) {
    const std::size_t room = sizeOf(to, end);
    const std::size_t fitting = n < room ? n : room;
    storePart(to, v, fitting);
    to += fitting;
  }
};

inline std::size_t bitsIn(unsigned int pattern) {
  return static_cast<std::size_t>(_mm_popcnt_u32(pattern));
}

// Encodes the first `n` of eight units; those behind are zeros.
template <class Writer>
inline void encode8(__m128i units, std::size_t n, Writer& writer) {
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
    const __m128i shuffle = load16(shuffleTables.encodeTwo[pattern]);
    writer.put(_mm_shuffle_epi8(two, shuffle), n + bitsIn(pattern));
    return;
  }
  const __m128i rest = _mm_xor_si128(two, _mm_and_si128(wider, _mm_set1_epi16(0x40)));
  const __m128i leads = _mm_or_si128(_mm_srli_epi16(units, 12), _mm_set1_epi16(0xE0));
  const __m128i both = _mm_blendv_epi8(wide, wider, _mm_set1_epi16(-0x100));
  const unsigned int pattern = static_cast<unsigned int>(_mm_movemask_epi8(both));
  const unsigned int front = pattern & 0xFF;
  const unsigned int back = pattern >> 8;
  const std::size_t half = n < 4 ? n : 4;
  const __m128i frontShuffle = load16(shuffleTables.encodeThree[front]);
  const __m128i backShuffle = load16(shuffleTables.encodeThree[back]);
  writer.put(_mm_shuffle_epi8(_mm_unpacklo_epi16(leads, rest), frontShuffle), half + bitsIn(front));
  writer.put(_mm_shuffle_epi8(_mm_unpackhi_epi16(leads, rest), backShuffle),
             n - half + bitsIn(back));
}

inline char* encode(const unsigned short* src, const unsigned short* srcEnd, char* dst,
                    const char* dstEnd) {
  // Each unit that follows makes a byte at the least, so twelve overwrite what is too much.
  WholeWriter whole{dst};
  while (srcEnd - src >= 16 && dstEnd - whole.to >= 16) {
    const __m256i v = Avx2Block::load(src);
    if (_mm256_testz_si256(v, _mm256_set1_epi16(-0x80)) != 0) {
      Avx2Block::storeNarrowed(whole.to, v);
      whole.to += 16;
      src += 16;
    } else if (srcEnd - src >= 16 + 12 && dstEnd - whole.to >= 48 + 12) {
      encode8(_mm256_castsi256_si128(v), 8, whole);
      encode8(_mm256_extracti128_si256(v, 1), 8, whole);
      src += 16;
    } else {
      break;
    }
  }
  ExactWriter exact{whole.to, dstEnd};
  while (src < srcEnd && exact.to != dstEnd) {
    const std::size_t n = srcEnd - src < 8 ? static_cast<std::size_t>(srcEnd - src) : 8;
    const char* const bytes = reinterpret_cast<const char*>(src);
    encode8(n == 8 ? load16(src) : Sse2Block::loadPart(bytes, 2 * n), n, exact);
    src += n;
  }
  return exact.to;
}
