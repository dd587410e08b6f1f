// The machine-dependent bottom of all hot loops, and the searches in short ranges built on it.
//
// A block is a handful of bytes that one step handles: a machine word (`PlainBlock`, the portable
// form, which every target has) or a vector register. All blocks have the same operations, so each
// loop is written once, in kernel_loops.h, and compiled once per kind of block; kernels.cpp picks
// the set of loops for the processor at hand while the library is loaded. Intrinsics stand in the
// block types here and nowhere else.
//
// Operations that look for bytes give `marks`: a block whose bytes have their top bit set where
// something was found; the other bits mean nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#define CC_HAS_VECTORS 1
#else
#define CC_HAS_VECTORS 0
#endif

// Compiles what stands between BEGIN and END for a processor with the named features.
#if CC_HAS_VECTORS && defined(__clang__)
#define CC_PRAGMA(text) _Pragma(#text)
#define CC_TARGET_BEGIN(features) \
  CC_PRAGMA(clang attribute push(__attribute__((target(features))), apply_to = function))
#define CC_TARGET_END _Pragma("clang attribute pop")
#elif CC_HAS_VECTORS
#define CC_PRAGMA(text) _Pragma(#text)
#define CC_TARGET_BEGIN(features) _Pragma("GCC push_options") CC_PRAGMA(GCC target(features))
#define CC_TARGET_END _Pragma("GCC pop_options")
#else
#define CC_TARGET_BEGIN(features)
#define CC_TARGET_END
#endif
#define CC_SSE2 "sse2"
#define CC_AVX2 "avx2,bmi,bmi2,lzcnt,popcnt"
#define CC_AVX512 "avx2,bmi,bmi2,lzcnt,popcnt,avx512f,avx512bw,avx512vl,avx512dq"

namespace cc::kernels {

/// Reads a value of type `T` at any alignment.
template <class T>
inline T loadAs(const void* p) {
  T value;
  std::memcpy(&value, p, sizeof value);
  return value;
}

/// Writes a value of type `T` at any alignment.
template <class T>
inline void storeAs(void* p, T value) {
  std::memcpy(p, &value, sizeof value);
}

/// The `n` bytes at `p`, 0 to 8, low byte first; the rest is zero. Reads nothing behind them.
inline std::uint64_t loadUpTo8(const char* p, std::size_t n) {
  if (n >= 4) {
    const std::uint64_t tail = loadAs<std::uint32_t>(p + n - 4);
    return loadAs<std::uint32_t>(p) | tail << (8 * n - 32);
  }
  if (n == 0) return 0;
  const std::uint32_t middle = static_cast<unsigned char>(p[n / 2]);
  const std::uint32_t last = static_cast<unsigned char>(p[n - 1]);
  return static_cast<unsigned char>(*p) | middle << (8 * (n / 2)) | last << (8 * (n - 1));
}

/// A machine word of bytes: the portable form of a block.
struct PlainBlock {
  using Bytes = std::size_t;
  using Mask = std::size_t;
  static constexpr std::size_t size = sizeof(Bytes);
  static constexpr Bytes ones = ~Bytes{0} / 0xFF;
  static constexpr Bytes tops = ones << 7;

  static Bytes load(const void* p) { return loadAs<Bytes>(p); }
  /// The `n` < `size` bytes at `p` and zeros.
  static Bytes loadPart(const char* p, std::size_t n) {
    return static_cast<Bytes>(loadUpTo8(p, n));
  }
  static void store(void* p, Bytes v) { storeAs(p, v); }
  static Bytes all(unsigned char c) { return ones * c; }

  static Bytes either(Bytes a, Bytes b) { return a | b; }
  static Bytes both(Bytes a, Bytes b) { return a & b; }
  static Bytes differ(Bytes a, Bytes b) { return a ^ b; }
  static Bytes without(Bytes a, Bytes b) { return a & ~b; }
  /// Marks the bytes that `marks` leaves out.
  static Bytes others(Bytes marks) { return ~marks; }

