// The hot loops over one kind of block. Included once per kind, inside of a namespace that says
// which type `Block` is; there is no include guard on purpose.
//
// A range is taken in whole blocks and one last block for what is left: one that ends at the end of
// the range where there is room for it, else a block filled up with zeros.

using Bytes = Block::Bytes;
using Marks = Block::Marks;
using Mask = Block::Mask;
constexpr std::size_t blockSize = Block::size;

inline Bytes loadAt(const char* p) { return Block::load(p); }

inline std::size_t sizeOf(const char* begin, const char* end) {
  return static_cast<std::size_t>(end - begin);
}

// ------------------------------------------------------------------ UTF-8

// The marks of what is wrong at the start of a text.
inline auto wrongAtStart(Bytes v) {
  const auto misplaced = Block::misplaced(v, Block::moved1(v), Block::moved2(v));
  return Block::either(misplaced, Block::foreign(v));
}

// The marks of what is wrong in a block at `p`, two bytes before which are readable.
inline auto wrongAt(const char* p) {
  const Bytes v = loadAt(p);
  const auto misplaced = Block::misplaced(v, loadAt(p - 1), loadAt(p - 2));
  return Block::either(misplaced, Block::foreign(v));
}

// The same for four blocks together.
inline auto wrongInFour(const char* p) {
  const auto misplacedIn = [p](std::size_t i, Bytes v) {
    return Block::misplaced(v, loadAt(p + i * blockSize - 1), loadAt(p + i * blockSize - 2));
  };
  const Bytes v0 = loadAt(p);
  const Bytes v1 = loadAt(p + blockSize);
  const Bytes v2 = loadAt(p + 2 * blockSize);
  const Bytes v3 = loadAt(p + 3 * blockSize);
  const auto in01 = Block::either(misplacedIn(0, v0), misplacedIn(1, v1));
  const auto in23 = Block::either(misplacedIn(2, v2), misplacedIn(3, v3));
  return Block::either(Block::either(in01, in23), Block::foreign(v0, v1, v2, v3));
}

// The bits that any of four blocks has.
inline Bytes eitherOfFour(const char* p) {
  const Bytes v01 = Block::either(loadAt(p), loadAt(p + blockSize));
  return Block::either(v01, Block::either(loadAt(p + 2 * blockSize), loadAt(p + 3 * blockSize)));
}

// `end`, or the start of a last character that lacks bytes.
inline const char* withoutCutCharacter(const char* begin, const char* end) {
  if (begin != end && static_cast<unsigned char>(end[-1]) >= 0xC0) return end - 1;
  if (end - begin > 1 && static_cast<unsigned char>(end[-2]) >= 0xE0) return end - 2;
  return end;
}

inline const char* validPrefix(const char* begin, const char* end) {
  const std::size_t n = sizeOf(begin, end);
  if (n < blockSize) {
    if (Block::mask(wrongAtStart(Block::loadPart(begin, n))) != 0) return begin;
    return withoutCutCharacter(begin, end);
  }
  if (Block::mask(wrongAtStart(loadAt(begin))) != 0) return begin;
  const char* p = begin + blockSize;
  bool maybeCut = true;  // a character may go on beyond `p`
  for (; sizeOf(p, end) >= 4 * blockSize; p += 4 * blockSize) {
    if (Block::isAscii(eitherOfFour(p))) {
      if (maybeCut && withoutCutCharacter(begin, p) != p) return lastStartBefore(begin, p);
      maybeCut = false;
      continue;
    }
    maybeCut = true;
    if (Block::mask(wrongInFour(p)) != 0) return lastStartBefore(begin, p);
  }
  for (; sizeOf(p, end) >= blockSize; p += blockSize) {
    if (Block::mask(wrongAt(p)) != 0) return lastStartBefore(begin, p);
  }
  if (n >= blockSize + 2) {
    if (Block::mask(wrongAt(end - blockSize)) != 0) return lastStartBefore(begin, p);
  } else if (const std::size_t left = sizeOf(p, end); left != 0) {
    const Bytes v = Block::loadPart(p, left);
    const auto misplaced =
        Block::misplaced(v, Block::loadPart(p - 1, left), Block::loadPart(p - 2, left));
    if (Block::mask(Block::either(misplaced, Block::foreign(v))) != 0)
      return lastStartBefore(begin, p);
  }
  return withoutCutCharacter(begin, end);
}

