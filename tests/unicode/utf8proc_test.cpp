// The codec, its counting and stepping, and the operations without regard to case: tables of
// known cases, and small domains tried to the end.

#include "utf8proc.h"

#include <gtest/gtest.h>

#include <clocale>
#include <string>
#include <string_view>

#include "charproc.h"
#include "tests/reference/text_model.h"
#include "tests/support/guarded_buffer.h"

namespace {

using cc::test::GuardedBuffer;
using reference::none;
using reference::Units;
using std::string_view;
using namespace std::string_view_literals;

unsigned int size(string_view s) { return static_cast<unsigned int>(s.size()); }

std::size_t at(const char* begin, const char* found) {
  return found ? static_cast<std::size_t>(found - begin) : none;
}

// True where the locale of loading knows the case of letters beyond ASCII, and that of "i" as
// usual.
bool knowsLetters() {
  return chr_upper_table_utf16[0xE9] == 0xC9 && chr_upper_table_utf16['i'] == 'I';
}

// ---------------------------------------------------------------------------- checking

TEST(Utf8, Check) {
  const struct {
    string_view text;
    std::size_t expected;
  } rows[] = {
      {"", none},
      {"A\0B"sv, none},
      {"\xC3\xA9\xE2\x82\xAC", none},
      {"\xC0\x80", none},      // overlong
      {"\xED\xA0\x80", none},  // a surrogate
      {"\xC3", 0},
      {"\xC3\x41", 1},
      {"\xE2\x82\x41", 2},
      {"\xE2\x41", 0},  // cut off before anything else is looked at
      {"\xE2\x41z", 1},
      {"\x80", 0},
      {"a\xBF", 1},
      {"\xC3\xA9\xA9", 2},
      {"\xF0\x9F\x98\x80", 0},
      {"\xE2\xF0\x80", 1},
      {"\xFF", 0},
  };
  for (const auto& row : rows) {
    const GuardedBuffer memory(row.text);
    EXPECT_EQ(row.expected, at(memory.begin(), strchk_utf8(memory.begin(), size(row.text))))
        << row.text;
  }
  EXPECT_EQ(nullptr, strchk_utf8(nullptr, 3));
}

// Every string of up to three bytes: the check, the count and the first character.
TEST(Utf8, EveryShortString) {
  const GuardedBuffer memory(3);
  for (std::size_t n = 1; n <= 3; ++n) {
    char* s = memory.end() - n;
    for (unsigned int bits = 0; bits < 1U << (8 * n); ++bits) {
      for (std::size_t i = 0; i < n; ++i) s[i] = static_cast<char>(bits >> (8 * i));
      const string_view text(s, n);
      ASSERT_EQ(reference::check(text), at(s, strchk_utf8(s, size(text)))) << bits;
      std::size_t length = 0;
      const unsigned short expected = reference::decode(text, length);
      unsigned short unit = 0;
      ASSERT_EQ(s + length, getch_utf8(unit, s, memory.end())) << bits;
      ASSERT_EQ(expected, unit) << bits;
      ASSERT_EQ(reference::countCharacters(text), strlen_utf8(s, memory.end())) << bits;
    }
  }
}

// ---------------------------------------------------------------------------- single characters

TEST(Utf8, Decode) {
  const struct {
    string_view text;
    unsigned short expected;
    std::size_t length;
  } rows[] = {
      {"", 0xFFFF, 0},
      {"A", 'A', 1},
      {"\xE2\x82\xAC", 0x20AC, 3},
      {"\x80\x41", 0, 1},
      {"\x9F\x41", 0x1F, 1},
      {"\xC3\xA9\xA9", 0x3A69, 3},
      {"\xF0\x9F\x98\x80", 0xF600, 4},
      {"\xC3", 3, 1},
      {"\xC1\xA1", 'a', 2},
  };
  for (const auto& row : rows) {
    const GuardedBuffer memory(row.text);
    unsigned short unit = 1;
    EXPECT_EQ(memory.begin() + row.length, getch_utf8(unit, memory.begin(), memory.end()));
    EXPECT_EQ(row.expected, unit);
  }
  unsigned short unit = 1;
  EXPECT_EQ(nullptr, getch_utf8(unit, nullptr, "x"));
  EXPECT_EQ(1, unit);
}

TEST(Utf8, EveryUnit) {
  const GuardedBuffer memory(3);
  for (unsigned int value = 0; value < 65536; ++value) {
    const unsigned short u = static_cast<unsigned short>(value);
    const std::string expected = reference::encode(u);
    for (std::size_t room = 0; room <= 3; ++room) {  // whatever fits is written
      char* p = memory.end() - room;
      char* reached = putch_utf8(u, p, memory.end());
      ASSERT_EQ(expected.substr(0, room), string_view(p, at(p, reached))) << u;
    }
    ASSERT_EQ(expected.size(), strlen_utf8(&u, &u + 1)) << u;
    const char* s = memory.atEnd(expected);
    unsigned short decoded = 0;
    ASSERT_EQ(memory.end(), getch_utf8(decoded, s, memory.end()));
    ASSERT_EQ(u, decoded);
  }
}

TEST(Utf8, Stepping) {
  const string_view text = "\x80\x80z\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\x41\x80";
  const std::size_t starts[] = {0, 2, 3, 5, 8, 12};
  const GuardedBuffer memory(text);
  const char* const begin = memory.begin();
  for (std::size_t i = 0; i < text.size(); ++i) {
    std::size_t next = text.size();
    std::size_t before = 0;
    for (const std::size_t start : starts) {
      if (start > i && start < next) next = start;
      if (start < i) before = start;
    }
    EXPECT_EQ(next, at(begin, chrpass_utf8(begin + i, memory.end()))) << i;
    EXPECT_EQ(before, at(begin, chrback_utf8(begin, begin + i))) << i;
  }
  EXPECT_EQ(memory.end(), chrpass_utf8(memory.end(), memory.end()));
  EXPECT_EQ(begin, chrpass_utf8(begin + 1, begin));
  EXPECT_EQ(begin + 1, chrback_utf8(begin + 1, begin));
}

// ---------------------------------------------------------------------------- counting, converting

TEST(Utf8, Lengths) {
  EXPECT_EQ(5U, strlen_utf8("h\xC3\xA9llo"));
  EXPECT_EQ(0U, strlen_utf8(static_cast<const char*>(nullptr)));
  EXPECT_EQ(0U, strlen_utf8(static_cast<const unsigned short*>(nullptr)));
  EXPECT_EQ(0U, strlen_utf8(""));
  const unsigned short units[] = {0x41, 0xE9, 0x20AC, 0xD83D, 0xDE00, 0};
  EXPECT_EQ(6U, strlen_utf8(units, units + 3));
  EXPECT_EQ(12U, strlen_utf8(units));
  EXPECT_EQ(0U, strlen_utf8(units + 1, units));
  const char text[] = "abc";
  EXPECT_EQ(0U, strlen_utf8(text + 1, text));
}

TEST(Utf8, ConvertToNothing) {
  char bytes[2] = {'#', '#'};
  unsigned short units[2] = {7, 7};
  EXPECT_EQ(bytes, utf16_to_utf8(nullptr, units + 1, bytes, bytes + 2));
  EXPECT_EQ(bytes, utf16_to_utf8(units, units, bytes, bytes + 2));
  EXPECT_EQ(bytes, utf16_to_utf8(units, units + 1, bytes, bytes));
  EXPECT_EQ(bytes + 1, utf16_to_utf8(units, units + 1, bytes + 1, bytes));
  EXPECT_EQ(units, utf8_to_utf16(nullptr, bytes + 1, units, units + 2));
  EXPECT_EQ(units, utf8_to_utf16(bytes, bytes, units, units + 2));
  EXPECT_EQ(units, utf8_to_utf16(bytes, bytes + 1, units, units));
  EXPECT_EQ('#', bytes[0]);
  EXPECT_EQ(7, units[0]);
}

// ---------------------------------------------------------------------------- case

TEST(Utf8, CaseInPlace) {
  const struct {
    string_view text, upper, lower;
    bool letters;  // the row needs a locale that knows them
  } rows[] = {
      {"", "", "", false},
      {"aBc-1\0z"sv, "ABC-1\0Z"sv, "abc-1\0z"sv, false},
      {"h\xC3\xA9", "H\xC3\x89", "h\xC3\xA9", true},
      {"\xD0\x9F\xD1\x80", "\xD0\x9F\xD0\xA0", "\xD0\xBF\xD1\x80", true},
      // The other case has another length: dotless i, the long s, a turned a.
      {"\xC4\xB1", "\xC4\xB1", "\xC4\xB1", true},
      {"x\xC5\xBFy", "X\xC5\xBFY", "x\xC5\xBFy", true},
      {"\xC9\x90z", "\xC9\x90Z", "\xC9\x90z", true},
      // Malformed: overlong letters keep their bytes, what decodes to itself too.
      {"\xC1\xA1z", "\xC1\xA1Z", "\xC1\xA1z", false},
      {"\x80z\xC3", "\x80Z\xC3", "\x80z\xC3", false},
      {"\xF0\x9F\x98\x80z", "\xF0\x9F\x98\x80Z", "\xF0\x9F\x98\x80z", false},
      // A lead that lacks a byte, with one too many behind the next.
      {"\xC3z\xC3\xA9\xA9", "\xC3Z\xC3\xA9\xA9", "\xC3z\xC3\xA9\xA9", false},
  };
  for (const auto& row : rows) {
    if (row.letters && !knowsLetters()) continue;
    const GuardedBuffer memory(row.text);
    strup_utf8(memory.begin(), memory.end());
    EXPECT_EQ(row.upper, string_view(memory.begin(), row.text.size()));
    memory.atEnd(row.text);
    strlw_utf8(memory.begin(), memory.end());
    EXPECT_EQ(row.lower, string_view(memory.begin(), row.text.size()));
  }
  strup_utf8(nullptr, "x");
  char text[] = "a";
  strup_utf8(text + 1, text);
  EXPECT_STREQ("a", text);
}

TEST(Utf8, CaseOfEveryUnit) {
  Units all(65536);
  for (std::size_t u = 0; u < all.size(); ++u) all[u] = static_cast<unsigned short>(u);
  const std::string text = reference::toUtf8(all);
  std::string upper = text;
  strup_utf8(upper.data(), upper.data() + upper.size());
  EXPECT_EQ(reference::mapCase(text, chr_upper_table_utf16), upper);
  std::string lower = text;
  strlw_utf8(lower.data(), lower.data() + lower.size());
  EXPECT_EQ(reference::mapCase(text, chr_lower_table_utf16), lower);
}

// ---------------------------------------------------------------------------- comparing

struct Pair {
  string_view a, b;
  int expected;
  bool letters = false;
};

TEST(Utf8, CompareWithoutCase) {
  const Pair rows[] = {
      {"abc", "ABC", 0},
      {"abc", "abd", -1},
      {"ab", "a", 1},
      {"", "a", -1},
      {"", "", 0},
      {"a", "_", -1},  // by the upper-case value, unlike the comparison of bytes
      {"[", "a", 1},
      {"a\0b"sv, "A\0B"sv, 0},
      {"\xC3\xA9", "\xC3\x89", 0, true},
      {"\xC3\xA9", "\xC3\x8A", -1, true},
      {"z", "\xC3\xA9", -1},
      {"\xC3\xA9", "z", 1},
      {"\xC3\xA9\xC3\xA8", "\xC3\x89\xC3\x88", 0, true},
      // Counterparts of other lengths: the long s and the dotless i.
      {"\xC5\xBF", "s", 0, true},
      {"S\xC4\xB1m", "\xC5\xBFIm", 0, true},
      {"\xC5\xBF", "sx", -1, true},
      // Malformed: overlong letters, the same unit in other bytes.
      {"\xC1\xA1", "A", 0},
      {"\xC1\xA1z", "A\x00"sv, 1},
      {"\x8A", "\n", 0},
      // A continuation byte behind an ASCII byte is a character of its own.
      {"A\x80", "A\x81", -1},
      {"A\x80", "A\xC3", -1},
      {"A\x81z", "A\xC1y", 1},
      {"\xC3\xA9\xA9", "\xC3\xA9", 1},
      {"\xC3\xA9\x80\x80\x80", "\xC3\xA9\x80\x80\x81", -1},
  };
  for (const Pair& row : rows) {
    if (row.letters && !knowsLetters()) continue;
    const GuardedBuffer a(row.a);
    const GuardedBuffer b(row.b);
    EXPECT_EQ(row.expected, strcmp_i_utf8(a.begin(), a.end(), b.begin(), b.end()))
        << row.a << " / " << row.b;
    EXPECT_EQ(-row.expected, strcmp_i_utf8(b.begin(), b.end(), a.begin(), a.end()))
        << row.b << " / " << row.a;
  }
  const char x[] = "x";
  EXPECT_EQ(0, strcmp_i_utf8(nullptr, nullptr, x, x));
  EXPECT_EQ(-1, strcmp_i_utf8(nullptr, x, x, x + 1));
  EXPECT_EQ(1, strcmp_i_utf8(x, x + 1, nullptr, x));
}

// Always an end, also where a character is met again from its middle: every pair of strings of up
// to three bytes of each kind.
TEST(Utf8, CompareEveryShortPair) {
  const char kinds[] = {'A', 'a', '\n', '\x80', '\x8A', '\xA1', '\xC1', '\xC3', '\xE0'};
  std::string strings[1 + 9 + 81 + 729];
  std::size_t n = 1;
  for (std::size_t from = 0; n < std::size(strings); ++from) {
    for (const char c : kinds) strings[n++] = strings[from] + c;
  }
  for (const std::string& a : strings) {
    for (const std::string& b : strings) {
      ASSERT_EQ(reference::compareNoCaseUtf8(a, b),
                strcmp_i_utf8(a.data(), a.data() + a.size(), b.data(), b.data() + b.size()))
          << testing::PrintToString(a) << " / " << testing::PrintToString(b);
    }
  }
}

// ---------------------------------------------------------------------------- searching

TEST(Utf8, FindWithoutCase) {
  const struct {
    string_view text, pattern;
    std::size_t expected;
    bool letters = false;
  } rows[] = {
      {"Hello World", "WORLD", 6},
      {"abc", "abcd", none},
      {"abc", "", 3},
      {"", "a", 0},
      {"abc", "C", 2},
      {"x\xC3\xA9", "\xC3\x89", 1, true},
      {"\xC3\xA9\xC3\xA9t\xC3\xA9", "\xC3\x89T\xC3\x89", 2, true},
      // The first character may be of another length than the pattern's, the rest not.
      {"a\xC5\xBFo", "so", 1, true},
      {"o\xC5\xBF", "os", none, true},
      {"\xE2\x84\xAA", "K", none},
      {"\xC4\xB1", "i", 0, true},
      // Lengths that make up for each other.
      {"as\xC5\xBF", "a\xC5\xBFS", 0, true},
      // Malformed text: an overlong first letter, a stray byte that decodes to the control wanted.
      {"x\xC1\xA1z", "AZ", 1},
      {"x\x8Ay", "x\ny", 0},
      {"x\x80y", "\x01", none},
      // The last character of the text may be cut by the length of the pattern.
      {"caf\xE3\xA9\x80", "caf\xC3\xA9", 0},
      {"caf\xE3\xA9\x80", "caf\xC3\x89", 0, true},
      // The first one by the limit that the rest leaves.
      {"\xE0\x81\x81\x81", "A\x81\x81", none},
      {"\xC1\x81\x82", "A\x82", 0},
  };
  for (const auto& row : rows) {
    if (row.letters && !knowsLetters()) continue;
    const GuardedBuffer text(row.text);
    const GuardedBuffer pattern(row.pattern);
    const char* found = strfind_i_utf8(text.begin(), text.end(), pattern.begin(), pattern.end());
    EXPECT_EQ(row.expected, at(text.begin(), found)) << row.text << " / " << row.pattern;
    EXPECT_EQ(reference::findNoCaseUtf8(row.text, row.pattern), at(text.begin(), found));
  }
  const char x[] = "x";
  EXPECT_EQ(x + 1, strfind_i_utf8(x, x + 1, nullptr, nullptr));
  EXPECT_EQ(x + 1, strfind_i_utf8(nullptr, x + 1, x, x + 1));
}

}  // namespace
