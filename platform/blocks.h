// Blocks: the handfuls of bytes that one step of a hot loop handles.
//
// A block is a machine word (`PlainBlock`, the portable form, which every target has) or a vector
// register. All kinds have the same operations, described at the portable form, so each loop is
// written once and compiled once per kind. Intrinsics stand here and, for what only the wide kinds
// can do, in core/kernels_shuffles.h and core/kernels_compress.h.
//
// Operations that look for something give marks, one per byte; a mask is the marks as a number.
// Where a processor has no marks of its own they are a block in whose bytes the top bit counts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

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

// The conversions that go with the wide blocks.
#if defined(__x86_64__)
#define CC_AVX2_CONVERSIONS "core/kernels_shuffles.h"
#define CC_AVX512_CONVERSIONS "core/kernels_compress.h"
#elif CC_HAS_VECTORS
#define CC_AVX2_CONVERSIONS "core/kernels_shuffles.h"
#define CC_AVX512_CONVERSIONS "core/kernels_shuffles.h"
#else
#define CC_AVX2_CONVERSIONS "core/kernels_runs.h"
#define CC_AVX512_CONVERSIONS "core/kernels_runs.h"
#endif

#define CC_SSE2 "sse2"
#define CC_AVX2 "avx2,bmi,bmi2,lzcnt,popcnt"
#define CC_AVX512 "avx2,bmi,bmi2,lzcnt,popcnt,avx512f,avx512bw,avx512vl,avx512dq,avx512vbmi2"

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

/// Whether the processor at hand, and the system on it, run code for these kinds of blocks. False
/// where such a kind is only another name of a narrower one.
bool runsSse2Blocks();
bool runsAvx2Blocks();
bool runsAvx512Blocks();

/// A machine word of bytes: the portable form of a block.
struct PlainBlock {
  using Bytes = std::size_t;
  using Marks = std::size_t;
  using Mask = std::size_t;
  static constexpr const char* name = "portable";
  static constexpr std::size_t size = sizeof(Bytes);
  static constexpr unsigned int bitsPerMark = 8;  // of a mask
  static constexpr Bytes ones = ~Bytes{0} / 0xFF;
  static constexpr Bytes tops = ones << 7;
  static constexpr Bytes unitOnes = ~Bytes{0} / 0xFFFF;
  static constexpr Bytes evens = unitOnes * 0xFF;  // the low byte of each unit

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
  /// The sums of bytes, none above 0xFF.
  static Bytes plus(Bytes a, Bytes b) { return a + b; }
  /// Marks what `marks` leaves out.
  static Marks others(Marks marks) { return ~marks; }

  /// Marks where the bytes are equal.
  static Marks equal(Bytes a, Bytes b) {
    const Bytes x = a ^ b;
    return ~(((x & ~tops) + ~tops) | x);
  }
  /// Marks the bytes below `c`, which is at most 0x80.
  static Marks below(Bytes v, unsigned char c) { return ~((v | tops) - all(c)) & ~v; }
  /// Marks the bytes from `low` to `high`, which is below 0x80.
  static Marks range(Bytes v, unsigned char low, unsigned char high) {
    return below(v, static_cast<unsigned char>(high + 1)) & ~below(v, low);
  }
  /// Marks the bytes that continue a character: 10xxxxxx.
  static Marks continuations(Bytes v) { return v & ~(v << 1); }
  /// Marks the first byte of `v` that continues a character against, or does not although, the
  /// bytes one and two places before it ask for; nothing before that one.
  static Marks misplaced(Bytes v, Bytes before, Bytes before2) {
    return (before & before << 1) ^ (before2 & before2 << 1 & before2 << 2) ^ continuations(v);
  }
  /// Marks the bytes above 0xEF, which stand nowhere in UTF-8, of one block or of four together.
  static Marks foreign(Bytes v) {
    const Bytes two = v & v << 1;
    return two & two << 2;
  }
  static Marks foreign(Bytes a, Bytes b, Bytes c, Bytes d) {
    return foreign(a) | foreign(b) | foreign(c) | foreign(d);
  }
  /// The bytes moved one or two places on, zeros in front.
  static Bytes moved1(Bytes v) { return v << 8; }
  static Bytes moved2(Bytes v) { return v << 16; }