// The sum over a range of what a tally adds up, four steps of it a turn.
template <class Tally>
inline std::size_t sumOver(const char* p, const char* end) {
  constexpr std::size_t step = Tally::step;
  Block::Sums sums{};
  while (sizeOf(p, end) >= 4 * step) {
    Bytes t0 = Block::all(0);
    Bytes t1 = t0;
    Bytes t2 = t0;
    Bytes t3 = t0;
    const std::size_t turns = sizeOf(p, end) / (4 * step);
    const char* const stop = p + 4 * step * (turns < Tally::most ? turns : Tally::most);
    for (; p != stop; p += 4 * step) {
      t0 = Tally::add(t0, p);
      t1 = Tally::add(t1, p + step);
      t2 = Tally::add(t2, p + 2 * step);
      t3 = Tally::add(t3, p + 3 * step);
    }
    sums = Block::plusSums(Block::plusSums(sums, t0), t1);
    sums = Block::plusSums(Block::plusSums(sums, t2), t3);
  }
  Bytes last = Block::all(0);
  for (; sizeOf(p, end) >= step; p += step) last = Tally::add(last, p);
  return Block::total(Block::plusSums(sums, Tally::addPart(last, p, sizeOf(p, end))));
}

struct ContinuationTally {
  static constexpr std::size_t step = blockSize;
  static constexpr std::size_t most = 255;  // turns that the bytes of a tally can take
  static Bytes add(Bytes tally, const char* p) {
    return Block::tallied(tally, Block::continuations(loadAt(p)));
  }
  static Bytes addPart(Bytes tally, const char* p, std::size_t n) {
    return Block::tallied(tally, Block::continuations(Block::loadPart(p, n)));
  }
};

// What units are short of three bytes; zeros in place of missing units are short of two each.
struct ShortUnitTally {
  static constexpr std::size_t step = 2 * blockSize;
  static constexpr std::size_t most = Block::shortUnitTurns;
  static Bytes add(Bytes tally, const char* p) {
    return Block::talliedShort(tally, loadAt(p), loadAt(p + blockSize));
  }
  static Bytes addPart(Bytes tally, const char* p, std::size_t n) {
    if (n < blockSize) return Block::talliedShort(tally, Block::loadPart(p, n), Block::all(0));
    const Bytes rest = Block::loadPart(p + blockSize, n - blockSize);
    return Block::talliedShort(tally, loadAt(p), rest);
  }
};

inline std::size_t countCharacters(const char* begin, const char* end) {
  return sizeOf(begin, end) - sumOver<ContinuationTally>(begin, end);
}

inline std::size_t encodedSize(const unsigned short* begin, const unsigned short* end) {
  const char* const first = reinterpret_cast<const char*>(begin);
  const char* const last = reinterpret_cast<const char*>(end);
  const std::size_t size = sizeOf(first, last);
  const std::size_t zeros = ShortUnitTally::step - size % ShortUnitTally::step;  // in bytes
  return size / 2 * 3 + zeros - sumOver<ShortUnitTally>(first, last);
}

// ------------------------------------------------------------------ case

// Flips the case of the letters from `low` to `high`. A byte that is met twice at the end has no
// letter of the range any more.
inline void flipCase(char* begin, char* end, unsigned char low, unsigned char high) {
  const auto flipped = [low, high](Bytes v) {
    return Block::differ(v, Block::where(Block::range(v, low, high), 0x20));
  };
  char* p = begin;
  for (; sizeOf(p, end) >= blockSize; p += blockSize) Block::store(p, flipped(loadAt(p)));
  if (p == end) return;
  if (p != begin) {
    Block::store(end - blockSize, flipped(loadAt(end - blockSize)));
    return;
  }
  using Word = PlainBlock;
  for (; sizeOf(p, end) >= Word::size; p += Word::size) {
    const Word::Bytes v = Word::load(p);
    Word::store(p, Word::differ(v, Word::where(Word::range(v, low, high), 0x20)));
  }
  for (; p != end; ++p) {
    const unsigned char c = static_cast<unsigned char>(*p);
    if (c >= low && c <= high) *p = static_cast<char>(c ^ 0x20);
  }
}

inline void upperAscii(char* begin, char* end) { flipCase(begin, end, 'a', 'z'); }
inline void lowerAscii(char* begin, char* end) { flipCase(begin, end, 'A', 'Z'); }

