// Numbers and dates as text and back.

#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <optional>
#include <random>
#include <string>
#include <string_view>

#include "charproc.h"
#include "tests/support/guarded_buffer.h"
#include "tests/support/plain_numbers.h"

namespace {

using cc::test::GuardedBuffer;
using cc::test::inPlainLocale;
using std::string_view;
using namespace std::string_view_literals;

// ---------------------------------------------------------------------------- powers of two

TEST(Numbers, HexAndBinary) {
  constexpr unsigned int kept = 77;  // what a failure leaves
  const struct {
    bool (*parse)(const char*, unsigned int*);
    const char* text;
    bool expected;
    unsigned int value;
  } rows[] = {
      {strtohex, "1F", true, 31},
      {strtohex, "1f", true, 31},
      {strtohex, "1FH", true, 31},
      {strtohex, "1FHzz", true, 31},
      {strtohex, "0", true, 0},
      {strtohex, "abcdefAB", true, 0xABCDEFAB},
      {strtohex, "123456789", true, 0x23456789},
      {strtohex, "0x1F", false, kept},
      {strtohex, "1Fh", false, kept},
      {strtohex, "G", false, kept},
      {strtohex, "1 ", false, kept},
      {strtohex, "-1", false, kept},
      {strtohex, "/", false, kept},
      {strtohex, ":", false, kept},
      {strtohex, "@", false, kept},
      {strtohex, "`", false, kept},
      {strtohex, "\xC1", false, kept},
      {strtohex, "", false, 0},
      {strtohex, "H", false, 0},
      {strtobin, "101", true, 5},
      {strtobin, "101B", true, 5},
      {strtobin, "1B0", true, 1},
      {strtobin, "111111111111111111111111111111111", true, UINT_MAX},
      {strtobin, "102", false, kept},
      {strtobin, "10b", false, kept},
      {strtobin, "1H", false, kept},
      {strtobin, "", false, 0},
      {strtobin, "B", false, 0},
  };
  for (const auto& row : rows) {
    unsigned int value = kept;
    EXPECT_EQ(row.expected, row.parse(row.text, &value)) << row.text;
    EXPECT_EQ(row.value, value) << row.text;
  }
}

// ---------------------------------------------------------------------------- whole texts

template <class T>
struct Parsed {
  const char* text;
  std::optional<T> expected;
};

template <class T, std::size_t n>
void checkParser(bool (*parse)(const char*, T*), const Parsed<T> (&rows)[n]) {
  for (const auto& row : rows) {
    T value = 77;
    EXPECT_EQ(row.expected.has_value(), parse(row.text, &value)) << row.text;
    EXPECT_EQ(row.expected.value_or(77), value) << row.text;
  }
  T value = 77;
  EXPECT_FALSE(parse(nullptr, &value));
  for (const char* text : {"", " ", "-", "+", "12 ", "12a", "0x", "a", "--1", "1\n"}) {
    EXPECT_FALSE(parse(text, &value)) << text;
  }
  EXPECT_EQ(T{77}, value);
}

TEST(Numbers, Unsigned32) {
  checkParser<unsigned int>(strtouint, {{"0", 0},
                                        {" \t\n12", 12},
                                        {"+7", 7},
                                        {"010", 10},
                                        {"4294967295", UINT_MAX},
                                        {"4294967296", {}},
                                        {"-0", 0},
                                        {"-1", UINT_MAX},
                                        {" -4294967295", 1},
                                        {"-4294967296", {}},
                                        {"18446744073709551615", {}},
                                        {"-18446744073709551615", {}},
                                        {"18446744073709551616", {}}});
}

TEST(Numbers, Signed32) {
  checkParser<int>(strtoint, {{" 12", 12},
                              {"-0", 0},
                              {"2147483647", INT_MAX},
                              {"2147483648", {}},
                              {"-2147483648", INT_MIN},
                              {"-2147483649", {}},
                              {"4294967297", {}},
                              {"9223372036854775808", {}}});
}

TEST(Numbers, Wide) {
  checkParser<long long>(strtolonglong, {{"-5", -5},
                                         {"9223372036854775807", LLONG_MAX},
                                         {"9223372036854775808", {}},
                                         {"-9223372036854775808", LLONG_MIN},
                                         {"-9223372036854775809", {}}});
  checkParser<unsigned long long>(
      strtoqword,
      {{"18446744073709551615", ULLONG_MAX}, {"18446744073709551616", {}}, {"-1", ULLONG_MAX}});
}

TEST(Numbers, Double) {
  checkParser<double>(strtodouble, {{"1.5", 1.5},
                                    {" -2e3", -2000},
                                    {"0x1p4", 16},
                                    {".5", 0.5},
                                    {"inf", HUGE_VAL},
                                    {"1,5", {}},
                                    {"1e999", {}},
                                    {"1.5x", {}}});
  double value = 0;
  EXPECT_TRUE(strtodouble("nan", &value));
  EXPECT_TRUE(std::isnan(value));
}

TEST(Numbers, ParsersKeepErrno) {
  int value = 0;
  errno = EDOM;
  EXPECT_TRUE(strtoint("5", &value));
  EXPECT_FALSE(strtoint("99999999999999999999", &value));
  EXPECT_EQ(EDOM, errno);
}

// ---------------------------------------------------------------------------- ranges

template <class T>
std::optional<T> parsed(bool (*parse)(const char*, const char*, T&), string_view text) {
  // Nothing is read on either side.
  static const GuardedBuffer memory(64);
  std::optional<T> result;
  for (const char* s : {memory.atEnd(text), memory.atBegin(text)}) {
    T value = 77;
    const bool good = parse(s, s + text.size(), value);
    EXPECT_TRUE(good || value == 77) << text;
    result = good ? std::optional<T>(value) : std::nullopt;
  }
  return result;
}

TEST(Numbers, Ranges) {
  const struct {
    string_view text;
    std::optional<long long> narrow, wide;
  } rows[] = {
      {"-42", -42, -42},
      {"+7", 7, 7},
      {"0", 0, 0},
      {"-0", 0, 0},
      {"12345678", 12345678, 12345678},
      {"123456789", 123456789, 123456789},
      {"2147483647", INT_MAX, INT_MAX},
      {"-2147483647", -INT_MAX, -INT_MAX},
      {"2147483648", {}, 2147483648},
      {"-2147483648", {}, -2147483648},
      {"5000000000", {}, 5000000000},
      {"9223372036854775807", {}, LLONG_MAX},
      {"-9223372036854775807", {}, -LLONG_MAX},
      {"9223372036854775808", {}, {}},
      {"-9223372036854775808", {}, {}},
      {"10000000000000000000", {}, {}},
      {"18446744073709551617", {}, {}},
      {"42000000000000000000", {}, {}},
      {"99999999999999999999", {}, {}},
      // 20 characters are the most, the sign included.
      {"00000000000000000005", 5, 5},
      {"-0000000000000000005", -5, -5},
      {"000000000000000000005", {}, {}},
      {"-00000000000000000005", {}, {}},
      // No number.
      {"", {}, {}},
      {"-", {}, {}},
      {"+", {}, {}},
      {"+-1", {}, {}},
      {"12a", {}, {}},
      {" 12", {}, {}},
      {"12 ", {}, {}},
      {"1234567/", {}, {}},
      {"1234567:", {}, {}},
      {"12345678901234\xB0", {}, {}},
      {"1\0002"sv, {}, {}},
  };
  for (const auto& row : rows) {
    const std::optional<int> narrow = parsed<int>(strtoint, row.text);
    EXPECT_EQ(row.narrow.has_value(), narrow.has_value()) << row.text;
    EXPECT_EQ(row.narrow.value_or(-1), narrow.value_or(-1)) << row.text;
    EXPECT_EQ(row.wide, parsed<long long>(strtoint64, row.text)) << row.text;
  }
  int value = 77;
  const char digit[] = "1";
  EXPECT_FALSE(strtoint(nullptr, digit, value));
  EXPECT_FALSE(strtoint(digit + 1, digit, value));
  EXPECT_EQ(77, value);
}

// Every length and sign of random numbers, and each with one wrong byte in each place.
TEST(Numbers, RangesOfRandomDigits) {
  std::mt19937_64 random(5);
  for (int round = 0; round < 20000; ++round) {
    const long long number = static_cast<long long>(random() >> (1 + random() % 63));
    const bool negative = random() % 2 == 0;
    std::string text = (negative ? "-" : "") + std::to_string(number);
    ASSERT_EQ(negative ? -number : number, parsed<long long>(strtoint64, text)) << text;
    const std::optional<int> narrow = parsed<int>(strtoint, text);
    ASSERT_EQ(number <= INT_MAX, narrow.has_value()) << text;
    if (narrow) {
      ASSERT_EQ(negative ? -number : number, *narrow);
    }
    const auto place =
        static_cast<std::size_t>(negative + random() % (text.size() - (negative ? 1 : 0)));
    char wrong = static_cast<char>(random() % 256);
    if (wrong >= '0' && wrong <= '9') wrong = '-';
    if (place == 0 && (wrong == '-' || wrong == '+')) continue;
    text[place] = wrong;
    ASSERT_EQ(std::nullopt, parsed<long long>(strtoint64, text)) << text;
  }
}

TEST(Numbers, Fields) {
  const struct {
    string_view text;
    int limit;
    bool expected;
    unsigned int value;
    std::size_t position;
  } rows[] = {
      {"192.168.1.1", 3, true, 192, 4},
      {"1924.", 3, false, 77, 0},
      {"1924", 3, true, 1924, 4},
      {"19245", 3, false, 77, 0},
      {"", 3, true, 0, 0},
      {"", -1, true, 0, 0},
      {".5", 3, false, 77, 0},
      {"x", 3, false, 77, 0},
      {"1x", 3, false, 77, 0},
      {"5", 0, true, 5, 1},
      {"5.", 0, false, 77, 0},
      {"5", -1, false, 77, 0},
      {"7.", 1, true, 7, 2},
      {"4294967296", 20, true, 0, 10},
  };
  for (const auto& row : rows) {
    const GuardedBuffer memory(row.text);
    const char* p = memory.begin();
    unsigned int value = 77;
    EXPECT_EQ(row.expected, strtonumber(p, memory.end(), value, row.limit, '.')) << row.text;
    EXPECT_EQ(row.value, value) << row.text;
    EXPECT_EQ(memory.begin() + row.position, p) << row.text;
  }
  const char text[] = "12";
  const char* p = text + 1;
  unsigned int value = 77;
  EXPECT_TRUE(strtonumber(p, text, value, 3, '.'));
  EXPECT_EQ(0U, value);
}

// ---------------------------------------------------------------------------- bytes

TEST(Numbers, TextToBytes) {
  const struct {
    string_view text;
    int n;
    string_view expected;
  } rows[] = {
      {"0aFf", 2, "\x0A\xFF"}, {"0aZf", 2, "\x0A\0"sv},     {"0a1Z0b", 3, "\x0A\0\0"sv},
      {"1\0"sv, 2, "\0\0"sv},  {"12\0"sv, 3, "\x12\0\0"sv}, {"", 0, ""},
      {"0g", 1, "\0"sv},       {"/0", 1, "\0"sv},           {"0:", 1, "\0"sv},
      {"@0", 1, "\0"sv},       {"G0", 1, "\0"sv},           {"`0", 1, "\0"sv},
      {"\xB0\xB1", 1, "\0"sv},
  };
  for (const auto& row : rows) {
    const GuardedBuffer text(row.text);
    std::string bytes(row.expected.size() + 1, '#');
    str2bin(text.begin(), bytes.data(), row.n);
    EXPECT_EQ(std::string(row.expected) + '#', bytes) << row.text;
  }
}

// Every length, every wrong byte in every place, against `printf`.
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
      }
      target.atEnd(text);
      str2bin(target.begin(), source.begin(), static_cast<int>(n));
      ASSERT_EQ(rest, string_view(source.begin(), n)) << text;
    }
  }
}