  /// `c`, at most 0x7F, in each marked byte, 0 in the others.
  static Bytes where(Marks marks, unsigned char c) { return ((marks & tops) >> 7) * c; }
  /// `tally` with 1 added in each marked byte; good for 255 times.
  static Bytes tallied(Bytes tally, Marks marks) { return tally + ((marks & tops) >> 7); }
  /// The sum of the bytes of tallies, in parts until `total` adds them up.
  using Sums = std::size_t;
  static Sums plusSums(Sums sums, Bytes tally) {
    return sums + (((tally & evens) + (tally >> 8 & evens)) * unitOnes >> (8 * size - 16));
  }
  static std::size_t total(Sums sums) { return sums; }

  /// True when no byte is above 0x7F.
  static bool isAscii(Bytes v) { return (v & tops) == 0; }
  static Mask mask(Marks marks) { return marks & tops; }
  /// Index of the first byte of a mask that is not 0.
  static std::size_t first(Mask m) { return static_cast<std::size_t>(__builtin_ctzl(m)) / 8; }

  // Units: 16-bit numbers, `size` / 2 of them in a block.

  /// The bytes of the half block at `p` as units.
  static Bytes widened(const void* p) {
    Bytes v = loadAs<Half>(p);
    v = (v | v << 2 * size) & pairs;
    return (v | v << 8) & evens;
  }
  /// Writes the low bytes of the units, whose high bytes are 0, to the half block at `p`.
  static void storeNarrowed(void* p, Bytes units) {
    const Bytes v = (units | units >> 8) & pairs;
    storeAs(p, static_cast<Half>(v | v >> 2 * size));
  }
  /// True when no unit is above 0x7F.
  static bool areAscii(Bytes units) { return (units & unitOnes * 0xFF80) == 0; }
  /// The bits of each unit moved up by 8 or down by 4.
  static Bytes up8(Bytes units) { return units << 8 & ~evens; }
  static Bytes down4(Bytes units) { return units >> 4 & unitOnes * 0x0FFF; }
  /// `tally`, whose bytes add up the units of `a` and `b` that are below 0x80 and again those that
  /// are below 0x800; good for `shortUnitTurns` times.
  static Bytes talliedShort(Bytes tally, Bytes a, Bytes b) {
    return tally + belowPower(a, 0x7F80) + belowPower(a, 0x7800) + belowPower(b, 0x7F80) +
           belowPower(b, 0x7800);
  }
  static constexpr std::size_t shortUnitTurns = 63;

 private:
  using Half = std::conditional_t<size == 8, std::uint32_t, std::uint16_t>;
  // The low half of each four bytes or of all.
  static constexpr Bytes pairs =
      ~Bytes{0} / (size == 8 ? 0xFFFFFFFF : 0xFFFF) * (size == 8 ? 0xFFFF : 0xFF);

  // 1 in each unit that has none of the bits of `bits` and not the top one.
  static Bytes belowPower(Bytes units, Bytes bits) {
    const Bytes wanted = unitOnes * bits;
    return ~(((units & wanted) + wanted) | units) >> 15 & unitOnes;
  }
};

#if CC_HAS_VECTORS

#if !defined(__SSE2__)
CC_TARGET_BEGIN(CC_SSE2)
#endif
/// 16 bytes.
struct Sse2Block {
  using Bytes = __m128i;
  using Marks = __m128i;
  using Mask = unsigned int;
  static constexpr const char* name = "SSE2";
  static constexpr std::size_t size = 16;
  static constexpr unsigned int bitsPerMark = 1;

