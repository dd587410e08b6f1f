// Pattern search: random texts of few letters against the slow model, texts that are bad for
// simple searches, and the two-way algorithm by itself.

#include <gtest/gtest.h>

#include <cstring>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "charproc.h"
#include "core/case_tables.h"
#include "core/kernels_two_way.h"
#include "tests/reference/text_model.h"
#include "tests/support/guarded_buffer.h"
#include "tests/support/kernel_forms.h"

namespace {

using namespace cc::test;
using reference::at;
using reference::sizeOf;
using std::string_view;

std::string lettersOf(Random& random, std::size_t n, string_view letters) {
  std::string text;
  while (n-- > 0) text += letters[random() % letters.size()];
  return text;
}

// Patterns from the text itself, a byte of some changed, and patterns of their own.
std::string patternFor(Random& random, const std::string& text, string_view letters) {
  if (text.empty() || random() % 4 == 0) return lettersOf(random, 1 + random() % 12, letters);
  const std::size_t start = random() % text.size();
  std::string pattern = text.substr(start, 1 + random() % 100);
  if (random() % 2 == 0) pattern[random() % pattern.size()] = letters[random() % letters.size()];
  return pattern;
}

void searchRandomTexts(int rounds) {
  const GuardedBuffer textMemory(1024);
  const GuardedBuffer patternMemory(1024);
  Random random(11);
  for (int round = 0; round < rounds / stride; ++round) {
    const string_view letters = round % 3 == 0   ? "ab"
                                : round % 3 == 1 ? "abAB[{"
                                                 : "aAbBcCxyzXYZ\xE9\xC9";
    const std::string text = lettersOf(random, random() % 400, letters);
    const std::string pattern = patternFor(random, text, letters);
    const string_view t(textMemory.atEnd(text), text.size());
    const string_view p(patternMemory.atEnd(pattern), pattern.size());
    ASSERT_EQ(reference::find(t, p, false),
              at(t, strfind(t.data(), sizeOf(t), p.data(), sizeOf(p))))
        << text << " / " << pattern;
    ASSERT_EQ(reference::find(t, p, true),
              at(t, strfind_i_ascii(t.data(), sizeOf(t), p.data(), sizeOf(p))))
        << text << " / " << pattern;
    ASSERT_EQ(reference::find(t, p.substr(0, 1), true),
              t.empty() ? 0 : at(t, strfind_i_ascii(t.data(), t.data() + t.size(), p[0])));
  }
}

TEST(SearchLoops, RandomTexts) {
  withEachForm([](const cc::kernels::Loops&) { searchRandomTexts(5000); });
}

// With a locale that folds more than ASCII, as single-byte locales do.
TEST(SearchLoops, TablesBeyondAscii) {
  chr_upper_table_ascii[0xE9] = 0xC9;
  cc::deriveCaseTables();
  const string_view text = "caf\xE9";
  EXPECT_EQ(3U, at(text, strfind_i_ascii(text.data(), 4, "\xC9", 1)));
  EXPECT_EQ(2U, at(text, strfind_i_ascii(text.data(), 4, "F\xC9", 2)));
  EXPECT_EQ(0, strcmp_i_ascii("\xE9t\xE9", "\xC9T\xC9"));
  searchRandomTexts(5000);
  chr_tables_prepare();
  EXPECT_EQ(reference::none, at(text, strfind_i_ascii(text.data(), 4, "\xC9", 1)));
}

// Long before it fails every wrong place matches; a quadratic search would not come back from
// these.
TEST(SearchLoops, BadTextsTakeLinearTime) {
  constexpr std::size_t n = 1 << 20;
  const struct {
    std::string text, pattern;
  } rows[] = {
      {std::string(n, 'a'), std::string(n / 2, 'a') + "b"},
      {std::string(n, 'a'), "b" + std::string(n / 2, 'a')},
      {std::string(n, 'a'), std::string(n / 4, 'a') + "b" + std::string(n / 4, 'a')},
      {reference::repeated("ab", n), reference::repeated("ab", n / 2) + "b"},
      {reference::repeated("aab", n), "bb" + reference::repeated("aab", n / 2)},
      {reference::repeated(std::string(1000, 'a') + "b", n), std::string(1001, 'a')},
  };
  withEachForm([&rows](const cc::kernels::Loops&) {
    for (const auto& row : rows) {
      const string_view t = row.text;
      const string_view p = row.pattern;
      std::string upper(p);
      strup_ascii(upper.data(), upper.data() + upper.size());
      EXPECT_EQ(nullptr, strfind(t.data(), sizeOf(t), p.data(), sizeOf(p)));
      EXPECT_EQ(nullptr, strfind_i_ascii(t.data(), sizeOf(t), upper.data(), sizeOf(upper)));
      const std::string with = row.text + row.pattern;
      EXPECT_EQ(memmem(with.data(), with.size(), p.data(), p.size()),
                strfind(with.data(), sizeOf(with), p.data(), sizeOf(p)));
    }
  });
}

// All occurrences, in order, of every pattern and text of two letters up to a length.
TEST(TwoWay, EnumeratesEveryOccurrence) {
  std::vector<std::string> texts = {""};
  for (std::size_t i = 0; texts[i].size() < 10; ++i) {
    for (const char c : {'a', 'b'}) texts.push_back(texts[i] + c);
  }
  for (const std::string& pattern : texts) {
    if (pattern.empty() || pattern.size() > 6) continue;
    for (const std::string& text : texts) {
      if (text.size() < pattern.size()) continue;
      std::vector<std::size_t> expected, found;
      for (std::size_t i = text.find(pattern); i != text.npos; i = text.find(pattern, i + 1)) {
        expected.push_back(i);
      }
      const auto collect = [&](std::size_t i) {
        found.push_back(i);
        return false;
      };
      const std::size_t m = pattern.size();
      const std::size_t n = text.size();
      const auto patternAt = [&](std::size_t i) { return pattern[i]; };
      const auto textAt = [&](std::size_t i) { return text[i]; };
      ASSERT_EQ(n, cc::kernels::searchTwoWay(patternAt, m, textAt, n, collect));
      ASSERT_EQ(expected, found) << pattern << " in " << text;
    }
  }
}

// The number of symbols looked at, for long periodic patterns and texts.
TEST(TwoWay, LooksAtFewSymbols) {
  Random random(12);
  for (const std::size_t n : std::initializer_list<std::size_t>{10000, 20000, 40000}) {
    for (int round = 0; round < 20; ++round) {
      const std::string unit = lettersOf(random, 1 + random() % 20, "ab");
      std::string text;
      while (text.size() < n) text += unit;
      std::string pattern = text.substr(random() % 50, n / 4);
      if (round % 2 == 0) pattern[random() % pattern.size()] = 'c';
      std::size_t looks = 0;
      const auto patternAt = [&](std::size_t i) { return pattern[i]; };
      const auto textAt = [&](std::size_t i) {
        ++looks;
        return text[i];
      };
      const auto refuse = [](std::size_t) { return false; };
      cc::kernels::searchTwoWay(patternAt, pattern.size(), textAt, text.size(), refuse);
      EXPECT_LE(looks, 3 * text.size()) << unit;
    }
  }
}

}  // namespace
