/// @file
/// Runs a test with every set of hot loops that the processor has, and texts to run it on.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "core/kernels.h"
#include "tests/support/guarded_buffer.h"
#include "tests/support/stride.h"

namespace cc::test {

/// Puts each set of loops in use, the portable one first, and calls `test` with it.
template <class Test>
void withEachForm(Test test) {
  const kernels::Loops* const saved = kernels::loops;
  for (const kernels::Loops* form : kernels::supportedLoops()) {
    SCOPED_TRACE(form->name);
    kernels::loops = form;
    test(*form);
    if (testing::Test::HasFatalFailure()) break;
  }
  kernels::loops = saved;
}

using Random = std::mt19937;

/// About `n` bytes of random pieces, cut to exactly `n`.
inline std::string randomText(Random& random, std::size_t n,
                              const std::vector<std::string_view>& pieces) {
  std::string text;
  while (text.size() < n) text += pieces[random() % pieces.size()];
  text.resize(n);
  return text;
}

/// A kind of text, by the pieces that it is made of.
struct TextKind {
  const char* name;
  std::vector<std::string_view> pieces;
  std::string text(Random& random, std::size_t n) const { return randomText(random, n, pieces); }
};

/// Texts of one and of several scripts, and texts with all that can be wrong with UTF-8.
inline const std::vector<TextKind> textKinds = {
    {"ASCII", {"a", "Z", " ", "[", "{", "@", "`", "~", "9"}},
    {"French", {"a", "b", "T", " ", "e", "r", "\xC3\xA9", "\xC3\x89", "\xC3\xA7"}},
    {"Cyrillic", {"\xD0\xBF", "\xD1\x80", "\xD0\x9F", "\xD0\xA0", "\xD1\x91", " "}},
    {"Chinese", {"\xE7\x8C\x8E", "\xE4\xBA\xBA", "\xE6\x9D\xA5", "\xEF\xBC\x8C"}},
    {"all lengths",
     {"x", "Y", "\xC3\xA9", "\xD0\x9F", "\xE2\x82\xAC", "\xE1\xBA\x9E", "\xEF\xBD\x81"}},
    {"odd lengths", {"i", "S", "\xC4\xB1", "\xC5\xBF", "\xC9\x90", "\xE2\xB1\xAF", "\xC8\xBF"}},
    {"overlong", {"a", "\xC1\xA1", "\xC0\x80", "\xE0\x81\xA1", "\xED\xA0\x80", "\xC3\xA9"}},
    {"continued", {"\xC3\xA9", "\xC3\x89", "\xC3\xA9", "\xC3\x89", "\xC3\xA9\x80", "a"}},
    {"malformed",
     {"a", "B", "\x80", "\xA9", "\xC3", "\xE2", "\xE2\x82", "\xF0\x9F\x98\x80", "\xFF"}},
    {"barely malformed",
     {"\xC3\xA9", "\xC3\x89", "\xC3\xA9", "\xC3\x89", "z", "z", "Z", "z", "\xE2\x82\xAC", "z", "z",
      "\xD0\x9F", "\xD0\x9F", "\xD0\x9F", "\xD0\x9F", "\xD0\x9F", "\xD0\x9F", "\xD0\x9F", "\x80"}},
};

/// Calls `check` with a copy of `text` that ends at an unreadable page, and with copies that start
/// at the unreadable page before and a few bytes behind it, at `alignments` places.
template <class Check>
void atEachEdge(const GuardedBuffer& memory, std::string_view text, std::size_t alignments,
                Check check) {
  check(memory.atEnd(text), text.size());
  for (std::size_t offset = 0; offset < alignments; offset += stride) {
    check(memory.atBegin(text, offset), text.size());
  }
}

}  // namespace cc::test