  static Bytes load(const void* p) { return _mm_loadu_si128(static_cast<const __m128i*>(p)); }
  static Bytes loadPart(const char* p, std::size_t n) {
    if (n <= 8) return halves(loadUpTo8(p, n), 0);
    return halves(loadAs<std::uint64_t>(p), loadAs<std::uint64_t>(p + n - 8) >> (128 - 8 * n));
  }
  static void store(void* p, Bytes v) { _mm_storeu_si128(static_cast<__m128i*>(p), v); }
  static Bytes all(unsigned char c) { return _mm_set1_epi8(static_cast<char>(c)); }

  static Bytes either(Bytes a, Bytes b) { return a | b; }
  static Bytes both(Bytes a, Bytes b) { return a & b; }
  static Bytes differ(Bytes a, Bytes b) { return a ^ b; }
  static Bytes without(Bytes a, Bytes b) { return a & ~b; }
  static Bytes plus(Bytes a, Bytes b) { return _mm_add_epi8(a, b); }
  static Marks others(Marks marks) { return ~marks; }

  static Marks equal(Bytes a, Bytes b) { return _mm_cmpeq_epi8(a, b); }
  static Marks below(Bytes v, unsigned char c) {
    return _mm_cmpgt_epi8(all(c ^ 0x80), differ(v, all(0x80)));
  }
  static Marks range(Bytes v, unsigned char low, unsigned char high) {
    // One comparison of signed bytes: `low` moves to the least of them.
    const unsigned char count = static_cast<unsigned char>(high - low + 1);
    return _mm_cmpgt_epi8(all(count ^ 0x80), _mm_sub_epi8(v, all(low ^ 0x80)));
  }
  static Marks continuations(Bytes v) { return _mm_cmpgt_epi8(all(0xC0), v); }
  static Marks misplaced(Bytes v, Bytes before, Bytes before2) {
    const Bytes follows =
        differ(_mm_subs_epu8(before, all(0x40)), _mm_subs_epu8(before2, all(0x60)));
    return differ(follows, continuations(v));
  }
  static Marks foreign(Bytes v) { return _mm_subs_epu8(v, all(0x70)); }
  static Marks foreign(Bytes a, Bytes b, Bytes c, Bytes d) {
    return foreign(_mm_max_epu8(_mm_max_epu8(a, b), _mm_max_epu8(c, d)));
  }
  static Bytes moved1(Bytes v) { return _mm_slli_si128(v, 1); }
  static Bytes moved2(Bytes v) { return _mm_slli_si128(v, 2); }

  static Bytes where(Marks marks, unsigned char c) { return both(marks, all(c)); }
  static Bytes tallied(Bytes tally, Marks marks) { return _mm_sub_epi8(tally, marks); }
  using Sums = Bytes;
  static Sums plusSums(Sums sums, Bytes tally) {
    return _mm_add_epi64(sums, _mm_sad_epu8(tally, _mm_setzero_si128()));
  }
  static std::size_t total(Sums sums) {
    const Bytes parts = _mm_add_epi64(sums, _mm_unpackhi_epi64(sums, sums));
    std::uint64_t low = 0;
    _mm_storel_epi64(reinterpret_cast<__m128i*>(&low), parts);
    return static_cast<std::size_t>(low);
  }

  static bool isAscii(Bytes v) { return _mm_movemask_epi8(v) == 0; }
  static Mask mask(Marks marks) { return static_cast<Mask>(_mm_movemask_epi8(marks)); }
  static std::size_t first(Mask m) { return static_cast<std::size_t>(__builtin_ctz(m)); }