// A text that a terminator ends early is read no further.
TEST(Numbers, TextToBytesStopsAtTheTerminator) {
  for (std::size_t digits = 0; digits <= 100; ++digits) {
    const GuardedBuffer text(std::string(digits, '5') + '\0');
    std::string bytes(64, '#');
    str2bin(text.begin(), bytes.data(), 64);
    EXPECT_EQ(std::string(digits / 2, '\x55') + std::string(64 - digits / 2, '\0'), bytes);
  }
}

// ---------------------------------------------------------------------------- dates

TEST(Numbers, Dates) {
  const char* old = std::getenv("TZ");
  const std::string saved = old ? old : "";
  setenv("TZ", "XYZ-3", 1);
  tzset();
  const struct {
    bool (*format)(long, char*, int);
    long time;
    int room;
    const char* expected;  // null for a failure
  } rows[] = {
      {sprintf_date, 1794827109, 64, "11/16/26"},
      {sprintf_date_time, 1794827109, 64, "11/16/26 14:05:09"},
      {sprintf_date_time, 0, 64, "01/01/70 03:00:00"},
      {sprintf_date_time, -1, 64, "01/01/70 02:59:59"},
      {sprintf_date, 1794827109, 9, "11/16/26"},
      {sprintf_date, 1794827109, 8, nullptr},
      {sprintf_date, 1794827109, 1, nullptr},
      {sprintf_date_time, 1794827109, 17, nullptr},
  };
  for (const auto& row : rows) {
    std::string text(static_cast<std::size_t>(row.room) + 1, '#');
    EXPECT_EQ(row.expected != nullptr,
              inPlainLocale([&] { return row.format(row.time, text.data(), row.room); }));
    EXPECT_STREQ(row.expected ? row.expected : "", text.c_str());
    EXPECT_EQ('#', text.back());
  }
  if (sizeof(long) == 8) {  // the calendar of narrower times has no end
    char text[64] = "#";
    EXPECT_FALSE(sprintf_date(LONG_MAX, text, sizeof text));
    EXPECT_STREQ("", text);
    text[0] = '#';
    EXPECT_FALSE(sprintf_date_time(LONG_MIN, text, sizeof text));
    EXPECT_STREQ("", text);
  }
  if (old) {
    setenv("TZ", saved.c_str(), 1);
  } else {
    unsetenv("TZ");
  }
  tzset();
}

}  // namespace
