// Conversion and change of case over one kind of block. Included behind kernels_loops.h and one of
// kernels_runs.h and kernels_shuffles.h, which have `decodeValid` and `encode`.
//
// A text is taken in pieces. The valid front of a piece goes through a loop that relies on its
// being valid; what is malformed goes one character at a time.

struct Piece {
  const char* valid;  // end of the valid characters, all of them complete
  const char* next;   // where the next piece may begin: further on where the text is malformed
};

// The piece of the text at `p` < `end`.
inline Piece pieceAt(const char* p, const char* end) {
  constexpr std::ptrdiff_t most = 4096;
  constexpr std::ptrdiff_t malformedStep = 64;
  const char* const stop = end - p <= most ? end : p + most;
  const char* valid = validPrefix(p, stop);
  // A byte behind the piece may continue its last character.
  if (valid == stop && stop != end && continues(*stop)) valid = lastStartBefore(p, stop);
  if (valid == stop || (valid != p && stop - valid < 3)) return {valid, valid};
  return {valid, stop - valid <= malformedStep ? stop : valid + malformedStep};
}

// The front of the text, as far as it is ASCII.
inline void decodeAscii(const char*& src, const char* srcEnd, unsigned short*& dst,
                        const unsigned short* dstEnd) {
  constexpr std::ptrdiff_t n = blockSize;
  while (srcEnd - src >= n && dstEnd - dst >= n && Block::isAscii(loadAt(src))) {
    Block::store(dst, Block::widened(src));
    Block::store(dst + n / 2, Block::widened(src + n / 2));
    src += n;
    dst += n;
  }
}

// Stands by itself, so that short texts of ASCII need no room on the stack.
[[gnu::noinline]] inline unsigned short* decodeMixed(const char* src, const char* srcEnd,
                                                     unsigned short* dst,
                                                     const unsigned short* dstEnd) {
  while (src < srcEnd && dst != dstEnd) {
    const Piece piece = pieceAt(src, srcEnd);
    decodeValid(src, piece.valid, dst, dstEnd);
    while (src < piece.next && dst != dstEnd) src = decodeCharacter(*dst++, src, srcEnd);
  }
  return dst;
}

inline unsigned short* decode(const char* src, const char* srcEnd, unsigned short* dst,
                              const unsigned short* dstEnd) {
  decodeAscii(src, srcEnd, dst, dstEnd);
  return src < srcEnd && dst != dstEnd ? decodeMixed(src, srcEnd, dst, dstEnd) : dst;
}

// ------------------------------------------------------------------ case

// The characters of several bytes in [s, stop), one at a time; returns where the last one ends.
inline char* mapEach(char* s, const char* stop, const char* end, const unsigned short* table) {
  while (s < stop) {
    if (isAscii(*s)) {
      ++s;
      continue;
    }
    unsigned short u = 0;
    const std::ptrdiff_t length = decodeCharacter(u, s, end) - s;
    const unsigned short mapped = table[u];
    if (mapped != u && encodedLength(mapped) == length) encodeCharacter(mapped, s, end);
    s += length;
  }
  return s;
}

// Maps the characters of two and of three bytes that begin at the marks of the block at `p`.
inline void mapLeads(char* p, Mask leads2, Mask leads3, const CaseMap& map) {
  for (; leads2 != 0; leads2 &= leads2 - 1) {
    char* s = p + Block::first(leads2);
    const unsigned int pair = loadAs<std::uint16_t>(s);
    storeAs(s, map.pairs[(pair & 0x1F) << 6 | (pair >> 8 & 0x3F)]);
  }
  for (; leads3 != 0; leads3 &= leads3 - 1) {
    char* s = p + Block::first(leads3);
    unsigned short u = 0;
    decodeCharacter(u, s, s + 3);
    const unsigned short mapped = map.units[u];
    if (mapped != u && mapped >= 0x800) encodeCharacter(mapped, s, s + 3);
  }
}

// The characters of several bytes in the valid text [s, end).
inline void mapValid(char* s, const char* end, const CaseMap& map) {
  const auto mapBlock = [&](char* p, Bytes v) {
    const Marks two = Block::equal(Block::both(v, Block::all(0xE0)), Block::all(0xC0));
    Marks three = Block::equal(Block::both(v, Block::all(0xF0)), Block::all(0xE0));
    const Bytes low7 = Block::both(v, Block::all(0x7F));
    three = Block::without(three, Block::range(low7, map.caselessLow, map.caselessHigh));
    mapLeads(p, Block::mask(two), Block::mask(three), map);
  };
  for (; sizeOf(s, end) >= blockSize; s += blockSize) {
    const Bytes v = loadAt(s);
    if (!Block::isAscii(v)) mapBlock(s, v);
  }
  if (s != end) mapBlock(s, Block::loadPart(s, sizeOf(s, end)));
}

inline void mapCase(char* s, char* end, const CaseMap& map) {
  while (s < end) {
    const Piece piece = pieceAt(s, end);
    char* const valid = s + (piece.valid - s);
    char* const next = s + (piece.next - s);
    flipCase(s, next, map.lowest, map.highest);
    mapValid(s, valid, map);
    s = valid == next ? next : mapEach(valid, next, end, map.units);
  }
}

constexpr Loops table = {
    Block::name, validPrefix,       countCharacters, encodedSize, decode,          encode,
    mapCase,     upperAscii,        lowerAscii,      matchNoCase, matchNoCaseUtf8, compareNoCase,
    findPattern, findPatternNoCase, encodeHex,       decodeHex,
};