  static Bytes widened(const void* p) {
    return _mm_unpacklo_epi8(_mm_loadl_epi64(static_cast<const __m128i*>(p)), _mm_setzero_si128());
  }
  static void storeNarrowed(void* p, Bytes units) {
    _mm_storel_epi64(static_cast<__m128i*>(p), _mm_packus_epi16(units, units));
  }
  static bool areAscii(Bytes units) {
    const Bytes ascii = _mm_cmpeq_epi16(units & _mm_set1_epi16(-0x80), _mm_setzero_si128());
    return _mm_movemask_epi8(ascii) == 0xFFFF;
  }
  static Bytes up8(Bytes units) { return _mm_slli_epi16(units, 8); }
  static Bytes down4(Bytes units) { return _mm_srli_epi16(units, 4); }
  static Bytes talliedShort(Bytes tally, Bytes a, Bytes b) {
    const Bytes high = _mm_packus_epi16(_mm_srli_epi16(a, 7), _mm_srli_epi16(b, 7));
    return tallied(tallied(tally, below(high, 1)), below(high, 16));
  }
  static constexpr std::size_t shortUnitTurns = 127;

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
  using Marks = __m256i;
  using Mask = std::uint32_t;
  static constexpr const char* name = "AVX2";
  static constexpr std::size_t size = 32;
  static constexpr unsigned int bitsPerMark = 1;

  static Bytes load(const void* p) { return _mm256_loadu_si256(static_cast<const __m256i*>(p)); }
  static Bytes loadPart(const char* p, std::size_t n) {
    if (n < 16) return _mm256_zextsi128_si256(Sse2Block::loadPart(p, n));
    return _mm256_set_m128i(Sse2Block::loadPart(p + 16, n - 16), Sse2Block::load(p));
  }
  static void store(void* p, Bytes v) { _mm256_storeu_si256(static_cast<__m256i*>(p), v); }
  static Bytes all(unsigned char c) { return _mm256_set1_epi8(static_cast<char>(c)); }

  static Bytes either(Bytes a, Bytes b) { return a | b; }
  static Bytes both(Bytes a, Bytes b) { return a & b; }
  static Bytes differ(Bytes a, Bytes b) { return a ^ b; }
  static Bytes without(Bytes a, Bytes b) { return a & ~b; }
  static Bytes plus(Bytes a, Bytes b) { return _mm256_add_epi8(a, b); }
  static Marks others(Marks marks) { return ~marks; }

  static Marks equal(Bytes a, Bytes b) { return _mm256_cmpeq_epi8(a, b); }
  static Marks below(Bytes v, unsigned char c) {
    return equal(_mm256_min_epu8(v, all(static_cast<unsigned char>(c - 1))), v);
  }
  static Marks range(Bytes v, unsigned char low, unsigned char high) {
    const unsigned char count = static_cast<unsigned char>(high - low + 1);
    return _mm256_cmpgt_epi8(all(count ^ 0x80), _mm256_sub_epi8(v, all(low ^ 0x80)));
  }
  static Marks continuations(Bytes v) { return _mm256_cmpgt_epi8(all(0xC0), v); }
  static Marks misplaced(Bytes v, Bytes before, Bytes before2) {
    const Bytes follows =
        differ(_mm256_subs_epu8(before, all(0x40)), _mm256_subs_epu8(before2, all(0x60)));
    return differ(follows, continuations(v));
  }
  static Marks foreign(Bytes v) { return _mm256_subs_epu8(v, all(0x70)); }
  static Marks foreign(Bytes a, Bytes b, Bytes c, Bytes d) {
    return foreign(_mm256_max_epu8(_mm256_max_epu8(a, b), _mm256_max_epu8(c, d)));
  }
  static Bytes moved1(Bytes v) { return _mm256_alignr_epi8(v, lowHalfUp(v), 15); }
  static Bytes moved2(Bytes v) { return _mm256_alignr_epi8(v, lowHalfUp(v), 14); }

  static Bytes where(Marks marks, unsigned char c) { return both(marks, all(c)); }
  static Bytes tallied(Bytes tally, Marks marks) { return _mm256_sub_epi8(tally, marks); }
  using Sums = Bytes;
  static Sums plusSums(Sums sums, Bytes tally) {
    return _mm256_add_epi64(sums, _mm256_sad_epu8(tally, _mm256_setzero_si256()));
  }
  static std::size_t total(Sums sums) {
    return Sse2Block::total(
        _mm_add_epi64(_mm256_castsi256_si128(sums), _mm256_extracti128_si256(sums, 1)));
  }

