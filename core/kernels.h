// The hot loops: searches in short ranges, inline, and the table of loops over long ones.
//
// Each loop is a pure function of the ranges it is given, written once over blocks and compiled
// once per kind of block (platform/blocks.h). While the library is being loaded, `loops` is set to
// the best table for the processor at hand; before that it is the portable one, so that a call at
// any time finds one that works.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

#include "platform/blocks.h"

namespace cc::kernels {

// ------------------------------------------------------------------ short copies

/// Copies the `n` bytes that the first and the last `T` of a range cover between them.
template <class T>
inline void copyEnds(const char* from, std::size_t n, char* to) {
  const T head = loadAs<T>(from);
  const T tail = loadAs<T>(from + n - sizeof(T));
  storeAs(to, head);
  storeAs(to + n - sizeof(T), tail);
}

/// Copies `n` bytes and returns the end of the copy: without a call where they are few. All are
/// read before the first is written.
inline char* copyShort(const char* from, std::size_t n, char* to) {
  struct Sixteen {
    char bytes[16];
  };
  if (n > 2 * sizeof(Sixteen)) {
    std::memmove(to, from, n);
  } else if (n >= 16) {
    copyEnds<Sixteen>(from, n, to);
  } else if (n >= 8) {
    copyEnds<std::uint64_t>(from, n, to);
  } else if (n >= 4) {
    copyEnds<std::uint32_t>(from, n, to);
  } else if (n != 0) {
    const char middle = from[n / 2];
    const char last = from[n - 1];
    *to = *from;
    to[n / 2] = middle;
    to[n - 1] = last;
  }
  return to + n;
}

// ------------------------------------------------------------------ searches in short ranges
//
// Inline, for names, values and other ranges that are mostly below 32 bytes. Each reads nothing
// outside [p, end) and answers `end` when it finds nothing.

/// First byte that `marksOf` marks: a callable that takes and returns `NativeBlock::Bytes`.
template <class MarksOf>
inline const char* findMarked(const char* p, const char* end, MarksOf marksOf) {
  using Block = NativeBlock;
  std::size_t left = static_cast<std::size_t>(end - p);
  for (; left >= Block::size; p += Block::size, left -= Block::size) {
    const Block::Mask m = Block::mask(marksOf(Block::load(p)));
    if (m != 0) return p + Block::first(m);
  }
  if (left == 0) return end;
  const Block::Mask m = Block::mask(marksOf(Block::loadPart(p, left)));
  if (m == 0) return end;
  const std::size_t i = Block::first(m);
  return i < left ? p + i : end;
}

/// First `c`.
inline const char* findByte(const char* p, const char* end, char c) {
  using Block = NativeBlock;
  const auto isIt = [wanted = Block::all(static_cast<unsigned char>(c))](Block::Bytes v) {
    return Block::equal(v, wanted);
  };
  constexpr std::ptrdiff_t shortRange = 64;
  if (end - p <= shortRange) return findMarked(p, end, isIt);
  const char* found = findMarked(p, p + shortRange, isIt);
  if (found != p + shortRange) return found;
  const void* far = std::memchr(found, c, static_cast<std::size_t>(end - found));
  return far ? static_cast<const char*>(far) : end;
}

/// First byte that is `a` or `b`.
inline const char* findEither(const char* p, const char* end, char a, char b) {
  using Block = NativeBlock;
  return findMarked(p, end, [a, b](Block::Bytes v) {
    return Block::either(Block::equal(v, Block::all(static_cast<unsigned char>(a))),
                         Block::equal(v, Block::all(static_cast<unsigned char>(b))));
  });
}

/// First byte below 0x20.
inline const char* findControl(const char* p, const char* end) {
  using Block = NativeBlock;
  return findMarked(p, end, [](Block::Bytes v) { return Block::below(v, 0x20); });
}

/// Marks the five bytes that markup escapes: " ' & < >
inline NativeBlock::Marks escapable(NativeBlock::Bytes v) {
  using Block = NativeBlock;
  // '&' and ''' differ in one bit, '<' and '>' in another.
  const Block::Bytes quotes = Block::equal(v, Block::all('"'));
  const Block::Bytes low = Block::equal(Block::either(v, Block::all(1)), Block::all('\''));
  const Block::Bytes angles = Block::equal(Block::either(v, Block::all(2)), Block::all('>'));
  return Block::either(quotes, Block::either(low, angles));
}

/// First of the bytes that markup escapes.
inline const char* findEscapable(const char* p, const char* end) {
  return findMarked(p, end, [](NativeBlock::Bytes v) { return escapable(v); });
}

/// The mask of the bytes that markup escapes in the block at `p`.
inline NativeBlock::Mask escapableAt(const char* p) {
  return NativeBlock::mask(escapable(NativeBlock::load(p)));
}

/// First byte that is not one of space, TAB, LF, CR.
inline const char* findNonSpace(const char* p, const char* end) {
  using Block = NativeBlock;
  return findMarked(p, end, [](Block::Bytes v) {
    const Block::Bytes blanks =
        Block::either(Block::equal(v, Block::all(' ')), Block::equal(v, Block::all('\r')));
    return Block::others(Block::either(blanks, Block::range(v, '\t', '\n')));
  });
}

/// First byte that is no name character: 0-9 A-Z a-z . _ - :
inline const char* findNameEnd(const char* p, const char* end) {
  using Block = NativeBlock;
  return findMarked(p, end, [](Block::Bytes v) {
    const Block::Bytes letters = Block::range(Block::either(v, Block::all(0x20)), 'a', 'z');
    // From '-' to ':' stand - . / and the digits.
    const Block::Bytes middle =
        Block::without(Block::range(v, '-', ':'), Block::equal(v, Block::all('/')));
    const Block::Bytes score = Block::equal(v, Block::all('_'));
    return Block::others(Block::either(letters, Block::either(middle, score)));
  });
}

// ------------------------------------------------------------------ loops over long ranges

/// What to look for at two places of a pattern: each byte is one of two, the same one twice where
/// the case does not matter.
struct PatternFilter {
  std::size_t offset[2];
  unsigned char byte[2][2];
};

/// How to change the case of characters of several bytes; for tables that map ASCII as usual.
struct CaseMap {
  /// The letters of ASCII to change.
  unsigned char lowest, highest;
  /// Lead bytes of three-byte characters without case, their top bit taken off. Both above 0x6F
  /// where there are none.
  unsigned char caselessLow, caselessHigh;
  /// By the eleven bits of a two-byte character: what takes its place, the first byte in the low
  /// half.
  const std::uint16_t* pairs;
  /// The character table.
  const unsigned short* units;
};

/// The hot loops of one kind of block. `begin` <= `end` everywhere; ranges may be empty.
struct Loops {
  const char* name;

