// Searches of the markup reader, block by block.
//
// Each looks at [p, end) and answers `end` when it finds nothing. Where a range is short but lies
// inside of more text, `readable` tells how far that goes: whole blocks can then be read, and what
// they show behind `end` is left out.
#pragma once

#include <bit>
#include <cstdint>
#include <type_traits>

#include "core/kernels.h"
#include "markup/char_class.h"

namespace cc {

using kernels::findByte;
using kernels::findControl;
using kernels::findNameEnd;

// The first byte that `marksOf` marks.
template <class MarksOf>
inline const char* findMarkedInside(const char* p, const char* end, const char* readable,
                                    MarksOf marksOf) {
  using Block = kernels::NativeBlock;
  constexpr std::ptrdiff_t size = Block::size;
  while (readable - p >= size) {
    const Block::Mask m = Block::mask(marksOf(Block::load(p)));
    if (m != 0) {
      p += Block::first(m);
      return p < end ? p : end;
    }
    if (end - p <= size) return end;
    p += size;
  }
  return kernels::findMarked(p, end, marksOf);
}

// The first `"`, or byte below 0x20.
inline const char* findQuoteOrControl(const char* p, const char* end, const char* readable) {
  using Block = kernels::NativeBlock;
  return findMarkedInside(p, end, readable, [](Block::Bytes v) {
    return Block::either(Block::equal(v, Block::all('"')), Block::below(v, 0x20));
  });
}

// Marks the bytes that no name may hold.
inline kernels::NativeBlock::Marks noNameBytes(kernels::NativeBlock::Bytes v) {
  using Block = kernels::NativeBlock;
  const Block::Bytes letters = Block::range(Block::either(v, Block::all(0x20)), 'a', 'z');
  // From '-' to ':' stand - . / and the digits.
  const Block::Bytes middle =
      Block::without(Block::range(v, '-', ':'), Block::equal(v, Block::all('/')));
  const Block::Bytes score = Block::equal(v, Block::all('_'));
  return Block::others(Block::either(letters, Block::either(middle, score)));
}

// The first byte that no name may hold.
inline const char* findNameEndInside(const char* p, const char* end, const char* readable) {
  return findMarkedInside(p, end, readable, noNameBytes);
}

// True for an odd number of bytes in a mask.
inline bool isOdd(kernels::NativeBlock::Mask mask) { return __builtin_parityll(mask) != 0; }

// The first byte that is no white space.
inline const char* skipSpace(const char* p, const char* end) {
  while (p != end && isSpaceByte(*p)) ++p;
  return p;
}

// The first `>` outside of double quotes, where `p` stands outside of them.
inline const char* findTagEnd(const char* p, const char* end) {
  using Block = kernels::NativeBlock;
  using Mask = Block::Mask;
  constexpr unsigned int step = std::is_same_v<Block, kernels::PlainBlock> ? 8 : 1;
  constexpr unsigned int bits = step * Block::size;
  bool quoted = false;
  while (p != end) {
    const std::size_t left = static_cast<std::size_t>(end - p);
    const Block::Bytes v = left < Block::size ? Block::loadPart(p, left) : Block::load(p);
    const Mask quotes = Block::mask(Block::equal(v, Block::all('"')));
    Mask ends = Block::mask(Block::equal(v, Block::all('>')));
    if (ends != 0) {
      // From a quote on, up to the next, every byte is inside: the parity of the quotes so far.
      Mask inside = quotes;
      for (unsigned int shift = step; shift < bits; shift *= 2) inside ^= inside << shift;
      ends &= quoted ? inside : ~inside;
      if (ends != 0) return p + Block::first(ends);
    }
    if (left <= Block::size) break;
    quoted ^= isOdd(quotes);
    p += Block::size;
  }
  return end;
}

// An attribute in its usual form, name="value", with nothing in between and no control byte in the
// value, short enough to be seen at one look.
struct PlainAttribute {
  const char* nameEnd;
  const char* valueEnd;  // null where it is not of that form
};

[[gnu::always_inline]] inline PlainAttribute findPlainAttribute(const char* p, const char* end,
                                                                const char* readable) {
  using Block = kernels::NativeBlock;
  constexpr PlainAttribute none{nullptr, nullptr};
  if constexpr (Block::size != 16) {
    return none;
  } else {
    constexpr int blocks = 2;
    if (readable - p < blocks * 16) return none;
    std::uint64_t quotes = 0;
    std::uint64_t controls = 0;
    for (int i = 0; i < blocks; ++i) {
      const Block::Bytes v = Block::load(p + 16 * i);
      quotes |= std::uint64_t{Block::mask(Block::equal(v, Block::all('"')))} << 16 * i;
      controls |= std::uint64_t{Block::mask(Block::below(v, 0x20))} << 16 * i;
    }
    const std::uint64_t behindFirst = quotes & (quotes - 1);
    if (behindFirst == 0) return none;
    const int first = std::countr_zero(quotes);
    const int second = std::countr_zero(behindFirst);
    const std::uint64_t notName = Block::mask(noNameBytes(Block::load(p)));
    const std::uint64_t value = (behindFirst & (0 - behindFirst)) - (quotes ^ behindFirst);
    const bool plain = first >= 2 && p[first - 1] == '=' &&
                       std::countr_zero(notName) == first - 1 && (controls & value) == 0;
    if (!plain || second >= end - p) return none;
    return {p + first - 1, p + second};
  }
}

}  // namespace cc
