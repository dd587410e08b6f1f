// Searches of the markup reader, block by block.
//
// Each looks at [p, end) and answers `end` when it finds nothing. Where a range is short but lies
// inside of more text, `readable` tells how far that goes: whole blocks can then be read, and what
// they show behind `end` is left out.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "core/kernels.h"
#include "markup/char_class.h"

namespace cc {

using kernels::findByte;
using kernels::findControl;

// What the usual case does not need, kept out of the code that handles it.
[[gnu::noinline]] const char* findFarByte(const char* p, const char* end, char c);
[[gnu::noinline]] const char* findTagEndPlainly(const char* p, const char* end, bool quoted);

// The bytes that are looked at together where one block would often be too short.
struct Window {
  using Block = kernels::NativeBlock;
  using Mask = std::uint64_t;
  static constexpr int blocks = Block::size == 16 ? 4 : 8 / static_cast<int>(Block::size);
  static constexpr unsigned int bitsPerByte = Block::size == 16 ? 1 : 8;
  static constexpr std::ptrdiff_t size = blocks * static_cast<std::ptrdiff_t>(Block::size);

  // The bytes at `p` that `marksOf` marks, in the first `count` blocks.
  template <int count = blocks, class MarksOf>
  static Mask marks(const char* p, MarksOf marksOf) {
    return marksIn<0, count>(p, marksOf);
  }
  // The bytes at `p` that are `c`.
  template <int count = blocks>
  static Mask equal(const char* p, char c) {
    return marks<count>(p, [wanted = Block::all(static_cast<unsigned char>(c))](Block::Bytes v) {
      return Block::equal(v, wanted);
    });
  }
  // The index of the first byte of a mask that is not 0.
  static unsigned int first(Mask mask) {
    return static_cast<unsigned int>(std::countr_zero(mask)) / bitsPerByte;
  }

