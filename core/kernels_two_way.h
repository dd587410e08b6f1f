// String search in linear time and constant space: the two-way algorithm. (M. Crochemore and
// D. Perrin, "Two-way string-matching", Journal of the ACM 38, 1991.)
//
// The pattern is cut in two at a place where its local period is its period. The right part is
// compared from left to right, then the left part from right to left; a mismatch in the right part
// allows a shift by what matched, one in the left part a shift by the period.
#pragma once

#include <algorithm>
#include <cstddef>

namespace cc::kernels {

/// Calls `accept` with the index of each occurrence, in order, until it answers true; returns that
/// index, or `n` when there is none. Time is linear in `m` + `n`, that of `accept` aside. `Pattern`
/// and `Text` give the symbol at an index; `m` is 1 to `n`.
template <class Pattern, class Text, class Accept>
class TwoWay {
 public:
  TwoWay(Pattern patternAt, std::size_t patternLength) : pattern(patternAt), m(patternLength) {
    const Suffix below = maximalSuffix([](auto a, auto b) { return a < b; });
    const Suffix above = maximalSuffix([](auto a, auto b) { return a > b; });
    const Suffix& longer = below.start > above.start ? below : above;
    cut = longer.start;
    period = longer.period;
    periodic = startRepeats();
    if (!periodic) period = std::max(cut, m - cut) + 1;
  }

  std::size_t search(Text text, std::size_t n, Accept accept) const {
    std::size_t known = 0;  // so much of the pattern is known to match, in the periodic case
    for (std::size_t at = 0; at <= n - m;) {
      std::size_t i = std::max(cut, known);
      while (i < m && pattern(i) == text(at + i)) ++i;
      if (i < m) {
        at += i - cut + 1;
        known = 0;
        continue;
      }
      i = cut;
      while (i > known && pattern(i - 1) == text(at + i - 1)) --i;
      if (i <= known && accept(at)) return at;
      at += period;
      known = periodic ? m - period : 0;
    }
    return n;
  }

 private:
  struct Suffix {
    std::size_t start;
    std::size_t period;
  };

  // The suffix that is the greatest in the order of `less`, and its period.
  template <class Less>
  Suffix maximalSuffix(Less less) const {
    Suffix best = {0, 1};
    std::size_t candidate = 1;
    std::size_t k = 0;
    while (candidate + k < m) {
      const auto a = pattern(candidate + k);
      const auto b = pattern(best.start + k);
      if (less(a, b)) {
        candidate += k + 1;
        k = 0;
        best.period = candidate - best.start;
      } else if (less(b, a)) {
        best = {candidate, 1};
        ++candidate;
        k = 0;
      } else if (++k == best.period) {
        candidate += best.period;
        k = 0;
      }
    }
    return best;
  }

  // True when what stands before the cut comes again one period later, so that the period is that
  // of the whole pattern. The period is no longer than what stands behind the cut.
  bool startRepeats() const {
    for (std::size_t i = 0; i < cut; ++i) {
      if (pattern(i) != pattern(i + period)) return false;
    }
    return true;
  }

  Pattern pattern;
  std::size_t m;
  std::size_t cut;
  std::size_t period;
  bool periodic;
};

/// The index of the first occurrence that `accept` takes, or `n`.
template <class Pattern, class Text, class Accept>
std::size_t searchTwoWay(Pattern pattern, std::size_t m, Text text, std::size_t n, Accept accept) {
  return TwoWay<Pattern, Text, Accept>(pattern, m).search(text, n, accept);
}

}  // namespace cc::kernels
