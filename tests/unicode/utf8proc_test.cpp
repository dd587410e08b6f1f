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
#include "tests/support/stride.h"

namespace {

using cc::test::GuardedBuffer;
using reference::at;
using reference::sizeOf;
using reference::Units;
using std::string_view;
using namespace std::string_view_literals;

// Every string of up to three bytes: the check, the count and the first character.
TEST(Utf8, EveryShortString) {
  const GuardedBuffer memory(3);
  for (std::size_t n = 1; n <= 3; ++n) {
    char* s = memory.end() - n;
    const unsigned int step = n < 3 ? 1 : cc::test::stride;
    for (unsigned int bits = 0; bits < 1U << (8 * n); bits += step) {
      for (std::size_t i = 0; i < n; ++i) s[i] = static_cast<char>(bits >> (8 * i));
      const string_view text(s, n);
      ASSERT_EQ(reference::check(text), at(s, strchk_utf8(s, sizeOf(text)))) << bits;
      std::size_t length = 0;
      const unsigned short expected = reference::decode(text, length);
      unsigned short unit = 0;
      ASSERT_EQ(s + length, getch_utf8(unit, s, memory.end())) << bits;
      ASSERT_EQ(expected, unit) << bits;
      ASSERT_EQ(reference::countCharacters(text), strlen_utf8(s, memory.end())) << bits;
    }
  }
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

TEST(Utf8, NoRange) {
  EXPECT_EQ(nullptr, strchk_utf8(nullptr, 3));
  EXPECT_EQ(nullptr, strchk_utf8("", 0));
  unsigned short unit = 1;
  EXPECT_EQ(nullptr, getch_utf8(unit, nullptr, "x"));
  EXPECT_EQ(1, unit);
  const char* const none = "";
  EXPECT_EQ(none, getch_utf8(unit, none, none));
  EXPECT_EQ(0xFFFF, unit);
  char text[] = "a";
  strup_utf8(nullptr, "x");
  strup_utf8(text + 1, text);
  EXPECT_STREQ("a", text);
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

// By characters where bytes differ, each as its upper case, whose length may be another one.
TEST(Utf8, CompareWithoutCase) {
  const struct {
    string_view a, b;
  } rows[] = {{"abc", "ABC"},
              {"abc", "abd"},
              {"ab", "a"},
              {"", "a"},
              {"", ""},
              {"a", "_"},
              {"[", "a"},
              {"a\0b"sv, "A\0B"sv},
              {"\xC3\xA9", "\xC3\x89"},
              {"\xC3\xA9", "\xC3\x8A"},
              {"z", "\xC3\xA9"},
              {"\xC3\xA9\xC3\xA8", "\xC3\x89\xC3\x88"},
              {"\xC5\xBF", "s"},
              {"S\xC4\xB1m", "\xC5\xBFIm"},
              {"\xC5\xBF", "sx"},
              {"\xC1\xA1z", "A\x00"sv},
              {"A\x81z", "A\xC1y"},
              {"\xC3\xA9\x80\x80\x80", "\xC3\xA9\x80\x80\x81"}};
  for (const auto& row : rows) {
    const GuardedBuffer a(row.a);
    const GuardedBuffer b(row.b);
    EXPECT_EQ(reference::compareNoCaseUtf8(row.a, row.b),
              strcmp_i_utf8(a.begin(), a.end(), b.begin(), b.end()))
        << row.a;
    EXPECT_EQ(reference::compareNoCaseUtf8(row.b, row.a),
              strcmp_i_utf8(b.begin(), b.end(), a.begin(), a.end()))
        << row.a;
  }
  const char x[] = "x";
  EXPECT_EQ(0, strcmp_i_utf8(nullptr, nullptr, x, x));
  EXPECT_EQ(-1, strcmp_i_utf8(nullptr, x, x, x + 1));
  EXPECT_EQ(1, strcmp_i_utf8(x, x + 1, nullptr, x));
}

// The first character of the match may be of another length than the pattern's, the rest not.
TEST(Utf8, FindWithoutCase) {
  const struct {
    string_view text, pattern;
  } rows[] = {{"Hello World", "WORLD"},
              {"abc", "abcd"},
              {"abc", ""},
              {"", "a"},
              {"abc", "C"},
              {"x\xC3\xA9", "\xC3\x89"},
              {"\xC3\xA9\xC3\xA9t\xC3\xA9", "\xC3\x89T\xC3\x89"},
              {"a\xC5\xBFo", "so"},
              {"o\xC5\xBF", "os"},
              {"\xE2\x84\xAA", "K"},
              {"\xC4\xB1", "i"},
              {"as\xC5\xBF", "a\xC5\xBFS"},
              {"x\xC1\xA1z", "AZ"},
              {"x\x8Ay", "x\ny"},
              {"x\x80y", "\x01"},
              {"caf\xE3\xA9\x80", "caf\xC3\xA9"},
              {"caf\xE3\xA9\x80", "caf\xC3\x89"},
              {"\xE0\x81\x81\x81", "A\x81\x81"},
              {"\xC1\x81\x82", "A\x82"}};
  for (const auto& row : rows) {
    const GuardedBuffer text(row.text);
    const GuardedBuffer pattern(row.pattern);
    EXPECT_EQ(
        reference::findNoCaseUtf8(row.text, row.pattern),
        at(text.begin(), strfind_i_utf8(text.begin(), text.end(), pattern.begin(), pattern.end())))
        << row.text << " / " << row.pattern;
  }
  const char x[] = "x";
  EXPECT_EQ(x + 1, strfind_i_utf8(x, x + 1, nullptr, nullptr));
  EXPECT_EQ(x + 1, strfind_i_utf8(nullptr, x + 1, x, x + 1));
}

}  // namespace