  /// Marks where the bytes are equal.
  static Bytes equal(Bytes a, Bytes b) {
    const Bytes x = a ^ b;
    return ~(((x & ~tops) + ~tops) | x);
  }
  /// Marks the bytes below `c`, which is at most 0x80.
  static Bytes below(Bytes v, unsigned char c) { return ~((v | tops) - all(c)) & ~v; }
  /// Marks the bytes from `low` to `high`, which is below 0x80.
  static Bytes range(Bytes v, unsigned char low, unsigned char high) {
    return below(v, static_cast<unsigned char>(high + 1)) & ~below(v, low);
  }
  /// `bit` in each marked byte, 0 in the others; `bit` is a power of two.
  static Bytes bitWhere(Bytes marks, unsigned char bit) { return ((marks & tops) >> 7) * bit; }
  /// Marks the bytes that continue a character: 10xxxxxx.
  static Bytes continuations(Bytes v) { return v & ~(v << 1); }
  /// Marks the bytes of `v` that stand where UTF-8 does not allow them, given the bytes one and
  /// two places before each.
  static Bytes misplaced(Bytes v, Bytes before, Bytes before2) {
    const Bytes follows = (before & before << 1) | (before2 & before2 << 1 & before2 << 2);
    return (follows ^ continuations(v)) | (v & v << 1 & v << 2 & v << 3);
  }

  static Mask mask(Bytes marks) { return marks & tops; }
  /// Index of the first byte of a mask that is not 0.
  static std::size_t first(Mask m) { return static_cast<std::size_t>(__builtin_ctzl(m)) / 8; }
  /// Number of bytes in a mask.
  static std::size_t count(Mask m) { return (m >> 7) * ones >> (8 * size - 8); }
};

#if CC_HAS_VECTORS

#if !defined(__SSE2__)
CC_TARGET_BEGIN(CC_SSE2)
#endif
/// 16 bytes.
struct Sse2Block {
  using Bytes = __m128i;
  using Mask = unsigned int;
  static constexpr std::size_t size = 16;

  static Bytes load(const void* p) { return _mm_loadu_si128(static_cast<const __m128i*>(p)); }
  static Bytes loadPart(const char* p, std::size_t n) {
    if (n <= 8) return halves(loadUpTo8(p, n), 0);
    return halves(loadAs<std::uint64_t>(p), loadAs<std::uint64_t>(p + n - 8) >> (128 - 8 * n));
  }
  static void store(void* p, Bytes v) { _mm_storeu_si128(static_cast<__m128i*>(p), v); }
  static Bytes all(unsigned char c) { return _mm_set1_epi8(static_cast<char>(c)); }

  static Bytes either(Bytes a, Bytes b) { return _mm_or_si128(a, b); }
  static Bytes both(Bytes a, Bytes b) { return _mm_and_si128(a, b); }
  static Bytes differ(Bytes a, Bytes b) { return _mm_xor_si128(a, b); }
  static Bytes without(Bytes a, Bytes b) { return _mm_andnot_si128(b, a); }
  static Bytes others(Bytes marks) { return _mm_xor_si128(marks, all(0xFF)); }

  static Bytes equal(Bytes a, Bytes b) { return _mm_cmpeq_epi8(a, b); }
  static Bytes below(Bytes v, unsigned char c) {
    return equal(_mm_min_epu8(v, all(static_cast<unsigned char>(c - 1))), v);
  }
  static Bytes range(Bytes v, unsigned char low, unsigned char high) {
    return below(_mm_sub_epi8(v, all(low)), static_cast<unsigned char>(high - low + 1));
  }
  static Bytes bitWhere(Bytes marks, unsigned char bit) {
    return both(_mm_cmpgt_epi8(_mm_setzero_si128(), marks), all(bit));
  }
  static Bytes continuations(Bytes v) { return _mm_cmpgt_epi8(all(0xC0), v); }
  static Bytes misplaced(Bytes v, Bytes before, Bytes before2) {
    const Bytes follows =
        either(_mm_subs_epu8(before, all(0x40)), _mm_subs_epu8(before2, all(0x60)));
    return either(differ(follows, continuations(v)), _mm_subs_epu8(v, all(0x70)));
  }

