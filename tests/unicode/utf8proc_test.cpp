// The codec, its counting and stepping: small domains tried to the end, and what is no range.

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
  const char x[] = "x";
  strup_utf8(nullptr, x);
  strup_utf8(text + 1, text);
  EXPECT_STREQ("a", text);
  EXPECT_EQ(0, strcmp_i_utf8(nullptr, nullptr, x, x));
  EXPECT_EQ(-1, strcmp_i_utf8(nullptr, x, x, x + 1));
  EXPECT_EQ(1, strcmp_i_utf8(x, x + 1, nullptr, x));
  EXPECT_EQ(x + 1, strfind_i_utf8(x, x + 1, nullptr, nullptr));
  EXPECT_EQ(x + 1, strfind_i_utf8(nullptr, x + 1, x, x + 1));
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

}  // namespace
