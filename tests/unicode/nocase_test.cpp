// Comparison and search without regard to case against the slow models: random texts of every
// kind with letters in other cases and wrong bytes, patterns cut from them, texts that are bad for
// simple searches.

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "charproc.h"
#include "core/case_tables.h"
#include "tests/reference/text_model.h"
#include "tests/support/guarded_buffer.h"
#include "tests/support/kernel_forms.h"
#include "utf8proc.h"

namespace {

using cc::test::GuardedBuffer;
using cc::test::Random;
using cc::test::TextKind;
using cc::test::textKinds;
using cc::test::withEachForm;
using reference::at;
using reference::repeated;
using std::string_view;

const char* find(string_view text, string_view pattern) {
  return strfind_i_utf8(text.data(), text.data() + text.size(), pattern.data(),
                        pattern.data() + pattern.size());
}

int compare(string_view a, string_view b) {
  return strcmp_i_utf8(a.data(), a.data() + a.size(), b.data(), b.data() + b.size());
}

// Some characters in the other case, and sometimes a byte of another value.
std::string varied(Random& random, string_view text) {
  std::string result;
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t start = i;
    const unsigned short u = reference::decode(text, i);
    const unsigned short upper = chr_upper_table_utf16[u];
    const unsigned short mapped = upper != u ? upper : chr_lower_table_utf16[u];
    result += random() % 3 == 0 ? reference::encode(mapped) : text.substr(start, i - start);
  }
  if (random() % 4 == 0 && !result.empty()) {
    result[random() % result.size()] = "a\x80\xA9\xC3\xE3\xF0"[random() % 6];
  }
  return result;
}

TEST(NoCase, ComparesRandomTexts) {
  const GuardedBuffer left(4096);
  const GuardedBuffer right(4096);
  withEachForm([&](const cc::kernels::Loops&) {
    Random random(31);
    for (const TextKind& kind : textKinds) {
      SCOPED_TRACE(kind.name);
      for (int round = 0; round < 1500 / cc::test::stride; ++round) {
        const std::string a = kind.text(random, random() % 300);
        std::string b = varied(random, a);
        if (random() % 4 == 0) b.resize(random() % (b.size() + 1));
        const string_view p(left.atEnd(a), a.size());
        const string_view q(right.atEnd(b), b.size());
        ASSERT_EQ(reference::compareNoCaseUtf8(p, q), compare(p, q));
        ASSERT_EQ(reference::compareNoCaseUtf8(q, p), compare(q, p));
      }
    }
  });
}

// All pairs of short texts, of the bytes of a letter and of each kind of bytes: they go on in one
// of the two or in both, and characters are met again from their middle.
TEST(NoCase, ComparesAllShortTexts) {
  for (const string_view bytes : {"a\xD0\xB0\x90\x80", "Aa\n\x80\x8A\xA1\xC1\xC3\xE0"}) {
    std::vector<std::string> texts = {""};
    for (std::size_t i = 0; texts[i].size() < (bytes.size() < 6 ? 4 : 3); ++i) {
      for (const char c : bytes) texts.push_back(texts[i] + c);
    }
    withEachForm([&texts](const cc::kernels::Loops&) {
      for (const std::string& a : texts) {
        for (const std::string& b : texts) {
          ASSERT_EQ(reference::compareNoCaseUtf8(a, b), compare(a, b))
              << testing::PrintToString(a) << " / " << testing::PrintToString(b);
        }
      }
    });
  }
}

void findIn(const GuardedBuffer& texts, const GuardedBuffer& patterns, Random& random,
            const std::string& text) {
  const string_view t(texts.atEnd(text), text.size());
  std::string pattern(t.substr(random() % (t.size() + 1), 1 + random() % 60));
  if (random() % 3 != 0) pattern = varied(random, pattern);
  const string_view p(patterns.atEnd(pattern), pattern.size());
  ASSERT_EQ(reference::findNoCaseUtf8(t, p), at(t, find(t, p)))
      << testing::PrintToString(text) << " / " << testing::PrintToString(pattern);
}

// Texts of every kind, and valid ones of very few characters, so that partial matches abound, with
// now and then a wrong byte; patterns end in characters that the end of a match may cut from longer
// ones.
TEST(NoCase, FindsInRandomTexts) {
  std::vector<TextKind> kinds = {
      {"two", {"a", "A", "b"}},
      {"s and i", {"s", "S", "i", "\xC5\xBF", "\xC4\xB1"}},
      {"cut", {"\xC3\xA9", "\xE3\xA9\x80", "\xC3\x89", "x"}},
      {"controls", {"\n", "\x05", "\xCA\x80", "\xE5\x80\x80", "x"}},
      {"sigma", {"\xCF\x83", "\xCF\x82", "\xCE\xA3", "\xCE\xBC", "\xC2\xB5"}},
      {"joined", {"\xC3\xA9", "\xE3\xA9\x80", "\xC3\xA9\x83\xA9\x80"}},
      {"nearly valid", {"ab", "aB", "Ab", "ab", "ab", "ab", "ab", "ab", "ab", "ab", "ab", "\x80"}},
  };
  kinds.insert(kinds.end(), textKinds.begin(), textKinds.end());
  const GuardedBuffer texts(4096);
  const GuardedBuffer patterns(4096);
  withEachForm([&](const cc::kernels::Loops&) {
    Random random(33);
    for (const TextKind& kind : kinds) {
      SCOPED_TRACE(kind.name);
      for (int round = 0; round < 3000 / cc::test::stride; ++round) {
        findIn(texts, patterns, random, kind.text(random, random() % 400));
        if (testing::Test::HasFatalFailure()) return;
      }
    }
  });
}