// The bits in which bytes differ, but not that of the case of a letter.
inline Bytes differNoCase(Bytes a, Bytes b) {
  const Bytes caseBit = Block::all(0x20);
  const Marks letters = Block::range(Block::either(a, caseBit), 'a', 'z');
  return Block::without(Block::differ(a, b), Block::where(letters, 0x20));
}

inline Mask nonZero(Bytes v) { return Block::mask(Block::others(Block::equal(v, Block::all(0)))); }

// The first block of two texts, or all of them where they are shorter.
struct BlockPair {
  Bytes a;
  Bytes b;
  Mask differing;  // by more than the case of a letter of ASCII

  BlockPair(const char* p, const char* q, std::size_t n)
      : a(n < blockSize ? Block::loadPart(p, n) : loadAt(p)),
        b(n < blockSize ? Block::loadPart(q, n) : loadAt(q)),
        differing(nonZero(differNoCase(a, b))) {}

  // The first bytes of characters of two bytes in both; what is behind the block continues none.
  Mask letters() const {
    constexpr unsigned int bits = Block::bitsPerMark;
    const auto leads = [](Bytes v) {
      return Block::mask(Block::equal(Block::both(v, Block::all(0xE0)), Block::all(0xC0)));
    };
    const Mask tails = Block::mask(Block::continuations(a));
    const Mask otherTails = Block::mask(Block::continuations(b));
    return leads(a) & leads(b) & (tails & otherTails) >> bits & ~((tails | otherTails) >> 2 * bits);
  }
};

inline std::size_t matchNoCase(const char* a, const char* b, std::size_t n) {
  if (n <= blockSize) {
    const Mask m = BlockPair(a, b, n).differing;
    return m != 0 ? Block::first(m) : n;
  }
  const auto differAt = [a, b](std::size_t i) {
    return differNoCase(loadAt(a + i), loadAt(b + i));
  };
  std::size_t i = 0;
  for (; n - i >= 2 * blockSize; i += 2 * blockSize) {
    const Bytes v0 = differAt(i);
    const Bytes v1 = differAt(i + blockSize);
    if (nonZero(Block::either(v0, v1)) == 0) continue;
    if (const Mask m = nonZero(v0); m != 0) return i + Block::first(m);
    return i + blockSize + Block::first(nonZero(v1));
  }
  if (n - i >= blockSize) {
    if (const Mask m = nonZero(differAt(i)); m != 0) return i + Block::first(m);
  }
  const Mask m = nonZero(differAt(n - blockSize));
  return m != 0 ? n - blockSize + Block::first(m) : n;
}

// The order of two texts that match up to `i`.
inline int orderAt(std::size_t i, const char* a, std::size_t na, const char* b, std::size_t nb) {
  if (i < na && i < nb)
    return static_cast<unsigned char>(a[i]) > static_cast<unsigned char>(b[i]) ? 1 : -1;
  return (na > nb ? 1 : 0) - (na < nb ? 1 : 0);
}

// Stands by itself, so that short texts need no room on the stack.
[[gnu::noinline]] inline int compareLongNoCase(const char* a, std::size_t na, const char* b,
                                               std::size_t nb) {
  return orderAt(matchNoCase(a, b, na < nb ? na : nb), a, na, b, nb);
}

inline int compareNoCase(const char* a, std::size_t na, const char* b, std::size_t nb) {
  const std::size_t n = na < nb ? na : nb;
  if (n > blockSize) return compareLongNoCase(a, na, b, nb);
  const Mask m = BlockPair(a, b, n).differing;
  return orderAt(m != 0 ? Block::first(m) : n, a, na, b, nb);
}