  static bool isAscii(Bytes v) { return _mm256_movemask_epi8(v) == 0; }
  static Mask mask(Marks marks) { return static_cast<Mask>(_mm256_movemask_epi8(marks)); }
  static std::size_t first(Mask m) { return static_cast<std::size_t>(__builtin_ctz(m)); }

  static Bytes widened(const void* p) { return _mm256_cvtepu8_epi16(Sse2Block::load(p)); }
  static void storeNarrowed(void* p, Bytes units) {
    const Bytes packed = _mm256_permute4x64_epi64(_mm256_packus_epi16(units, units), 0x08);
    Sse2Block::store(p, _mm256_castsi256_si128(packed));
  }
  static Bytes up8(Bytes units) { return _mm256_slli_epi16(units, 8); }
  static Bytes down4(Bytes units) { return _mm256_srli_epi16(units, 4); }
  static Bytes talliedShort(Bytes tally, Bytes a, Bytes b) {
    const Bytes high = _mm256_packus_epi16(_mm256_srli_epi16(a, 7), _mm256_srli_epi16(b, 7));
    const Bytes counts = _mm256_broadcastsi128_si256(shortCounts());
    return plus(tally, _mm256_shuffle_epi8(counts, _mm256_adds_epu8(high, all(0x70))));
  }
  static constexpr std::size_t shortUnitTurns = 127;

  /// How often a unit counts, by its bits from the seventh on. Those from 16 on, with 0x70 added,
  /// get the top bit, for which a shuffle gives 0.
  static __m128i shortCounts() {
    return _mm_setr_epi8(2, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1);
  }

 private:
  static Bytes lowHalfUp(Bytes v) { return _mm256_permute2x128_si256(v, v, 0x08); }
};
CC_TARGET_END

#if defined(__x86_64__)
CC_TARGET_BEGIN(CC_AVX512)
/// 64 bytes. Marks are masks, which this processor computes with directly.
struct Avx512Block {
  using Bytes = __m512i;
  using Marks = std::uint64_t;
  using Mask = std::uint64_t;
  static constexpr const char* name = "AVX-512";
  static constexpr std::size_t size = 64;
  static constexpr unsigned int bitsPerMark = 1;

  static Bytes load(const void* p) { return _mm512_loadu_si512(p); }
  static Bytes loadPart(const char* p, std::size_t n) {
    return _mm512_maskz_loadu_epi8(_bzhi_u64(~Marks{0}, static_cast<unsigned int>(n)), p);
  }
  static void store(void* p, Bytes v) { _mm512_storeu_si512(p, v); }
  static Bytes all(unsigned char c) { return _mm512_set1_epi8(static_cast<char>(c)); }

  static Bytes either(Bytes a, Bytes b) { return a | b; }
  static Bytes both(Bytes a, Bytes b) { return a & b; }
  static Bytes differ(Bytes a, Bytes b) { return a ^ b; }
  static Bytes without(Bytes a, Bytes b) { return a & ~b; }
  static Bytes plus(Bytes a, Bytes b) { return _mm512_add_epi8(a, b); }
  static Marks either(Marks a, Marks b) { return a | b; }
  static Marks both(Marks a, Marks b) { return a & b; }
  static Marks without(Marks a, Marks b) { return a & ~b; }
  static Marks either(Bytes tops, Marks marks) { return mask(tops) | marks; }
  static Marks others(Marks marks) { return ~marks; }

