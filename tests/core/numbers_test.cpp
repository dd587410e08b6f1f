// Numbers and dates as text and back.

#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <random>
#include <string>
#include <string_view>

#include "charproc.h"
#include "tests/reference/number_model.h"
#include "tests/support/guarded_buffer.h"
#include "tests/support/parts.h"
#include "tests/support/plain_numbers.h"

namespace {

using namespace cc::test;
using reference::inRange;
using reference::wholeDigits;
using std::string_view;
using namespace std::string_view_literals;

// A parser gives what the model does, or fails and leaves its output alone.
template <class T, class Parse, class Expected>
void compare(const std::string& text, const std::optional<Expected>& expected, Parse parse) {
  T value = 77;
  EXPECT_EQ(expected.has_value(), parse(value)) << text;
  EXPECT_EQ(expected ? static_cast<T>(*expected) : T{77}, value) << text;
}

TEST(Numbers, WholeTexts) {
  for (const std::string& row : parts(
           " |-|+|12 |12a|0x|a|--1|1\n|0| \t\n12|+7|010|-0|-1|-5|4294967295|4294967296|4294967297|"
           " -4294967295|-4294967296|2147483647|2147483648|-2147483648|-2147483649|"
           "9223372036854775807|9223372036854775808|-9223372036854775808|-9223372036854775809|"
           "18446744073709551615|-18446744073709551615|18446744073709551616|1.5| -2e3|0x1p4|.5|inf|"
           "1,5|1e999|1.5x|1F|1f|1FH|1FHzz|abcdefAB|123456789|1Fh|G|/|:|@|`|\xC1|101|101B|1B0|"
           "111111111111111111111111111111111|102|10b|1H")) {
    const char* const s = row.c_str();
    compare<unsigned int>(s, wholeDigits(s, 16, 'H'), [s](auto& v) { return strtohex(s, &v); });
    compare<unsigned int>(s, wholeDigits(s, 2, 'B'), [s](auto& v) { return strtobin(s, &v); });
    const auto number = reference::wholeDecimal(s, true);
    compare<unsigned int>(s, inRange(number, UINT_MAX, UINT_MAX),
                          [s](auto& v) { return strtouint(s, &v); });
    compare<int>(s, inRange(number, INT_MAX + 1ULL, INT_MAX),
                 [s](auto& v) { return strtoint(s, &v); });
    compare<long long>(s, inRange(number, LLONG_MAX + 1ULL, LLONG_MAX),
                       [s](auto& v) { return strtolonglong(s, &v); });
    compare<unsigned long long>(s, inRange(number, ULLONG_MAX, ULLONG_MAX),
                                [s](auto& v) { return strtoqword(s, &v); });
    compare<double>(s, inPlainLocale([s] { return reference::wholeDouble(s, strlen(s)); }),
                    [s](auto& v) { return strtodouble(s, &v); });
  }
  for (const auto parse : {strtohex, strtobin}) {
    for (const char* text : {"", parse == strtohex ? "H" : "B"}) {
      unsigned int digits = 77;
      EXPECT_FALSE(parse(text, &digits));
      EXPECT_EQ(0U, digits) << "no digits, unlike wrong ones";
    }
  }
  double value = 0;
  EXPECT_TRUE(strtodouble("nan", &value));
  EXPECT_TRUE(std::isnan(value));
  const auto refusesNone = [](auto parse, auto unchanged) {
    EXPECT_FALSE(parse(nullptr, &unchanged) || parse("", &unchanged));
    EXPECT_EQ(7, unchanged);
  };
  refusesNone(strtouint, 7U);
  refusesNone(static_cast<bool (*)(const char*, int*)>(strtoint), 7);
  refusesNone(strtolonglong, 7LL);
  refusesNone(strtoqword, 7ULL);
  refusesNone(strtodouble, 7.0);
}

TEST(Numbers, ParsersKeepErrno) {
  int value = 0;
  errno = EDOM;
  EXPECT_TRUE(strtoint("5", &value));
  EXPECT_FALSE(strtoint("99999999999999999999", &value));
  EXPECT_EQ(EDOM, errno);
}

// Both parsers of ranges; nothing is read on either side.
void compareRanges(string_view text) {
  static const GuardedBuffer memory(64);
  auto number = reference::wholeDecimal(text, false);
  if (text.size() > 20) number.reset();  // the most characters, the sign included
  for (const char* s : {memory.atEnd(text), memory.atBegin(text)}) {
    const char* const end = s + text.size();
    const std::string shown(text);
    compare<int>(shown, inRange(number, INT_MAX, INT_MAX),
                 [&](auto& v) { return strtoint(s, end, v); });
    compare<long long>(shown, inRange(number, LLONG_MAX, LLONG_MAX),
                       [&](auto& v) { return strtoint64(s, end, v); });
  }
}

TEST(Numbers, Ranges) {
  for (const std::string& text : parts(
           "-42|+7|0|-0|12345678|123456789|2147483647|-2147483647|2147483648|-2147483648|"
           "9223372036854775807|-9223372036854775807|9223372036854775808|-9223372036854775808|"
           "10000000000000000000|18446744073709551617|42000000000000000000|99999999999999999999|"
           "00000000000000000005|-0000000000000000005|000000000000000000005|-00000000000000000005||"
           "-|+|+-1|12a| 12|12 |1234567/|1234567:|12345678901234\xB0")) {
    compareRanges(text);
  }
  compareRanges("1\0002"sv);
  int value = 77;
  const char digit[] = "1";
  EXPECT_FALSE(strtoint(nullptr, digit, value));
  EXPECT_FALSE(strtoint(digit + 1, digit, value));
  EXPECT_EQ(77, value);
  const char* p = digit + 1;
  unsigned int field = 77;
  EXPECT_TRUE(strtonumber(p, digit, field, 3, '.'));
  EXPECT_EQ(0U, field);

  std::mt19937_64 random(5);  // every length and sign, and each with one wrong byte in some place
  for (int round = 0; round < 20000; ++round) {
    std::string text = (random() % 2 ? "-" : "") + std::to_string(random() >> random() % 64);
    compareRanges(text);
    text[static_cast<std::size_t>(random()) % text.size()] = static_cast<char>(random());
    compareRanges(text);
  }
}

// Every length, every wrong byte in every place, against `printf`; behind a terminator nothing is
// read.
TEST(Numbers, BytesBothWays) {
  std::mt19937 random(7);
  for (std::size_t n = 0; n <= 150; ++n) {
    std::string bytes;
    std::string expected;
    for (std::size_t i = 0; i < n; ++i) {
      char two[3];
      const unsigned int byte = random() % 256;
      std::snprintf(two, sizeof two, "%02X", byte);
      bytes += static_cast<char>(byte);
      expected += two;
    }
    const GuardedBuffer source(bytes);
    const GuardedBuffer target(expected);
    std::memset(target.begin(), '#', 2 * n);
    bin2str(source.begin(), static_cast<int>(n), target.begin());
    ASSERT_EQ(expected, string_view(target.begin(), 2 * n));
    for (std::size_t wrong = 0; wrong <= 2 * n; ++wrong) {
      std::string text = expected;
      for (char& c : text) {
        if (random() % 2 == 0 && c >= 'A') c = static_cast<char>(c | 0x20);
      }
      std::string rest = bytes;
      if (wrong < 2 * n) {
        text[wrong] = "\0/:@G`g\x80\xFF"[random() % 9];
        rest.replace(wrong / 2, std::string::npos, n - wrong / 2, 0);
        if (text[wrong] == 0) text.resize(wrong + 1);
      }
      str2bin(target.atEnd(text), source.begin(), static_cast<int>(n));
      ASSERT_EQ(rest, string_view(source.begin(), n)) << text;
    }
  }
}

TEST(Numbers, Dates) {
  const bool wide = sizeof(long) == 8;  // the calendar of narrower times has no end
  const struct {
    const char* zone;  // that of the moment counts
    bool (*format)(long, char*, int);
    long time;
    int room;
    const char* expected;  // null for a failure
  } rows[] = {
      {"XYZ-3", sprintf_date, 1794827109, 64, "11/16/26"},
      {"XYZ-3", sprintf_date_time, 1794827109, 64, "11/16/26 14:05:09"},
      {"XYZ-3", sprintf_date_time, 0, 64, "01/01/70 03:00:00"},
      {"XYZ-3", sprintf_date_time, -1, 64, "01/01/70 02:59:59"},
      {"XYZ+2", sprintf_date_time, 0, 64, "12/31/69 22:00:00"},
      {"XYZ+2", sprintf_date, 1794827109, 9, "11/16/26"},
      {"XYZ+2", sprintf_date, 1794827109, 8, nullptr},
      {"XYZ+2", sprintf_date, 1794827109, 1, nullptr},
      {"XYZ+2", sprintf_date_time, 1794827109, 17, nullptr},
      {"XYZ+2", sprintf_date, LONG_MAX, 64, wide ? nullptr : "01/19/38"},
      {"XYZ+2", sprintf_date_time, LONG_MIN, 64, wide ? nullptr : "12/13/01 18:45:52"},
  };
  for (const auto& row : rows) {
    setenv("TZ", row.zone, 1);
    std::string text(static_cast<std::size_t>(row.room) + 1, '#');
    EXPECT_EQ(row.expected != nullptr,
              inPlainLocale([&] { return row.format(row.time, text.data(), row.room); }));
    EXPECT_STREQ(row.expected ? row.expected : "", text.c_str());
    EXPECT_EQ('#', text.back());
  }
  unsetenv("TZ");
}

}  // namespace