// How much of the first block matches. Where more text follows, a character of two bytes at the end
// of the block does not, because what is behind it tells where it ends.
inline std::size_t matchBlockNoCase(const char* a, const char* b, std::size_t n,
                                    const unsigned short* upper) {
  constexpr unsigned int bits = Block::bitsPerMark;
  const BlockPair blocks(a, b, n);
  const Mask differing = blocks.differing;
  if (differing == 0) return n < blockSize ? n : blockSize;
  const std::size_t nearest = Block::first(differing);
  if (isAscii(a[nearest]) || isAscii(b[nearest])) return nearest;
  Mask letters = blocks.letters();
  if (n > blockSize) letters &= (Mask{1} << (blockSize - 2) * bits) - 1;
  const Mask others = differing & ~(letters | letters << bits);
  const Mask before = (others & (0 - others)) - 1;  // the first of them
  for (Mask m = letters & (differing | differing >> bits) & before; m != 0; m &= m - 1) {
    const std::size_t i = Block::first(m);
    const auto unit = [i](const char* p) {
      const std::size_t lead = static_cast<unsigned char>(p[i]);
      return lead * 64 + static_cast<unsigned char>(p[i + 1]) - (0xC0 * 64 + 0x80);
    };
    if (upper[unit(a)] != upper[unit(b)]) return i;
  }
  if (others != 0) return Block::first(others);
  return n < blockSize ? n : blockSize;
}

// Stands by itself for the same reason.
[[gnu::noinline]] inline std::size_t matchLettersNoCase(const char* a, const char* b, std::size_t n,
                                                        const unsigned short* upper) {
  std::size_t i = 0;
  while (i != n) {
    const std::size_t start = i != 0 && continues(a[i]) ? i - 1 : i;
    const std::size_t same = matchBlockNoCase(a + start, b + start, n - start, upper);
    if (start + same <= i) return i;
    i = start + same;
    if (same == blockSize) i += matchNoCase(a + i, b + i, n - i);
  }
  return n;
}

inline std::size_t matchNoCaseUtf8(const char* a, const char* b, std::size_t n,
                                   const unsigned short* upper) {
  if (n <= blockSize && BlockPair(a, b, n).differing == 0) return n;
  return matchLettersNoCase(a, b, n, upper);
}

// ------------------------------------------------------------------ search

struct ExactFilter {
  Bytes byte[2];
  explicit ExactFilter(const PatternFilter& f)
      : byte{Block::all(f.byte[0][0]), Block::all(f.byte[1][0])} {}
  Marks matches(std::size_t k, Bytes v) const { return Block::equal(v, byte[k]); }
};

struct NoCaseFilter {
  Bytes byte[2][2];
  explicit NoCaseFilter(const PatternFilter& f)
      : byte{{Block::all(f.byte[0][0]), Block::all(f.byte[0][1])},
             {Block::all(f.byte[1][0]), Block::all(f.byte[1][1])}} {}
  Marks matches(std::size_t k, Bytes v) const {
    return Block::either(Block::equal(v, byte[k][0]), Block::equal(v, byte[k][1]));
  }
};

// The first of four blocks at `p` that has both bytes; `first` are the marks of the first byte.
template <class Filter>
inline const char* confirm(const char* p, const Marks (&first)[4], const Filter& wanted,
                           std::size_t offset) {
  for (std::size_t i = 0; i < 4; ++i) {
    const char* block = p + i * blockSize;
    const Marks second = wanted.matches(1, loadAt(block + offset));
    const Mask m = Block::mask(Block::both(first[i], second));
    if (m != 0) return block + Block::first(m);
  }
  return nullptr;
}

// The first byte of the filter is the rarer one: four blocks are looked through for it alone.
template <class Filter>
inline const char* findWith(const char* begin, const char* end, const PatternFilter& filter) {
  const Filter wanted(filter);
  const std::size_t at0 = filter.offset[0];
  const std::size_t at1 = filter.offset[1];
  const auto both = [&](Bytes v0, Bytes v1) {
    return Block::mask(Block::both(wanted.matches(0, v0), wanted.matches(1, v1)));
  };
  const char* p = begin;
  for (; sizeOf(p, end) >= 4 * blockSize; p += 4 * blockSize) {
    const Marks first[4] = {wanted.matches(0, loadAt(p + at0)),
                            wanted.matches(0, loadAt(p + at0 + blockSize)),
                            wanted.matches(0, loadAt(p + at0 + 2 * blockSize)),
                            wanted.matches(0, loadAt(p + at0 + 3 * blockSize))};
    const Marks any =
        Block::either(Block::either(first[0], first[1]), Block::either(first[2], first[3]));
    if (Block::mask(any) == 0) continue;
    if (const char* found = confirm(p, first, wanted, at1)) return found;
  }
  for (; sizeOf(p, end) >= blockSize; p += blockSize) {
    const Mask m = both(loadAt(p + at0), loadAt(p + at1));
    if (m != 0) return p + Block::first(m);
  }
  if (p == end) return end;
  if (sizeOf(begin, end) >= blockSize) {
    p = end - blockSize;  // what is met again has been refused
    const Mask m = both(loadAt(p + at0), loadAt(p + at1));
    return m != 0 ? p + Block::first(m) : end;
  }
  const std::size_t left = sizeOf(p, end);
  const Mask m = both(Block::loadPart(p + at0, left), Block::loadPart(p + at1, left));
  return m != 0 && Block::first(m) < left ? p + Block::first(m) : end;
}

