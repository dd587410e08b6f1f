// Entities, integers and doubles of raw slices.

#include <gtest/gtest.h>

#include <bit>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <random>

#include "tests/markup/comma_locale.h"
#include "tests/markup/reader_trace.h"
#include "tests/support/alloc_sweep.h"
#include "tests/support/plain_numbers.h"

// The C library never frees the path that it searches for locales.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();
const char* __lsan_default_suppressions() { return "leak:argz_add_sep"; }

namespace {

using cc::test::CommaLocale;
using cc::test::errorOf;
using cc::test::OpenDoc;
using cc::test::plainFormat;
using cc::test::plainStrtod;

TEST(ConvertEscape, DecodesTheFiveEntitiesAndNoOther) {
  const struct {
    std::string source;
    int error;
    std::string out;
  } rows[] = {
      {"", -1, ""},
      {"plain \xC3\xA9 \xFF > \"'", -1, "plain \xC3\xA9 \xFF > \"'"},
      {"a&lt;b&amp;&quot;c&apos;&gt;", -1, "a<b&\"c'>"},
      {"&amp;lt;", -1, "&lt;"},
      {"&amp;&amp;", -1, "&&"},
      {"x&AMP;", 34, "x"},
      {"&#65;", 34, ""},
      {"&", 34, ""},
      {"&;", 34, ""},
      {"&amp", 34, ""},
      {"&am p;", 34, ""},
      {"a&lt;x&l", 34, "a<x"},
      {"&quo", 34, ""},
      {"&apos", 34, ""},
      {std::string("a\0b&lt;", 7), -1, std::string("a\0b<", 4)},
  };
  for (const auto& row : rows) {
    OpenDoc doc;
    ChArr out("old");
    const ChPair source(row.source.data(), row.source.data() + row.source.size());
    EXPECT_EQ(row.error, errorOf([&] { doc.convertEscape(source, out); })) << row.source;
    EXPECT_EQ(row.out, std::string(out.get(), row.out.size())) << row.source;
    EXPECT_EQ(0, out.get()[row.out.size()]) << row.source;
  }
  OpenDoc doc;
  ChArr out;
  doc.convertEscape(ChPair(), out);
  EXPECT_STREQ("", out.get());
}

TEST(ConvertEscape, ASliceOfALongerTextEndsAtItsEnd) {
  // What stands behind the slice would complete the entity.
  const char* const text = "&quot;";
  for (int n = 1; n < 6; ++n) {
    OpenDoc doc;
    ChArr out;
    EXPECT_EQ(34, errorOf([&] { doc.convertEscape(ChPair(text, text + n), out); })) << n;
  }
}

TEST(ConvertEscape, TheSourceMayLieInTheResult) {
  OpenDoc doc;
  ChArr both("a&lt;b and more");
  doc.convertEscape(ChPair(both.get() + 1, both.get() + 6), both);
  EXPECT_STREQ("<b", both.get());
  both = "x&bad;";
  EXPECT_EQ(34, errorOf([&] { doc.convertEscape(both, both); }));
  EXPECT_STREQ("x", both.get());
}

TEST(ConvertEscape, AFailedAllocationLeavesTheResult) {
  cc::test::sweepAllocations([](cc::test::AllocSweep& sweep) {
    OpenDoc doc;
    ChArr out("old");
    const bool done = sweep.attempt([&] { doc.convertEscape("a&amp;b", out); });
    EXPECT_STREQ(done ? "a&b" : "old", out.get());
  });
}

TEST(GetInt, DecimalIntegersOf64Bits) {
  const OpenDoc doc;
  const struct {
    const char* text;
    long long value;
  } good[] = {
      {"0", 0},
      {"-42", -42},
      {"+7", 7},
      {"9223372036854775807", 9223372036854775807},
      {"-9223372036854775807", -9223372036854775807},
      {"00000000000000000005", 5},
  };
  for (const auto& row : good) EXPECT_EQ(row.value, doc.getInt(row.text)) << row.text;
  for (const char* text : {"", "+", "-", "12a", " 1", "1 ", "1.0", "9223372036854775808",
                           "000000000000000000005", "0x1"}) {
    EXPECT_EQ(20, errorOf([&] { doc.getInt(text); })) << text;
    EXPECT_EQ(20, errorOf([&] { doc.getCountOrInfinity(text); })) << text;
  }
  EXPECT_EQ(20, errorOf([&] { doc.getInt(ChPair()); }));
  EXPECT_EQ(-1, doc.getCountOrInfinity("-1"));
  EXPECT_EQ(5, doc.getCountOrInfinity("5"));
  EXPECT_EQ(1, doc.getCountOrInfinity("4294967297")) << "the low 32 bits";
  EXPECT_EQ(-1, doc.getCountOrInfinity("4294967295"));
}

std::uint64_t bitsOf(double value) { return std::bit_cast<std::uint64_t>(value); }

TEST(GetDouble, NumbersAsTheCLibraryReadsThem) {
  const OpenDoc doc;
  const char* const good[] = {"0",
                              "2.5",
                              "-2.5",
                              "+.5",
                              "5.",
                              " \n 1",
                              "1e3",
                              "1E-3",
                              "0x1p4",
                              "0X.8",
                              "inf",
                              "-INF",
                              "infinity",
                              "nan",
                              "NAN(ab_1)",
                              "1e-300",
                              "123456789012345678901234567890",
                              "0.1",
                              "1.7976931348623157e308",
                              "4.9406564584124654e-324"};
  for (const char* text : good) {
    char* end = nullptr;
    errno = 0;
    const double expected = plainStrtod(text, &end);
    if (errno != 0) {
      EXPECT_EQ(19, errorOf([&] { doc.getDouble(text); })) << text;
      continue;
    }
    ASSERT_EQ(0, *end) << text;
    const double value = doc.getDouble(text);
    EXPECT_EQ(bitsOf(expected), bitsOf(value)) << text;
  }
  for (const char* text : {"", " ", "2,5", "1e999", "-1e999", "1e-999", "12a", "1 ", "e5", ".",
                           "--1", "0x", "1e", "nan(", "infinit", "1_0"}) {
    EXPECT_EQ(19, errorOf([&] { doc.getDouble(text); })) << text;
  }
  EXPECT_EQ(19, errorOf([&] { doc.getDouble(ChPair()); }));
  const char zero[] = {'1', 0, '2'};
  EXPECT_EQ(19, errorOf([&] { doc.getDouble(ChPair(zero, zero + 3)); }));
}

// What the promised conversion gives: `strtod` from the slice's begin, bounded by nothing.
int plainError(const std::string& text, std::size_t begin, std::size_t end) {
  char* stop = nullptr;
  errno = 0;
  plainStrtod(text.c_str() + begin, &stop);
  return errno == 0 && begin != end && stop == text.c_str() + end ? -1 : 19;
}

TEST(GetDouble, ASliceInsideALongerNumberOfTheDocument) {
  // Every slice of texts in which numbers go on, or only seem to.
  const char* const texts[] = {
      "123",     "1.5e+10x", "1e",   "1e+",           "0x1p+3", "infinity", "infinite", "nan(a_1)",
      "nan(a_1", "-+1",      "1..2", "<a b=\"2.5\">", "0x.8",   "1e5.5",    "inf inf",  "0x1.8p"};
  for (const char* text : texts) {
    OpenDoc doc(text);
    const std::string all = text;
    for (std::size_t begin = 0; begin <= all.size(); ++begin) {
      for (std::size_t end = begin; end <= all.size(); ++end) {
        const ChPair slice(doc.begin() + begin, doc.begin() + end);
        EXPECT_EQ(plainError(all, begin, end), errorOf([&] { doc.getDouble(slice); }))
            << text << " [" << begin << "," << end << ")";
      }
    }
  }
}

TEST(GetDouble, ASliceOfOtherMemoryIsReadUpToItsEnd) {
  OpenDoc doc("<a/>");
  const std::string text = "123";
  EXPECT_EQ(12.0, doc.getDouble(ChPair(text.data(), text.data() + 2)));
  // Longer than any buffer on the stack, and inside the document with a long number behind it.
  const std::string digits(5000, '1');
  const std::string number = "0." + digits;
  EXPECT_EQ(plainStrtod(number.c_str()), doc.getDouble(number.c_str()));
  doc.put(number);
  EXPECT_EQ(plainStrtod(number.c_str()),
            doc.getDouble(ChPair(doc.begin(), doc.begin() + doc.size())));
  EXPECT_EQ(19, errorOf([&] { doc.getDouble(ChPair(doc.begin(), doc.begin() + 3)); }));
}

TEST(GetDouble, RandomNumbersBitForBit) {
  std::mt19937_64 random(20);
  const OpenDoc doc;
  for (int i = 0; i < 20000; ++i) {
    const unsigned long long bits = random();
    double value = 0;
    std::memcpy(&value, &bits, sizeof value);
    if (!std::isfinite(value) || std::fpclassify(value) == FP_SUBNORMAL) continue;
    const std::string text = plainFormat(i % 2 ? "%.17g" : "%a", value);
    const double read = doc.getDouble(text.c_str());
    ASSERT_EQ(bitsOf(value), bitsOf(read)) << text;
  }
}

TEST(GetDouble, APointWhateverTheLocale) {
  {
    const CommaLocale comma(CommaLocale::Process);
    ASSERT_TRUE(comma.isInForce());
    const OpenDoc doc;
    EXPECT_EQ(2.5, doc.getDouble("2.5"));
    EXPECT_STREQ("C", std::setlocale(LC_NUMERIC, nullptr));
    EXPECT_EQ(19, errorOf([&] { doc.getDouble("2,5"); }));
  }
  const CommaLocale comma(CommaLocale::Thread);
  ASSERT_TRUE(comma.isInForce());
  const OpenDoc doc;
  EXPECT_EQ(2.5, doc.getDouble("2.5"));
  EXPECT_EQ(19, errorOf([&] { doc.getDouble("2,5"); }));
  EXPECT_TRUE(comma.isInForce()) << "the thread's own locale stays";
}

}  // namespace