  static Marks equal(Bytes a, Bytes b) { return _mm512_cmpeq_epi8_mask(a, b); }
  static Marks below(Bytes v, unsigned char c) { return _mm512_cmplt_epu8_mask(v, all(c)); }
  static Marks range(Bytes v, unsigned char low, unsigned char high) {
    return below(_mm512_sub_epi8(v, all(low)), static_cast<unsigned char>(high - low + 1));
  }
  static Marks continuations(Bytes v) { return _mm512_cmplt_epi8_mask(v, all(0xC0)); }
  static Bytes misplaced(Bytes v, Bytes before, Bytes before2) {
    const Bytes follows =
        differ(_mm512_subs_epu8(before, all(0x40)), _mm512_subs_epu8(before2, all(0x60)));
    return differ(follows, _mm512_adds_epi8(v, all(0x40)));
  }
  static Marks foreign(Bytes v) { return _mm512_cmpge_epu8_mask(v, all(0xF0)); }
  static Marks foreign(Bytes a, Bytes b, Bytes c, Bytes d) {
    return foreign(_mm512_max_epu8(_mm512_max_epu8(a, b), _mm512_max_epu8(c, d)));
  }
  static Bytes moved1(Bytes v) { return _mm512_alignr_epi8(v, quarterUp(v), 15); }
  static Bytes moved2(Bytes v) { return _mm512_alignr_epi8(v, quarterUp(v), 14); }

  static Bytes where(Marks marks, unsigned char c) { return _mm512_maskz_mov_epi8(marks, all(c)); }
  static Bytes tallied(Bytes tally, Marks marks) {
    return _mm512_mask_add_epi8(tally, marks, tally, all(1));
  }
  using Sums = Bytes;
  static Sums plusSums(Sums sums, Bytes tally) {
    return _mm512_add_epi64(sums, _mm512_sad_epu8(tally, _mm512_setzero_si512()));
  }
  static std::size_t total(Sums sums) {
    const __m256i low = _mm512_maskz_extracti64x4_epi64(0x0F, sums, 0);
    const __m256i high = _mm512_maskz_extracti64x4_epi64(0x0F, sums, 1);
    return Avx2Block::total(_mm256_add_epi64(low, high));
  }

  static bool isAscii(Bytes v) { return mask(v) == 0; }
  static Mask mask(Marks marks) { return marks; }
  static Mask mask(Bytes tops) { return _mm512_movepi8_mask(tops); }
  static std::size_t first(Mask m) { return static_cast<std::size_t>(__builtin_ctzll(m)); }

  static Bytes widened(const void* p) {
    return _mm512_cvtepu8_epi16(_mm256_loadu_si256(static_cast<const __m256i*>(p)));
  }
  static void storeNarrowed(void* p, Bytes units) {
    _mm256_storeu_si256(static_cast<__m256i*>(p), _mm512_maskz_cvtepi16_epi8(~__mmask32{0}, units));
  }
  static Bytes up8(Bytes units) { return _mm512_slli_epi16(units, 8); }
  static Bytes down4(Bytes units) { return _mm512_srli_epi16(units, 4); }
  static Bytes talliedShort(Bytes tally, Bytes a, Bytes b) {
    const Bytes high = _mm512_packus_epi16(_mm512_srli_epi16(a, 7), _mm512_srli_epi16(b, 7));
    const Bytes counts = _mm512_maskz_broadcast_i32x4(0xFFFF, Avx2Block::shortCounts());
    return plus(tally, _mm512_shuffle_epi8(counts, _mm512_adds_epu8(high, all(0x70))));
  }
  static constexpr std::size_t shortUnitTurns = 127;

 private:
  static Bytes quarterUp(Bytes v) { return _mm512_maskz_shuffle_i64x2(0xFC, v, v, 0x90); }
};
CC_TARGET_END
#else
using Avx512Block = Avx2Block;  // its masks do not fit in a register
#endif

#else  // CC_HAS_VECTORS

using Sse2Block = PlainBlock;
using Avx2Block = PlainBlock;
using Avx512Block = PlainBlock;

#endif  // CC_HAS_VECTORS

#if defined(__SSE2__)
/// The widest block that the whole library may use without asking the processor.
using NativeBlock = Sse2Block;
#else
using NativeBlock = PlainBlock;
#endif

}  // namespace cc::kernels
