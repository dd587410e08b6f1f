// Comparison without regard to case.
//
// What is equal, or differs by the case of ASCII letters and of characters of two bytes, is passed
// over in blocks. Where the texts differ in another way, both characters are decoded from their
// starts and compared through the upper-case table. Other differences are likely close behind one,
// so a few more steps are made singly before the next block.

#include <algorithm>

#include "charproc.h"
#include "core/case_tables.h"
#include "core/kernels.h"
#include "unicode/utf8proc_nocase.h"
#include "utf8proc.h"

namespace cc {

using kernels::isAscii;

namespace {

// Two texts and how far they have been compared.
struct Comparison {
  const char* a;
  const char* aEnd;
  const char* b;
  const char* bEnd;
  const char* p = a;
  const char* q = b;

  bool isOver() const { return p >= aEnd || q >= bEnd; }

  // Passes what matches.
  void skip() {
    const std::size_t n = static_cast<std::size_t>(std::min(aEnd - p, bEnd - q));
    pass(kernels::loops->matchNoCaseUtf8(p, q, n, chr_upper_table_utf16));
  }

  // Passes `same` bytes, up to the end of the shorter text; but not its last character where that
  // goes on in the other.
  void pass(std::size_t same) {
    const std::size_t n = static_cast<std::size_t>(std::min(aEnd - p, bEnd - q));
    if (same == n && n >= 2 && aEnd - p != bEnd - q) {
      const char* const longer = aEnd - p > bEnd - q ? p : q;
      if (kernels::continues(longer[n])) same -= 2;
    }
    p += same;
    q += same;
  }

  // Compares one byte or one character of each: -1, 0 or 1.
  int step() {
    if (*p == *q) {
      ++p;
      ++q;
      return 0;
    }
    unsigned short left = 0;
    unsigned short right = 0;
    if (isAscii(*p) && isAscii(*q)) {
      left = chr_upper_table_ascii[static_cast<unsigned char>(*p++)];
      right = chr_upper_table_ascii[static_cast<unsigned char>(*q++)];
    } else {
      p = kernels::decodeCharacter(left, characterAt(a, p), aEnd);
      q = kernels::decodeCharacter(right, characterAt(b, q), bEnd);
      left = chr_upper_table_utf16[left];
      right = chr_upper_table_utf16[right];
    }
    return left == right ? 0 : left > right ? 1 : -1;
  }

  NoCaseOrder result(int order) const { return {order, static_cast<std::size_t>(p - a)}; }
  // Where one of the texts is over.
  NoCaseOrder ending() const { return result((p < aEnd ? 1 : 0) - (q < bEnd ? 1 : 0)); }
};

// From behind what matches on. Stands by itself, so that texts that match need no room on the
// stack.
[[gnu::noinline]] NoCaseOrder compareBehind(std::size_t same, const char* a, const char* aEnd,
                                            const char* b, const char* bEnd) {
  constexpr int singleSteps = 16;
  Comparison comparison{a, aEnd, b, bEnd};
  comparison.pass(same);
  for (;;) {
    for (int i = 0; i < singleSteps; ++i) {
      if (comparison.isOver()) return comparison.ending();
      if (const int order = comparison.step(); order != 0) return comparison.result(order);
    }
    if (caseTables.plainBytes) comparison.skip();
  }
}

}  // namespace

NoCaseOrder compareNoCase(const char* a, const char* aEnd, const char* b, const char* bEnd) {
  if (!caseTables.plainBytes) return compareBehind(0, a, aEnd, b, bEnd);
  const std::size_t n = static_cast<std::size_t>(std::min(aEnd - a, bEnd - b));
  const std::size_t same = kernels::loops->matchNoCaseUtf8(a, b, n, chr_upper_table_utf16);
  if (same == n && aEnd - a == bEnd - b) return {0, n};
  return compareBehind(same, a, aEnd, b, bEnd);
}

}  // namespace cc

int strcmp_i_utf8(const char* a, const char* aEnd, const char* b, const char* bEnd) {
  if (!a || a > aEnd) aEnd = a;
  if (!b || b > bEnd) bEnd = b;
  return cc::compareNoCase(a, aEnd, b, bEnd).order;
}