  /// `end` when [begin, end) is valid UTF-8, else the start of a character before the first wrong
  /// byte, with nothing wrong before it.
  const char* (*validPrefix)(const char* begin, const char* end);
  /// Number of bytes that continue nothing.
  std::size_t (*countCharacters)(const char* begin, const char* end);
  /// Number of UTF-8 bytes that the units encode to.
  std::size_t (*encodedSize)(const unsigned short* begin, const unsigned short* end);

  /// Decodes [src, srcEnd) into [dst, dstEnd) until either ends; returns the output position.
  unsigned short* (*decode)(const char* src, const char* srcEnd, unsigned short* dst,
                            const unsigned short* dstEnd);
  /// Encodes [src, srcEnd) into [dst, dstEnd) until either ends; returns the output position.
  char* (*encode)(const unsigned short* src, const unsigned short* srcEnd, char* dst,
                  const char* dstEnd);
  /// Changes the case of UTF-8 text in place; characters keep their number of bytes.
  void (*mapCase)(char* begin, char* end, const CaseMap& map);

  /// Maps a-z to A-Z, or A-Z to a-z, and leaves every other byte.
  void (*upperAscii)(char* begin, char* end);
  void (*lowerAscii)(char* begin, char* end);
  /// Index of the first of `n` bytes that differ by more than the case of an ASCII letter, or `n`.
  std::size_t (*matchNoCase)(const char* a, const char* b, std::size_t n);
  /// The same for UTF-8 text that ends with the range: neither do characters of two bytes differ
  /// whose entries in `upper`, by units, are the same.
  std::size_t (*matchNoCaseUtf8)(const char* a, const char* b, std::size_t n,
                                 const unsigned short* upper);
  /// -1, 0 or 1 by the first bytes that differ by more than the case of an ASCII letter, else by
  /// length.
  int (*compareNoCase)(const char* a, std::size_t na, const char* b, std::size_t nb);

  /// The first p in [begin, end) with the first of the two bytes of `filter` at each offset, or
  /// `end`. Readable up to `end` and the larger offset.
  const char* (*findPattern)(const char* begin, const char* end, const PatternFilter& filter);
  /// The same with either of the two bytes.
  const char* (*findPatternNoCase)(const char* begin, const char* end, const PatternFilter& filter);

  /// Writes 2 `n` upper-case hexadecimal digits.
  void (*encodeHex)(const unsigned char* data, std::size_t n, char* out);
  /// Reads up to 2 `n` hexadecimal digits and returns how many bytes it wrote; fewer than `n` where
  /// a byte is no digit, or close to the end.
  std::size_t (*decodeHex)(const char* hex, std::size_t n, unsigned char* out);
};

/// The loops in use.
extern const Loops* loops;
/// All the loops that this processor runs, the portable ones first.
std::span<const Loops* const> supportedLoops();

extern const Loops plainLoops;
extern const Loops sse2Loops;
extern const Loops avx2Loops;
extern const Loops avx512Loops;

}  // namespace cc::kernels
