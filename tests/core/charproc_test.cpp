// Tables, searches, comparison, copies and case of byte strings and 16-bit strings.

#include "charproc.h"

#include <gtest/gtest.h>

#include <cctype>
#include <climits>
#include <clocale>
#include <cstdlib>
#include <cwctype>
#include <memory>
#include <string>
#include <string_view>

#include "tests/reference/text_model.h"
#include "tests/support/alloc_sweep.h"
#include "tests/support/guarded_buffer.h"

namespace {

using reference::at;
using reference::byteAt;
using reference::sizeOf;
using std::string_view;
using namespace std::string_view_literals;

TEST(CharTables, HoldTheLocaleInForce) {
  EXPECT_TRUE(chr_tables_prepare_done);
  EXPECT_EQ(1, processor);
  for (int x = 0; x < 256; ++x) {
    EXPECT_EQ(std::tolower(x), chr_lower_table_ascii[x]) << x;
    EXPECT_EQ(std::toupper(x), chr_upper_table_ascii[x]) << x;
  }
  for (unsigned int u = 0; u < 65536; ++u) {
    ASSERT_EQ(static_cast<unsigned short>(std::towlower(u)), chr_lower_table_utf16[u]) << u;
    ASSERT_EQ(static_cast<unsigned short>(std::towupper(u)), chr_upper_table_utf16[u]) << u;
  }
}

TEST(CharTables, ClassLetters) {
  for (int x = 0; x < 256; ++x) {
    const char c = static_cast<char>(x);
    const char expected = x >= 'a' && x <= 'z'                        ? 'L'
                          : x >= 'A' && x <= 'Z'                      ? 'U'
                          : x >= '0' && x <= '9'                      ? 'D'
                          : x != 0 && strchr(" \t\r\n", c) != nullptr ? 'W'
                                                                      : '.';
    EXPECT_EQ(expected, chr_types_table_ascii[x]) << x;
  }
}

// Filling again follows the locale of the moment; the locale of the environment comes in only
// where the process has none of its own.
TEST(CharTables, PrepareSetsTheLocale) {
  const char* old = std::getenv("LC_ALL");
  const std::string saved = old ? old : "";
  const std::string before = std::setlocale(LC_ALL, nullptr);
  const locale_t own = ::uselocale(LC_GLOBAL_LOCALE);
  const struct {
    const char* host;
    const char* environment;
    const char* expected;
    unsigned short upperOfE9;
  } rows[] = {
      {"C", "C.UTF-8", "C.UTF-8", 0xC9},
      {"C", "C", "C", 0xE9},
      {"C.UTF-8", "C", "C.UTF-8", 0xC9},
      {"C", "no_SUCH.locale", "C", 0xE9},
  };
  for (const auto& row : rows) {
    ASSERT_NE(nullptr, std::setlocale(LC_ALL, row.host));
    setenv("LC_ALL", row.environment, 1);
    chr_tables_prepare();
    EXPECT_STREQ(row.expected, std::setlocale(LC_CTYPE, nullptr)) << row.environment;
    EXPECT_STREQ("C", std::setlocale(LC_NUMERIC, nullptr)) << row.environment;
    EXPECT_EQ(row.upperOfE9, chr_upper_table_utf16[0xE9]) << row.environment;
  }
  if (old) {
    setenv("LC_ALL", saved.c_str(), 1);
  } else {
    unsetenv("LC_ALL");
  }
  std::setlocale(LC_ALL, before.c_str());
  ::uselocale(own);
  chr_tables_prepare();
}

TEST(Search, Units) {
  const unsigned short text[] = {'a', 0x20AC, 'b', 0x20AC, 0};
  EXPECT_EQ(4U, strlen_utf16(text));
  EXPECT_EQ(0U, strlen_utf16(empty_string16));
  EXPECT_EQ(text + 1, strchr_utf16(text, 0x20AC));
  EXPECT_EQ(text + 4, strchr_utf16(text, 0));
  EXPECT_EQ(nullptr, strchr_utf16(text, 'c'));
  EXPECT_EQ(nullptr, strchr_utf16(empty_string16, 'c'));
}

TEST(Search, LastByte) {
  const char text[] = "xaybz";
  EXPECT_EQ(text, strbchr(text, text + 5, 'x'));
  EXPECT_EQ(text + 3, strbchr(text, text + 5, 'b'));
  EXPECT_EQ(nullptr, strbchr(text, text + 3, 'b'));
  EXPECT_EQ(nullptr, strbchr(text, text, 'x'));
  EXPECT_EQ(nullptr, strbchr(text + 1, text, 'x'));
  EXPECT_EQ(nullptr, strbchr(nullptr, nullptr, 'x'));
}

TEST(Search, SingleByte) {
  const char text[] = "aXbxc";
  EXPECT_EQ(text + 3, strfind(text, 5, 'x'));
  EXPECT_EQ(nullptr, strfind(text, 3, 'x'));
  EXPECT_EQ(nullptr, strfind(nullptr, 0, 'x'));
  EXPECT_EQ(text + 1, strfind_i_ascii(text, text + 5, 'x'));
  EXPECT_EQ(text + 1, strfind_i_ascii(text, text + 5, 'X'));
  EXPECT_EQ(nullptr, strfind_i_ascii(text, text + 5, 'y'));
  EXPECT_EQ(nullptr, strfind_i_ascii(nullptr, nullptr, 'y'));
}

TEST(Search, Pattern) {
  const struct {
    string_view text, pattern;
    std::size_t exact, noCase;
  } rows[] = {{"abc", "", 3, 3},
              {"abc", {}, 3, 3},
              {"", "a", 0, 0},
              {"ABCABD", "abd", reference::none, 3},
              {"a\0b"sv, "\0B"sv, reference::none, 1},
              {"xy\xFFz", "\xFFz", 2, 2}};
  for (const auto& row : rows) {
    const string_view t = row.text;
    const string_view p = row.pattern;
    EXPECT_EQ(row.exact, at(t, strfind(t.data(), sizeOf(t), p.data(), sizeOf(p)))) << t;
    EXPECT_EQ(row.noCase, at(t, strfind_i_ascii(t.data(), sizeOf(t), p.data(), sizeOf(p)))) << t;
  }
  EXPECT_EQ(nullptr, strfind(nullptr, 0, "a", 1));
  EXPECT_EQ(nullptr, strfind_i_ascii(nullptr, 0, nullptr, 0));
}

TEST(Compare, Bytes) {
  EXPECT_EQ(0, strcmp0(nullptr, ""));
  EXPECT_EQ(0, strcmp0(nullptr, nullptr));
  EXPECT_GT(0, strcmp0(nullptr, "a"));
  EXPECT_LT(0, strcmp0("b", "a"));
  EXPECT_LT(0, strcmp0("\xFF", "a"));

  EXPECT_EQ(-1, strcompare("ab", 2, "abc", 3));
  EXPECT_EQ(1, strcompare("abc", 3, "ab", 2));
  EXPECT_EQ(0, strcompare("ab\0c", 4, "ab\0c", 4));
  EXPECT_LT(0, strcompare("b", 1, "a", 1));
  EXPECT_GT(0, strcompare("abc", 3, "b", 1));
  EXPECT_LT(0, strcompare("\x80", 1, "a", 1));
  EXPECT_EQ(0, strcompare(nullptr, 0, nullptr, 0));
  EXPECT_EQ(1, strcompare("a", 1, nullptr, 0));

  EXPECT_TRUE(streq(nullptr, 0, "x", 0));
  EXPECT_TRUE(streq("abc", 3, "abcd", 3));
  EXPECT_FALSE(streq("abc", 3, "abcd", 4));
  EXPECT_FALSE(streq("abc", 3, "abd", 3));
  EXPECT_TRUE(streq_i_ascii(nullptr, 0, nullptr, 0));
  EXPECT_TRUE(streq_i_ascii("Ab", 2, "aB", 2));
  EXPECT_FALSE(streq_i_ascii("Ab", 2, "aBc", 3));
  EXPECT_FALSE(streq_i_ascii("[", 1, "{", 1));
}

TEST(Compare, WithoutCase) {
  const struct {
    const char* a;
    const char* b;
    int expected;
  } rows[] = {
      {"ab", "AB", 0},     {"ab", "abc", -1},     {"abc", "ab", 1},   {"a", "B", 1},
      {"A", "b", -1},      {"a", "_", 1},         {"Z", "[", -1},     {"z", "[", 1},
      {nullptr, "", 0},    {"", nullptr, 0},      {nullptr, "a", -1}, {"a", nullptr, 1},
      {"\xE9", "\xC9", 1}, {"a\x80", "A\x7F", 1},
  };
  for (const auto& row : rows) {
    const string_view a = row.a ? row.a : string_view();
    const string_view b = row.b ? row.b : string_view();
    EXPECT_EQ(row.expected, strcmp_i_ascii(row.a, row.b)) << a << " / " << b;
    EXPECT_EQ(row.expected, strcmp_i_ascii(row.a, row.a ? row.a + a.size() : "x", row.b,
                                           row.b ? row.b + b.size() : "x"))
        << a << " / " << b;
  }
}

TEST(Copy, IntoBuffer) {
  const struct {
    unsigned int room;
    string_view source, expected;
  } rows[] = {
      {4, "abcdef", "abc\0"sv}, {6, "ab", "ab\0\0\0\0"sv}, {1, "abc", "\0"sv}, {3, "", "\0\0\0"sv}};
  const cc::test::GuardedBuffer memory(16);
  for (const auto& row : rows) {
    char* buffer = memory.end() - row.room;
    memset(buffer, '#', row.room);
    EXPECT_EQ(buffer, strzcpy(buffer, row.room, row.source.data()));
    EXPECT_EQ(row.expected, string_view(buffer, row.room));
  }
  // Of a source without a terminator no more than the room is read.
  char small[4];
  EXPECT_STREQ("wxy", strzcpy(small, 4, memory.atEnd("wxy"sv)));
}

TEST(Copy, ToHeap) {
  const std::unique_ptr<char[]> bytes(strnew("a\0b", 3));
  EXPECT_EQ("a\0b\0"sv, string_view(bytes.get(), 4));
  const std::unique_ptr<char[]> empty(strnew("", 0));
  EXPECT_STREQ("", empty.get());
  EXPECT_EQ(nullptr, strnew(static_cast<const char*>(nullptr), 5));

  const unsigned short euro[] = {'a', 0x20AC, 0xE9, 0};
  const std::unique_ptr<unsigned short[]> units(strnew16(euro, 2));
  EXPECT_EQ(reference::Units({'a', 0x20AC, 0}), reference::Units(units.get(), units.get() + 3));
  EXPECT_EQ(nullptr, strnew16(static_cast<const unsigned short*>(nullptr), 5));

  const std::unique_ptr<char[]> narrow(strnew(euro, euro + 3));
  EXPECT_STREQ("a\xE2\x82\xAC\xC3\xA9", narrow.get());
  const std::unique_ptr<char[]> none(strnew(euro, euro));
  EXPECT_STREQ("", none.get());
  EXPECT_EQ(nullptr, strnew(static_cast<const unsigned short*>(nullptr), euro));
  EXPECT_EQ(nullptr, strnew16(static_cast<const char*>(nullptr), "x"));
}

// One unit per character start, whatever the text holds.
TEST(Copy, ToUtf16OfMalformedText) {
  const struct {
    string_view text;
    reference::Units expected;
  } rows[] = {
      {"", {}},
      {"a\xC3\xA9\xE2\x82\xAC", {'a', 0xE9, 0x20AC}},
      {"a\x80z", {'a', 0}},  // a stray byte makes a unit but counts for none
      {"\x80\x81z", {1}},    // the stray bytes at the start are one character
  };
  for (const auto& row : rows) {
    const char* begin = row.text.data();
    const std::unique_ptr<unsigned short[]> units(strnew16(begin, begin + row.text.size()));
    reference::Units expected = row.expected;
    expected.push_back(0);
    EXPECT_EQ(expected, reference::Units(units.get(), units.get() + expected.size()));
  }
}

TEST(Copy, Append) {
  char* s = nullptr;
  stradd(s, 0, nullptr, 4);
  EXPECT_EQ(nullptr, s);
  stradd(s, 0, "abc", 3);
  EXPECT_STREQ("abc", s);
  const char* before = s;
  stradd(s, 3, nullptr, 2);
  EXPECT_EQ(before, s);
  stradd(s, 3, "de", 2);
  EXPECT_STREQ("abcde", s);
  stradd(s, 5, s + 1, 3);  // from its own text
  EXPECT_STREQ("abcdebcd", s);
  stradd(s, 2, "", 0);  // the length is trusted
  EXPECT_STREQ("ab", s);
  delete[] s;
}

TEST(Copy, FailedAllocationLeavesTheText) {
  cc::test::sweepAllocations([](cc::test::AllocSweep& sweep) {
    char* s = nullptr;
    if (sweep.attempt([&] { s = strnew("abc", 3); })) {
      const bool done = sweep.attempt([&] { stradd(s, 3, "de", 2); });
      EXPECT_STREQ(done ? "abcde" : "abc", s);
    }
    delete[] s;
  });
  char* s = strnew("abc", 3);
  EXPECT_THROW(stradd(s, 3, "x", UINT_MAX - 2), std::bad_alloc);
  EXPECT_THROW(stradd(s, 3, "x", INT_MAX - 2), std::bad_alloc);
  EXPECT_STREQ("abc", s);
  delete[] s;
  EXPECT_THROW(strnew("x", UINT_MAX), std::bad_alloc);
  EXPECT_THROW(strnew16(empty_string16, INT_MAX / 2 + 1), std::bad_alloc);
}

TEST(Case, EveryByteAndUnit) {
  std::string bytes;
  for (int x = 0; x < 256; ++x) bytes += static_cast<char>(x);
  std::string lower = bytes;
  std::string upper = bytes;
  EXPECT_EQ(lower.data() + 256, strlw_ascii(lower.data(), lower.data() + 256));
  EXPECT_EQ(upper.data() + 256, strup_ascii(upper.data(), upper.data() + 256));
  for (std::size_t x = 0; x < 256; ++x) {
    EXPECT_EQ(chr_lower_table_ascii[x], byteAt(lower, x));
    EXPECT_EQ(chr_upper_table_ascii[x], byteAt(upper, x));
  }
  reference::Units low(65536);
  for (std::size_t u = 0; u < 65536; ++u) low[u] = static_cast<unsigned short>(u);
  reference::Units up = low;
  unsigned short* const lowEnd = low.data() + 65536;
  unsigned short* const upEnd = up.data() + 65536;
  EXPECT_EQ(lowEnd, strlw_utf16(low.data(), lowEnd));
  EXPECT_EQ(upEnd, strup_utf16(up.data(), upEnd));
  for (std::size_t u = 0; u < 65536; ++u) {
    ASSERT_EQ(chr_lower_table_utf16[u], low[u]);
    ASSERT_EQ(chr_upper_table_utf16[u], up[u]);
  }
}

TEST(Case, EmptyRange) {
  char text[] = "aB";
  unsigned short units[] = {'a', 'B'};
  EXPECT_EQ(text + 1, strlw_ascii(text + 1, text + 1));
  EXPECT_EQ(text + 1, strup_ascii(text + 1, text));
  EXPECT_EQ(units + 1, strlw_utf16(units + 1, units));
  EXPECT_EQ(units, strup_utf16(units, units));
  EXPECT_STREQ("aB", text);
}

}  // namespace