inline const char* findPattern(const char* begin, const char* end, const PatternFilter& filter) {
  return findWith<ExactFilter>(begin, end, filter);
}

inline const char* findPatternNoCase(const char* begin, const char* end,
                                     const PatternFilter& filter) {
  return findWith<NoCaseFilter>(begin, end, filter);
}

// ------------------------------------------------------------------ hexadecimal text

// What a wide block is too long for is handled in narrower ones.
using NarrowBlock = std::conditional_t<(blockSize > Sse2Block::size), Sse2Block, Block>;

// Two digits of each byte stand in one unit, the high one first.
template <class B>
inline void encodeHexBlock(const unsigned char* data, char* out) {
  const typename B::Bytes units = B::widened(data);
  const typename B::Bytes digits = B::both(B::either(B::down4(units), B::up8(units)), B::all(0x0F));
  const typename B::Bytes letters = B::where(B::others(B::below(digits, 10)), 'A' - '0' - 10);
  B::store(out, B::plus(B::plus(digits, B::all('0')), letters));
}

// Encodes from `i` on what fills whole blocks, and returns what follows it.
template <class B>
inline std::size_t encodeHexBlocks(const unsigned char* data, std::size_t i, std::size_t n,
                                   char* out) {
  constexpr std::size_t half = B::size / 2;
  for (; n - i >= half; i += half) encodeHexBlock<B>(data + i, out + 2 * i);
  return i;
}

// Stands by itself, so that what fills whole blocks needs no room on the stack.
[[gnu::noinline]] inline void encodeHexRest(const unsigned char* data, std::size_t i, std::size_t n,
                                            char* out) {
  i = encodeHexBlocks<NarrowBlock>(data, i, n, out);
  for (i = encodeHexBlocks<PlainBlock>(data, i, n, out); i != n; ++i) {
    out[2 * i] = "0123456789ABCDEF"[data[i] >> 4];
    out[2 * i + 1] = "0123456789ABCDEF"[data[i] & 15];
  }
}

inline void encodeHex(const unsigned char* data, std::size_t n, char* out) {
  const std::size_t i = encodeHexBlocks<Block>(data, 0, n, out);
  if (i != n) encodeHexRest(data, i, n, out);
}

// False where not all are digits.
template <class B>
inline bool decodeHexBlock(const char* hex, unsigned char* out) {
  const typename B::Bytes v = B::load(hex);
  const typename B::Marks letters = B::range(B::either(v, B::all(0x20)), 'a', 'f');
  const typename B::Marks digits = B::range(v, '0', '9');
  if (B::mask(B::others(B::either(letters, digits))) != 0) return false;
  const typename B::Bytes nibbles = B::plus(B::both(v, B::all(0x0F)), B::where(letters, 9));
  // The high nibble stands first, in the low byte.
  const typename B::Bytes high = B::down4(B::up8(nibbles));
  const typename B::Bytes low = B::down4(B::down4(nibbles));
  B::storeNarrowed(out, B::either(high, low));
  return true;
}

template <class B>
inline std::size_t decodeHexBlocks(const char* hex, std::size_t i, std::size_t n,
                                   unsigned char* out) {
  constexpr std::size_t half = B::size / 2;
  while (n - i >= half && decodeHexBlock<B>(hex + 2 * i, out + i)) i += half;
  return i;
}

[[gnu::noinline]] inline std::size_t decodeHexRest(const char* hex, std::size_t i, std::size_t n,
                                                   unsigned char* out) {
  i = decodeHexBlocks<NarrowBlock>(hex, i, n, out);
  return decodeHexBlocks<PlainBlock>(hex, i, n, out);
}

inline std::size_t decodeHex(const char* hex, std::size_t n, unsigned char* out) {
  const std::size_t i = decodeHexBlocks<Block>(hex, 0, n, out);
  return i == n ? n : decodeHexRest(hex, i, n, out);
}