  static Mask mask(Bytes marks) { return static_cast<Mask>(_mm_movemask_epi8(marks)); }
  static std::size_t first(Mask m) { return static_cast<std::size_t>(__builtin_ctz(m)); }
  static std::size_t count(Mask m) { return static_cast<std::size_t>(__builtin_popcount(m)); }

 private:
  static Bytes halves(std::uint64_t low, std::uint64_t high) {
    return _mm_set_epi64x(static_cast<long long>(high), static_cast<long long>(low));
  }
};
#if !defined(__SSE2__)
CC_TARGET_END
#endif

CC_TARGET_BEGIN(CC_AVX2)
/// 32 bytes.
struct Avx2Block {
  using Bytes = __m256i;
  using Mask = std::uint32_t;
  static constexpr std::size_t size = 32;

  static Bytes load(const void* p) { return _mm256_loadu_si256(static_cast<const __m256i*>(p)); }
  static Bytes loadPart(const char* p, std::size_t n) {
    if (n < 16) return _mm256_zextsi128_si256(Sse2Block::loadPart(p, n));
    return _mm256_set_m128i(Sse2Block::loadPart(p + 16, n - 16), Sse2Block::load(p));
  }
  static void store(void* p, Bytes v) { _mm256_storeu_si256(static_cast<__m256i*>(p), v); }
  static Bytes all(unsigned char c) { return _mm256_set1_epi8(static_cast<char>(c)); }

  static Bytes either(Bytes a, Bytes b) { return _mm256_or_si256(a, b); }
  static Bytes both(Bytes a, Bytes b) { return _mm256_and_si256(a, b); }
  static Bytes differ(Bytes a, Bytes b) { return _mm256_xor_si256(a, b); }
  static Bytes without(Bytes a, Bytes b) { return _mm256_andnot_si256(b, a); }
  static Bytes others(Bytes marks) { return _mm256_xor_si256(marks, all(0xFF)); }

  static Bytes equal(Bytes a, Bytes b) { return _mm256_cmpeq_epi8(a, b); }
  static Bytes below(Bytes v, unsigned char c) {
    return equal(_mm256_min_epu8(v, all(static_cast<unsigned char>(c - 1))), v);
  }
  static Bytes range(Bytes v, unsigned char low, unsigned char high) {
    return below(_mm256_sub_epi8(v, all(low)), static_cast<unsigned char>(high - low + 1));
  }
  static Bytes bitWhere(Bytes marks, unsigned char bit) {
    return both(_mm256_cmpgt_epi8(_mm256_setzero_si256(), marks), all(bit));
  }
  static Bytes continuations(Bytes v) { return _mm256_cmpgt_epi8(all(0xC0), v); }
  static Bytes misplaced(Bytes v, Bytes before, Bytes before2) {
    const Bytes follows =
        either(_mm256_subs_epu8(before, all(0x40)), _mm256_subs_epu8(before2, all(0x60)));
    return either(differ(follows, continuations(v)), _mm256_subs_epu8(v, all(0x70)));
  }

  static Mask mask(Bytes marks) { return static_cast<Mask>(_mm256_movemask_epi8(marks)); }
  static std::size_t first(Mask m) { return static_cast<std::size_t>(__builtin_ctz(m)); }
  static std::size_t count(Mask m) { return static_cast<std::size_t>(__builtin_popcount(m)); }
};
CC_TARGET_END

#endif  // CC_HAS_VECTORS

#if defined(__SSE2__)
/// The widest block that the whole library may use without asking the processor.
using NativeBlock = Sse2Block;
#else
using NativeBlock = PlainBlock;
#endif

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

/// First of the five bytes that markup escapes: " ' & < >
inline const char* findEscapable(const char* p, const char* end) {
  using Block = NativeBlock;
  return findMarked(p, end, [](Block::Bytes v) {
    // '&' and ''' differ in one bit, '<' and '>' in another.
    const Block::Bytes quotes = Block::equal(v, Block::all('"'));
    const Block::Bytes low = Block::equal(Block::either(v, Block::all(1)), Block::all('\''));
    const Block::Bytes angles = Block::equal(Block::either(v, Block::all(2)), Block::all('>'));
    return Block::either(quotes, Block::either(low, angles));
  });
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

}  // namespace cc::kernels