// Texts longer than the pieces that are taken at a time, the pattern across their borders, and
// wrong bytes before and behind it.
TEST(NoCase, FindsAcrossPieces) {
  withEachForm([](const cc::kernels::Loops&) {
    Random random(34);
    const std::string pattern = "N\xC3\x89\145dle \xE7\x8C\x8E\xC3\x89";
    const std::string written = "n\xC3\xA9\105DLE \xE7\x8C\x8E\xC3\xA9";
    for (std::size_t place = 16300; place < 16420; ++place) {
      std::string text;
      while (text.size() + 2 <= place) text += "\xC3\xA8";
      while (text.size() < place) text += '-';
      text += written + std::string(100, '-');
      if (place % 3 == 0) text[random() % 16000] = '\xFF';
      if (place % 3 == 1) text[place + written.size()] = '\x80';
      ASSERT_EQ(reference::findNoCaseUtf8(text, pattern), at(text, find(text, pattern))) << place;
    }
  });
}

// A quadratic search would not come back from these.
TEST(NoCase, BadTextsTakeLinearTime) {
  const std::size_t n = (1U << 20) / cc::test::stride;
  const struct {
    std::string text, pattern;
  } rows[] = {
      {repeated("a", n), repeated("A", n / 2) + "b"},
      {repeated("a", n), "b" + repeated("A", n / 2)},
      {repeated("\xC3\xA9", n), repeated("\xC3\x89", n / 2) + "\xC3\x88"},
      {repeated("\xC3\xA9x", n), "z" + repeated("\xC3\x89X", n / 4)},
      {repeated("\xE7\x8C\x8E", n), repeated("\xE7\x8C\x8E", n / 4) + "\xE7\x8C\x8D"},
  };
  withEachForm([&rows](const cc::kernels::Loops&) {
    for (const auto& row : rows) {
      EXPECT_EQ(nullptr, find(row.text, row.pattern));
      const std::string with = row.text + row.pattern + repeated("-", 5000);
      const char* found = find(with, row.pattern);
      ASSERT_NE(nullptr, found);
      EXPECT_EQ(0, compare({found, row.pattern.size()}, row.pattern));
    }
  });
}

// Between the near matches stand characters whose lengths differ from those of their counterparts.
void findBehindNearMatches(int rounds) {
  Random random(35);
  for (int round = 0; round < rounds; ++round) {
    const string_view unit = round % 2 == 0 ? "ab\xC3\xA9" : "\xD0\xBF\xD1\x80";
    const std::string near = repeated(unit, 60 + random() % 100);
    const string_view separators[] = {"x", "\xC1\xB8", "\xE2\xB1\xA5", "\xC5\xBF"};
    const std::string part = near + std::string(separators[round % 7 % 4]);
    std::string text = repeated(part, 12000);
    std::string pattern = varied(random, near + near);
    if (round % 3 != 0) text += pattern + "x";
    if (round % 4 == 0) text.append(repeated(part, 8000)).append(pattern);
    ASSERT_EQ(reference::findNoCaseUtf8(text, pattern), at(text, find(text, pattern))) << round;
  }
}

// The linear search finds the same as the plain walk, the first match or none.
TEST(NoCase, FindsBehindManyNearMatches) { findBehindNearMatches(60); }

// Locales that are like no other: the fast ways are right there, or are not taken.
TEST(NoCase, OddTables) {
  struct Entry {
    unsigned short unit, upper;
  };
  std::vector<Entry> manyOfOne;
  for (unsigned short u = 0xE0; u < 0xF6; ++u) manyOfOne.push_back({u, 0xC8});
  const std::vector<Entry> rows[] = {
      {{0xE9, 0xC9}, {0xC9, 0xC8}, {0x69, 0x130}},  // the upper case of an upper case is another
      {{0xE9, 0xC9}, {0xC9, 0xC8}},
      manyOfOne,
      {{0xE9, 0x2C63}, {0x43F, 0x2C63}},  // of other lengths: the upper case, and its lower case
      {{0x2C65, 0xC0}},                   // the lower case of the upper case has another
  };
  const GuardedBuffer texts(4096);
  const GuardedBuffer patterns(4096);
  Random random(36);
  for (const std::vector<Entry>& row : rows) {
    for (const Entry& entry : row) chr_upper_table_utf16[entry.unit] = entry.upper;
    chr_lower_table_utf16[0xC0] = 0x2C61;
    cc::deriveCaseTables();
    for (const TextKind& kind : textKinds) {
      for (int round = 0; round < 100; ++round) {
        findIn(texts, patterns, random, kind.text(random, 150 + random() % 200));
      }
    }
    findBehindNearMatches(7);
    chr_tables_prepare();
  }
}

}  // namespace
