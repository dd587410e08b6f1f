// Entities, integers and doubles of raw slices.

#include <gtest/gtest.h>

#include <bit>
#include <cerrno>
#include <climits>
#include <clocale>
#include <cstdint>
#include <cstring>

#include "tests/markup/reader_trace.h"
#include "tests/reference/number_model.h"
#include "tests/support/alloc_sweep.h"
#include "tests/support/parts.h"
#include "tests/support/plain_numbers.h"

namespace {

using cc::test::errorOf;
using cc::test::OpenDoc;
using cc::test::parts;
using cc::test::plainStrtod;

TEST(ConvertEscape, DecodesTheFiveEntitiesAndNoOther) {
  for (const std::string& source :
       parts("|plain \xC3\xA9 \xFF > \"'|a&lt;b&amp;&quot;c&apos;&gt;|&amp;lt;|&amp;&amp;|x&AMP;|"
             "&#65;|&|&;|&am p;|a&lt;x&l|&quo|&apos|&&amp;|&ltx;")) {
    for (std::size_t n = 0; n <= source.size(); ++n) {  // what follows may complete an entity
      OpenDoc doc;
      ChArr out("old");
      const ChPair slice(source.data(), source.data() + n);
      std::string expected;
      const int error = reference::unescape(source.substr(0, n), expected) ? -1 : 34;
      EXPECT_EQ(error, errorOf([&] { doc.convertEscape(slice, out); })) << source << n;
      EXPECT_EQ(expected + '\0', std::string(out.get(), expected.size() + 1)) << source << n;
    }
  }
  OpenDoc doc;
  ChArr out;
  doc.convertEscape(ChPair(), out);
  EXPECT_STREQ("", out.get());
  const char zero[] = "a\0b&lt;";
  doc.convertEscape(ChPair(zero, zero + 7), out);
  EXPECT_EQ(std::string("a\0b<\0", 5), std::string(out.get(), 5));
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
  EXPECT_EQ(-42, doc.getInt("-42"));
  EXPECT_EQ(LLONG_MAX, doc.getInt("+9223372036854775807"));
  for (const char* text : {"", "12a", " 1", "9223372036854775808"}) {
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

// A slice is read as `strtod` reads from its begin, bounded by nothing, if that ends where it does.
void compareDouble(const OpenDoc& doc, const std::string& text, const ChPair& slice) {
  const std::size_t begin = text.size() - std::strlen(slice.begin);
  char* stop = nullptr;
  errno = 0;
  const double expected = plainStrtod(text.c_str() + begin, &stop);
  const bool good = errno == 0 && !slice.isEmpty() && stop == text.c_str() + begin + slice.length();
  double value = 0;
  EXPECT_EQ(good ? -1 : 19, errorOf([&] { value = doc.getDouble(slice); })) << text << begin;
  EXPECT_EQ(good ? bitsOf(expected) : 0, bitsOf(value)) << text << begin;
}

TEST(GetDouble, EverySliceAsTheCLibraryReadsIt) {
  // Texts in which numbers go on, or only seem to.
  for (const std::string& text :
       parts("123|1.5e+10x|1e|1e+|0x1p+3|infinity|infinite|nan(a_1)|nan(a_1|-+1|1..2|<a b=\"2.5\">|"
             "0x.8|1e5.5|inf inf|0x1.8p|-2.5|+.5| \n 1|0X.8|-INF|NAN(ab_1)|1e-300|"
             "123456789012345678901234567890|2,5|--1|1_0|1.7976931348623157e308|"
             "4.9406564584124654e-324|-1e999|1e-999|1 ")) {
    OpenDoc doc(text + '\0');
    for (std::size_t begin = 0; begin <= text.size(); ++begin) {
      for (std::size_t end = begin; end <= text.size(); ++end) {
        compareDouble(doc, text, ChPair(doc.begin() + begin, doc.begin() + end));
      }
    }
    compareDouble(doc, text, ChPair(text.c_str()));
  }
  const OpenDoc doc;
  EXPECT_EQ(19, errorOf([&] { doc.getDouble(ChPair()); }));
  const char zero[] = {'1', 0, '2'};
  EXPECT_EQ(19, errorOf([&] { doc.getDouble(ChPair(zero, zero + 3)); }));
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
  const cc::test::TracedDoc blank(" \n");  // at an unreadable page
  EXPECT_EQ(19, errorOf([&] { blank.getDouble(ChPair(blank.begin(), blank.begin() + 1)); }));
}

// The tests run with a decimal comma in the locale of the process and of the thread as well.
TEST(GetDouble, APointWhateverTheLocale) {
  const OpenDoc doc;
  const locale_t own = ::uselocale(nullptr);
  std::setlocale(LC_NUMERIC, "");
  EXPECT_EQ(2.5, doc.getDouble("2.5"));
  EXPECT_STREQ("C", std::setlocale(LC_NUMERIC, nullptr));
  EXPECT_EQ(19, errorOf([&] { doc.getDouble("2,5"); }));
  EXPECT_EQ(own, ::uselocale(nullptr)) << "the thread's own locale stays";
}

}  // namespace