 private:
  // By halves, so that no compiler makes a loop of it and no shift waits for another.
  template <int begin, int end, class MarksOf>
  static Mask marksIn(const char* p, MarksOf marksOf) {
    if constexpr (end - begin == 1) {
      constexpr unsigned int at = begin * Block::size;
      return Mask{Block::mask(marksOf(Block::load(p + at)))} << at * bitsPerByte;
    } else {
      constexpr int middle = (begin + end) / 2;
      return marksIn<begin, middle>(p, marksOf) | marksIn<middle, end>(p, marksOf);
    }
  }
};

// True for an odd number of bytes in the mask of a window.
inline bool isOdd(Window::Mask mask) { return __builtin_parityll(mask) != 0; }

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

// Marks `"` and the bytes below 0x20, which one bit of the quote parts from each other.
inline kernels::NativeBlock::Marks quotesAndControls(kernels::NativeBlock::Bytes v) {
  using Block = kernels::NativeBlock;
  return Block::below(Block::differ(v, Block::all('"' ^ 0x20)), 0x21);
}

// The first `"`, or byte below 0x20.
inline const char* findQuoteOrControl(const char* p, const char* end, const char* readable) {
  return findMarkedInside(p, end, readable, quotesAndControls);
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
inline const char* findNameEnd(const char* p, const char* end, const char* readable) {
  return findMarkedInside(p, end, readable, noNameBytes);
}

// The same where it stands close by; null where it does not, or too little of the text is left.
inline const char* findShortNameEnd(const char* p, const char* end) {
  using Block = kernels::NativeBlock;
  if (end - p < static_cast<std::ptrdiff_t>(Block::size)) return nullptr;
  const Block::Mask m = Block::mask(noNameBytes(Block::load(p)));
  return m != 0 ? p + Block::first(m) : nullptr;
}

// The same where there is one, with a block to read behind it.
inline const char* findNameEndAhead(const char* p) {
  using Block = kernels::NativeBlock;
  while (true) {
    const Block::Mask m = Block::mask(noNameBytes(Block::load(p)));
    if (m != 0) return p + Block::first(m);
    p += Block::size;
  }
}

// The first byte that is no white space.
inline const char* skipSpace(const char* p, const char* end) {
  while (p != end && isSpaceByte(*p)) ++p;
  return p;
}

// The first `<`. What stands between two tags is mostly short.
inline const char* findTagBegin(const char* p, const char* end) {
  if (end - p >= Window::size) {
    const Window::Mask begins = Window::equal(p, '<');
    if (begins != 0) return p + Window::first(begins);
    p += Window::size;
  }
  return findFarByte(p, end, '<');
}

// The first `>` outside of double quotes, where `p` stands outside of them.
inline const char* findTagEnd(const char* p, const char* end) {
  Window::Mask before = 0;  // of an odd number of bytes where the windows before end in quotes
  for (; end - p >= Window::size; p += Window::size) {
    const Window::Mask quotes = Window::equal(p, '"');
    Window::Mask ends = Window::equal(p, '>');
    for (; ends != 0; ends &= ends - 1) {
      const Window::Mask upToEnd = ends ^ (ends - 1);
      if (!isOdd(before ^ (quotes & upToEnd))) return p + Window::first(ends);
    }
    before ^= quotes;
  }
  return findTagEndPlainly(p, end, isOdd(before));
}

// Fetches the text that stands a while behind [begin, end), so that it is at hand when reading
// comes to it: processors do so themselves only up to the end of a page.
inline void fetchAhead(const char* begin, const char* end, const char* textEnd) {
  constexpr std::ptrdiff_t distance = 2048;
  constexpr std::ptrdiff_t line = 64;
  for (; begin < end && textEnd - begin > distance; begin += line) {
    __builtin_prefetch(begin + distance);
  }
}

// A tag that begins and ends in the window that it was looked for in.
struct NearTag {
  Window::Mask inside;  // its bytes but the last, or 0 where there is none
  unsigned int begin;   // index of its `<`
  unsigned int last;    // index of its `>`
};

// The first two bytes at `p` that are `<` or `>`, which mostly are a tag's. The next step waits for
// the second, so the way to it is short.
inline NearTag findNearTag(const char* p) {
  using Block = Window::Block;
  const Window::Mask angles = Window::marks(p, [](Block::Bytes v) {
    return Block::equal(Block::either(v, Block::all('<' ^ '>')), Block::all('>'));
  });
  const Window::Mask behindFirst = angles & (angles - 1);
  if (behindFirst == 0) return {0, 0, 0};
  const Window::Mask second = behindFirst & (0 - behindFirst);
  return {second - (angles ^ behindFirst), Window::first(angles), Window::first(behindFirst)};
}

// An attribute in its usual form, name="value", with nothing in between and no control byte in the
// value, short enough to be seen at one look at a window or the first blocks of one.
struct PlainAttribute {
  const char* nameEnd;    // null where it is not of that form
  unsigned int valueEnd;  // index of the closing quote, from the name's first byte
};

// The attribute whose name begins at `name`. The next one waits for the closing quote, so the way
// to it is short.
template <int blocks>
[[gnu::always_inline]] inline PlainAttribute findPlainAttribute(const char* name,
                                                                const char* readable) {
  using Block = kernels::NativeBlock;
  constexpr PlainAttribute none{nullptr, 0};
  if constexpr (Window::bitsPerByte != 1) {
    return none;
  } else {
    if (readable - name < blocks * static_cast<std::ptrdiff_t>(Block::size)) return none;
    // The first of them is the opening quote, since a name holds none.
    const Window::Mask stops = Window::marks<blocks>(name, quotesAndControls);
    const Window::Mask behindFirst = stops & (stops - 1);
    const Block::Mask noName = Block::mask(noNameBytes(Block::load(name)));
    if (behindFirst == 0 || noName == 0) return none;
    const char* const nameEnd = name + Block::first(noName);
    const unsigned int valueEnd = Window::first(behindFirst);
    const bool plain =
        nameEnd != name && std::memcmp(nameEnd, "=\"", 2) == 0 && name[valueEnd] == '"';
    return plain ? PlainAttribute{nameEnd, valueEnd} : none;
  }
}

}  // namespace cc
