// Tables, searches, comparison, copies and case of byte strings and 16-bit strings.

#include "charproc.h"

#include <gtest/gtest.h>

#include <cctype>
#include <climits>
#include <clocale>
#include <cstdlib>
#include <cwctype>
#include <memory>
#include <numeric>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "core/case_tables.h"
#include "tests/reference/text_model.h"
#include "tests/support/alloc_sweep.h"
#include "tests/support/guarded_buffer.h"
#include "utf8proc.h"

namespace {

using namespace cc::test;
using reference::at;
using reference::sizeOf;
using std::string_view;
using namespace std::string_view_literals;

TEST(CharTables, HoldTheLocaleInForce) {
  EXPECT_TRUE(chr_tables_prepare_done);
  EXPECT_EQ(1, processor);
  for (int x = 0; x < 256; ++x) {
    EXPECT_EQ(std::tolower(x), chr_lower_table_ascii[x]) << x;
    EXPECT_EQ(std::toupper(x), chr_upper_table_ascii[x]) << x;
    const char expected = x >= 'a' && x <= 'z'                        ? 'L'
                          : x >= 'A' && x <= 'Z'                      ? 'U'
                          : x >= '0' && x <= '9'                      ? 'D'
                          : x != 0 && strchr(" \t\r\n", x) != nullptr ? 'W'
                                                                      : '.';
    EXPECT_EQ(expected, chr_types_table_ascii[x]) << x;
  }
  for (unsigned int u = 0; u < 65536; ++u) {
    ASSERT_EQ(static_cast<unsigned short>(std::towlower(u)), chr_lower_table_utf16[u]) << u;
    ASSERT_EQ(static_cast<unsigned short>(std::towupper(u)), chr_upper_table_utf16[u]) << u;
  }
}

// Filling again follows the locale of the moment; the locale of the environment comes in only
// where the process has none of its own.
TEST(CharTables, PrepareSetsTheLocale) {
  const char* const old = std::getenv("LC_ALL");
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
  setenv("LC_ALL", saved.c_str(), 1);  // an empty one is as none
  std::setlocale(LC_ALL, before.c_str());
  ::uselocale(own);
  chr_tables_prepare();
}

// Where more letters share an upper case than are kept apart, the tables alone decide.
TEST(CharTables, MayHaveTooManyLettersOfOneUpperCase) {
  for (unsigned int u = 0x300; u < 0x1E00; ++u) {  // accents, which no locale gives a case
    if (u < 0x370 || u >= 0x1DC0) chr_upper_table_utf16[u] = 'A';
  }
  cc::deriveCaseTables();
  EXPECT_EQ(-1, cc::caseTables.extraCount);
  const string_view text = "b\xCC\x80x";
  const char pattern[] = "aX";
  EXPECT_EQ(1U, at(text, strfind_i_utf8(text.data(), text.data() + 4, pattern, pattern + 2)));
  chr_tables_prepare();
  EXPECT_LE(0, cc::caseTables.extraCount);
}

TEST(Search, SingleByteOrUnit) {
  const unsigned short units[] = {'a', 0x20AC, 'b', 0x20AC, 0};
  EXPECT_EQ(4U, strlen_utf16(units));
  EXPECT_EQ(units + 1, strchr_utf16(units, 0x20AC));
  EXPECT_EQ(units + 4, strchr_utf16(units, 0));
  EXPECT_EQ(nullptr, strchr_utf16(units, 'c'));
  EXPECT_EQ(nullptr, strchr_utf16(empty_string16, 'c'));
  const string_view text = "aXbxcx";
  for (std::size_t n = 0; n <= text.size(); ++n) {
    const string_view part = text.substr(0, n);
    const char* const end = text.data() + n;
    for (const char c : {'x', 'X', 'a', 'y'}) {
      EXPECT_EQ(part.find(c), at(part, strfind(text.data(), sizeOf(part), c)));
      EXPECT_EQ(part.rfind(c), at(part, strbchr(text.data(), end, c)));
      const char both[] = {c, static_cast<char>(c ^ 0x20), 0};
      EXPECT_EQ(part.find_first_of(both), at(part, strfind_i_ascii(text.data(), end, c)));
    }
  }
  EXPECT_EQ(nullptr, strbchr(text.data() + 1, text.data(), 'a'));
  EXPECT_EQ(nullptr, strbchr(nullptr, nullptr, 'x'));
  EXPECT_EQ(nullptr, strfind(nullptr, 0, 'x'));
  EXPECT_EQ(nullptr, strfind_i_ascii(nullptr, nullptr, 'y'));
  EXPECT_EQ(nullptr, strfind(nullptr, 0, "a", 1));
  EXPECT_EQ(nullptr, strfind_i_ascii(nullptr, 0, nullptr, 0));
  EXPECT_EQ(text.end(), strfind(text.data(), 6, nullptr, 0));
  EXPECT_EQ(text.end(), strfind_i_ascii(text.data(), 6, nullptr, 0));
}

// Null is an empty text; bytes count as unsigned.
TEST(Compare, Bytes) {
  const char* const texts[] = {nullptr, "", "a", "ab", "b", "\xFF"};
  for (const char* a : texts) {
    for (const char* b : texts) {
      const std::string own = a ? a : "";
      const std::string other = b ? b : "";
      const int expected = reference::sign(own.compare(other));
      EXPECT_EQ(expected, reference::sign(strcmp0(a, b))) << own << " and " << other;
      EXPECT_EQ(reference::compareNoCase(own, other), strcmp_i_ascii(a, b)) << own;
      EXPECT_EQ(expected, reference::sign(strcompare(a, sizeOf(own), b, sizeOf(other)))) << own;
      EXPECT_EQ(expected == 0, streq(a, sizeOf(own), b, sizeOf(other))) << own;
    }
  }
  EXPECT_EQ(0, strcompare("ab\0c", 4, "ab\0c", 4));
  EXPECT_TRUE(streq("abc", 3, "abcd", 3));
  EXPECT_FALSE(streq("ab\0c", 4, "ab\0d", 4));
  EXPECT_TRUE(streq_i_ascii(nullptr, 0, nullptr, 0));
}

TEST(Copy, IntoBuffer) {
  const struct {
    unsigned int room;
    string_view source, expected;
  } rows[] = {
      {4, "abcdef", "abc\0"sv}, {6, "ab", "ab\0\0\0\0"sv}, {1, "abc", "\0"sv}, {3, "", "\0\0\0"sv}};
  const GuardedBuffer memory(16);
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
  EXPECT_EQ(nullptr, strnew(static_cast<const char*>(nullptr), 5));

  const unsigned short euro[] = {'a', 0x20AC, 0xE9, 0};
  const std::unique_ptr<unsigned short[]> units(strnew16(euro, 2));
  EXPECT_EQ(reference::Units({'a', 0x20AC, 0}), reference::Units(units.get(), units.get() + 3));
  EXPECT_EQ(nullptr, strnew16(static_cast<const unsigned short*>(nullptr), 5));

  EXPECT_EQ(nullptr, strnew(static_cast<const unsigned short*>(nullptr), euro));
  EXPECT_EQ(nullptr, strnew16(static_cast<const char*>(nullptr), "x"));
}

// One unit per character start, whatever the text holds.
TEST(Copy, ToUtf16OfMalformedText) {
  const struct {
    string_view text;
    reference::Units expected;
  } rows[] = {
      {"a\x80z", {'a', 0, 0}},  // a stray byte makes a unit but counts for none
      {"\x80\x81z", {1, 0}},    // the stray bytes at the start are one character
  };
  for (const auto& [text, expected] : rows) {
    const std::unique_ptr<unsigned short[]> units(strnew16(text.data(), text.data() + text.size()));
    EXPECT_EQ(expected, reference::Units(units.get(), units.get() + expected.size()));
  }
}

// Appends to the text "abc"; where memory runs out it stays.
TEST(Copy, Append) {
  const struct {
    const char *before, *add;
    unsigned int length;
    const char* after;
  } rows[] = {{nullptr, nullptr, 4, nullptr},
              {nullptr, "abc", 2, "ab"},
              {"abc", nullptr, 2, "abc"},
              {"abc", "de", 2, "abcde"},
              {"abc", "", 0, "abc"}};
  for (const auto& row : rows) {
    sweepAllocations([&](AllocSweep& sweep) {
      const unsigned int length = row.before ? 3 : 0;
      char* s = strnew(row.before, length);
      const bool done = sweep.attempt([&] { stradd(s, length, row.add, row.length); });
      EXPECT_STREQ(done ? row.after : row.before, s);
      delete[] s;
    });
  }
  char* s = strnew("abcde", 5);
  stradd(s, 5, s + 1, 3);  // from its own text
  EXPECT_STREQ("abcdebcd", s);
  stradd(s, 2, "", 0);  // the length is trusted
  EXPECT_STREQ("ab", s);
  EXPECT_THROW(stradd(s, 2, "x", UINT_MAX - 1), std::bad_alloc);
  EXPECT_THROW(stradd(s, 2, "x", INT_MAX - 2), std::bad_alloc);
  EXPECT_STREQ("ab", s);
  delete[] s;
  EXPECT_THROW(strnew("x", UINT_MAX), std::bad_alloc);
  EXPECT_THROW(strnew16(empty_string16, INT_MAX / 2 + 1), std::bad_alloc);
}

/// Maps every element at once, and none of an empty range.
template <class Char, class Map, std::size_t N>
void expectMapped(Map map, const Char (&table)[N]) {
  using Element = std::conditional_t<sizeof(Char) == 1, char, Char>;
  std::vector<Element> all(N);
  std::iota(all.begin(), all.end(), Element{});
  Element* const begin = all.data();
  Element* const inside = begin + N / 2;
  EXPECT_EQ(inside, map(inside, inside));
  EXPECT_EQ(inside, map(inside, begin));
  EXPECT_EQ(begin + N, map(begin, begin + N));
  for (std::size_t x = 0; x < N; ++x) ASSERT_EQ(static_cast<Element>(table[x]), all[x]) << x;
}

TEST(Case, EveryByteAndUnit) {
  expectMapped(strlw_ascii, chr_lower_table_ascii);
  expectMapped(strup_ascii, chr_upper_table_ascii);
  expectMapped(strlw_utf16, chr_lower_table_utf16);
  expectMapped(strup_utf16, chr_upper_table_utf16);
}

}  // namespace
