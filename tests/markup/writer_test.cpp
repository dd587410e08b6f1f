// The writer: layouts, attributes, targets, and what the reader makes of the result.

#include <gtest/gtest.h>

#include <climits>
#include <clocale>
#include <cmath>
#include <cstring>
#include <ctime>
#include <functional>
#include <random>

#include "markup/escape.h"
#include "tests/files/messages.h"
#include "tests/markup/reader_trace.h"
#include "tests/support/alloc_sweep.h"
#include "tests/support/guarded_buffer.h"
#include "tests/support/plain_numbers.h"
#include "tests/support/temp_folder.h"

namespace {

using cc::test::fileBytes;
using cc::test::plainFormat;
using cc::test::TempFolder;

const PairTag rights[] = {{"r", 1}, {"w", 2}, {"x", 4}, {nullptr, 0}};
const PairTag overlapping[] = {{"none", 0}, {"rw", 3}, {"w<", 2}, {"top", INT_MIN}, {nullptr, 0}};

const char letters[] = "abc";

using Out = MLDocOut&;
using Script = std::function<void(Out)>;

// What a script writes to a bag.
std::string written(const Script& script, bool multiLine = false) {
  Bag bag;
  MLDocOut out;
  out.multiLine = multiLine;
  out.begin(&bag);
  script(out);
  out.end();
  return {bag.getBuffer(), static_cast<std::size_t>(bag.getSize())};
}

void writeExample(MLDocOut& out) {
  out.beginItem("root");
  out.writeIntAttr("n", 5, false);
  out.beginChildren();
  out.beginItem("item");
  out.writeStrAttr("s", "a<b", false);
  out.endItem(nullptr);
  out.endItem("root");
}

TEST(Writer, BothLayouts) {
  EXPECT_EQ("<root\n\tn=\"5\"\n\t>\n\t<item\n\t\ts=\"a&lt;b\"\n\t/>\n</root>\n",
            written(writeExample, true));
  EXPECT_EQ("<root n=\"5\">\n\t<item s=\"a&lt;b\"/>\n</root>\n", written(writeExample, false));
  EXPECT_EQ("<root n=\"5\">\r\n  <item s=\"a&lt;b\"/>\r\n</root>\r\n", written([](Out out) {
              out.newLine = "\r\n";
              out.indentSize = 2;
              writeExample(out);
            }));
}

TEST(Writer, Attributes) {
  const struct {
    const char* expected;
    Script script;
  } rows[] = {
      // Integers.
      {" a=\"0\"", [](Out out) { out.writeUIntAttr("a", 0, false); }},
      {"", [](Out out) { out.writeUIntAttr("a", 0, true); }},
      {" a=\"4294967295\"", [](Out out) { out.writeUIntAttr("a", UINT_MAX, true); }},
      {" a=\"-2147483648\"", [](Out out) { out.writeIntAttr("a", INT_MIN, true); }},
      {"", [](Out out) { out.writeIntAttr("a", 0, true); }},
      // Doubles.
      {" d=\"2.500000\"", [](Out out) { out.writeDoubleAttr("d", 2.5, true); }},
      {" d=\"8.000000\"", [](Out out) { out.writeDoubleAttr("d", 7.9999999, true); }},
      {" d=\"-0.000000\"", [](Out out) { out.writeDoubleAttr("d", -0.0, false); }},
      {"", [](Out out) { out.writeDoubleAttr("d", -0.0, true); }},
      {" d=\"nan\"", [](Out out) { out.writeDoubleAttr("d", std::nan(""), true); }},
      {" d=\"-inf\"", [](Out out) { out.writeDoubleAttr("d", -HUGE_VAL, true); }},
      // Dates.
      {" t=\"1970-01-02T00:00:00\"", [](Out out) { out.writeDateAttr("t", 86400, true); }},
      {" t=\"1970-01-01T00:00:00\"", [](Out out) { out.writeDateAttr("t", 0, false); }},
      {"", [](Out out) { out.writeDateAttr("t", 0, true); }},
      {" t=\"1969-12-31T23:59:59\"", [](Out out) { out.writeDateAttr("t", -1, true); }},
      {" t=\"2000-02-29T12:34:56\"", [](Out out) { out.writeDateAttr("t", 951827696, true); }},
      // Texts.
      {"", [](Out out) { out.writeStrAttr("s", "", true); }},
      {"", [](Out out) { out.writeStrAttr("s", nullptr, true); }},
      {" s=\"\"", [](Out out) { out.writeStrAttr("s", "", false); }},
      {" s=\"\"", [](Out out) { out.writeStrAttr("s", nullptr, false); }},
      {" s=\"&quot;&apos;&amp;&lt;&gt;\n\xC3\"",
       [](Out out) { out.writeStrAttr("s", "\"'&<>\n\xC3", true); }},
      {" s=\"b\"", [](Out out) { out.writePairAttr("s", ChPair(letters + 1, letters + 2)); }},
      {" s=\"\"", [](Out out) { out.writePairAttr("s", ChPair()); }},
      // Tables.
      {" e=\"w\"", [](Out out) { out.writeEnumAttr("e", 2, rights); }},
      {"", [](Out out) { out.writeEnumAttr("e", 3, rights); }},
      {" e=\"w<\"", [](Out out) { out.writeEnumAttr("e", 2, overlapping); }},
      {" e=\"top\"", [](Out out) { out.writeEnumAttr("e", 1U << 31, overlapping); }},
      {" f=\"r w x\"", [](Out out) { out.writeFlagsAttr("f", 7, rights); }},
      {" f=\"r x\"", [](Out out) { out.writeFlagsAttr("f", 5, rights); }},
      {" f=\"\"", [](Out out) { out.writeFlagsAttr("f", 0, rights); }},
      {" f=\"\"", [](Out out) { out.writeFlagsAttr("f", 8, rights); }},
      {" f=\"rw top\"", [](Out out) { out.writeFlagsAttr("f", 0x80000002U, overlapping); }},
      {" f=\"\"", [](Out out) { out.writeFlagsAttr("f", 7, rights + 3); }},
      // Raw output.
      {"abc\n", [](Out out) { out.writeLn("abc"); }},
      {"\n", [](Out out) { out.writeLn(nullptr); }},
      {"", [](Out out) { out.write(nullptr); }},
      {"ab", [](Out out) { out.write("abc", 2); }},
      {"7 x", [](Out out) { out.writef("%d %s", 7, "x"); }},
      {"a&lt;b", [](Out out) { out.writeEscaped("a<b"); }},
      {"", [](Out out) { out.writeEscaped(nullptr); }},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(row.expected, written(row.script));
    // On lines of their own they stand at the level, and end with a line break.
    const std::string attribute = row.expected;
    if (attribute[0] != ' ') continue;
    EXPECT_EQ(attribute.substr(1) + "\n", written(row.script, true));
  }
}

TEST(Writer, IndentsByTheLevel) {
  for (const int size : {0, -1, 1, 2, 700}) {
    std::string expected;
    const std::string unit = size > 0 ? std::string(static_cast<std::size_t>(size), ' ') : "\t";
    std::string indent;
    for (int i = 0; i < 5; ++i, indent += unit) expected += indent + "<a>\n";
    expected += indent + "x";
    for (int i = 5; i > 0; --i) expected += indent.erase(0, unit.size()) + "</a>\n";
    EXPECT_EQ(expected, written([&](Out out) {
                out.indentSize = size;
                for (int i = 0; i < 5; ++i) {
                  out.beginItem("a");
                  out.beginChildren();
                }
                out.writeIndent();
                out.write("x");
                for (int i = 0; i < 5; ++i) out.endItem("a");
              }));
  }
  EXPECT_EQ("</a>\n</a>\n<b", written([](Out out) {
              out.endItem("a");
              out.endItem("a");
              out.beginItem("b");
            }))
      << "a negative level";
  Bag bag;
  MLDocOut out;
  out.begin(&bag);
  out.beginItem("a");
  out.beginItem("b");
  out.indentSize = INT_MAX;
  EXPECT_THROW(out.writeIndent(), std::bad_alloc);
}

TEST(Writer, CutsAsAFormattedTextIsCut) {
  const auto cut = [](const std::string& text) { return text.substr(0, 4095); };
  const auto check = [](const std::string& expected, const Script& script) {
    EXPECT_EQ(expected, written(script));
  };
  for (std::size_t length = 4080; length <= 4100; ++length) {
    const std::string n(length, 'n');
    check(" " + cut(n + "=\"12345\""), [&](Out out) { out.writeIntAttr(n.c_str(), 12345, true); });
    check(" " + cut(n + "=\"1.500000\""),
          [&](Out out) { out.writeDoubleAttr(n.c_str(), 1.5, true); });
    check(" " + cut(n + "=\"1970-01-01T00:00:00\""),
          [&](Out out) { out.writeDateAttr(n.c_str(), 0, false); });
    check(" " + cut(n + "=\"r\""), [&](Out out) { out.writeEnumAttr(n.c_str(), 1, rights); });
    check(" " + cut(n + "=\"") + "r w\"",
          [&](Out out) { out.writeFlagsAttr(n.c_str(), 3, rights); });
    check(" " + cut(n + "=\"") + "text\"",
          [&](Out out) { out.writeStrAttr(n.c_str(), "text", true); });
    check(cut("</" + n + ">") + "\n", [&](Out out) { out.endItem(n.c_str()); });
    check("<" + n + "", [&](Out out) { out.beginItem(n.c_str()); });
    check(cut(n), [&](Out out) { out.writef("%s", n.c_str()); });
  }
}

TEST(Writer, DoublesAsTheCLibraryPrintsThem) {
  std::mt19937_64 random(5);
  for (int i = 0; i < 100000; ++i) {
    const unsigned long long bits = random() >> (i % 3 == 0 ? 0 : i % 64);
    double value = 0;
    std::memcpy(&value, &bits, sizeof value);
    if (i % 2 == 0) value = static_cast<double>(static_cast<long long>(random())) / 2097152.0;
    const std::string expected = plainFormat(" d=\"%f\"", value);
    ASSERT_EQ(expected, written([&](Out out) { out.writeDoubleAttr("d", value, false); }));
  }
}

// The date as the C library's calendar has it; empty when there is none.
std::string plainDate(long time) {
  const std::time_t t = time;
  std::tm date{};
  if (!::gmtime_r(&t, &date)) return "";
  char text[100];
  std::snprintf(text, sizeof text, " t=\"%04u-%02u-%02uT%02u:%02u:%02u\"",
                static_cast<unsigned int>(date.tm_year) + 1900U,
                static_cast<unsigned int>(date.tm_mon) + 1, static_cast<unsigned int>(date.tm_mday),
                static_cast<unsigned int>(date.tm_hour), static_cast<unsigned int>(date.tm_min),
                static_cast<unsigned int>(date.tm_sec));
  return text;
}

TEST(Writer, DatesAsTheCLibraryHasThem) {
  const auto check = [](long time) {
    ASSERT_EQ(plainDate(time), written([&](Out out) { out.writeDateAttr("t", time, false); }))
        << time;
  };
  std::mt19937_64 random(6);
  for (int i = 0; i < 50000; ++i) {
    const int narrower = static_cast<int>(random() % (sizeof(long) * CHAR_BIT));
    check(static_cast<long>(random()) >> narrower);
  }
  // Every day of 500 years, and the limits.
  for (long long day = -91000; day < 91000; ++day) {
    const long long time = day * 86400 - (day & 1);
    if (time == static_cast<long>(time)) check(static_cast<long>(time));
  }
  for (const long time : {LONG_MIN, LONG_MIN + 1, LONG_MAX, LONG_MAX - 1}) check(time);
  // The first and the last time with a date, and negative years.
  for (const long long time :
       {-67768040609740800LL, 67768036191676799LL, -62167219201LL, -62198755201LL}) {
    for (int i = -1; i <= 1 && sizeof(long) == sizeof(long long); ++i) {
      check(static_cast<long>(time + i));
    }
  }
}

// The tests run with a decimal comma in the locale of the environment as well.
TEST(Writer, APointWhateverTheLocale) {
  std::setlocale(LC_NUMERIC, "");
  EXPECT_EQ(" d=\"2.500000\"", written([](Out out) { out.writeDoubleAttr("d", 2.5, false); }));
  EXPECT_STREQ("C", std::setlocale(LC_NUMERIC, nullptr));
}

TEST(EscapeString, EscapesIntoAnyString) {
  ChArr out("old");
  MLDocOut::escapeString("a\"b'c&d<e>f", out);
  EXPECT_STREQ("a&quot;b&apos;c&amp;d&lt;e&gt;f", out.get());
  MLDocOut::escapeString(out, out);
  EXPECT_STREQ("a&amp;quot;b&amp;apos;c&amp;amp;d&amp;lt;e&amp;gt;f", out.get());
  MLDocOut::escapeString("nothing in it is escaped", out);
  EXPECT_STREQ("nothing in it is escaped", out.get());
  MLDocOut::escapeString(ChPair(), out);
  EXPECT_EQ(nullptr, out.get());
  MLDocOut::escapeString("", out);
  EXPECT_EQ(nullptr, out.get());
  cc::test::sweepAllocations([](cc::test::AllocSweep& sweep) {
    ChArr text("old");
    const bool done = sweep.attempt([&] { MLDocOut::escapeString("<", text); });
    EXPECT_STREQ(done ? "&lt;" : "old", text.get());
  });
}

// Blocks, and what is left of them, against one byte after the other.
TEST(EscapeString, TextsOfEveryLength) {
  std::mt19937 random(9);
  const char* const bytes = "ab\"'&<>";
  for (std::size_t n = 0; n < 200; ++n) {
    for (const unsigned int kinds : {2U, 4U, 7U}) {
      std::string text;
      std::string expected;
      for (std::size_t i = 0; i < n; ++i) {
        const auto kind = static_cast<std::size_t>(random() % (random() % 5 ? 2 : kinds));
        text += bytes[kind];
        const char* const forms[] = {"a", "b", "&quot;", "&apos;", "&amp;", "&lt;", "&gt;"};
        expected += forms[kind];
      }
      const cc::test::GuardedBuffer source(text);
      const cc::test::GuardedBuffer target(std::string(expected.size(), ' '));
      ASSERT_EQ(expected.size(), cc::escapedLength(source.begin(), source.end())) << text;
      ASSERT_EQ(target.end(), cc::escapeText(source.begin(), source.end(), target.begin()));
      ASSERT_EQ(expected, std::string(target.begin(), target.end()));
    }
  }
  const std::string quotes(1000, '"');
  EXPECT_EQ(6000, cc::escapedLength(quotes.data(), quotes.data() + quotes.size()));
}

TEST(Writer, FileAndBagGetTheSame) {
  const TempFolder folder;
  const std::string path = folder / "out.xml";
  Bag bag;
  MLDocOut out;
  out.begin(&bag);
  EXPECT_TRUE(out.begin(path.c_str()));
  writeExample(out);
  out.end();
  const std::string expected = written(writeExample, true);
  EXPECT_EQ(expected, fileBytes(path));
  EXPECT_EQ(expected, std::string(bag.getBuffer(), static_cast<std::size_t>(bag.getSize())));
  // The bag stays; another file may follow, and without a target nothing is written.
  out.write("x");
  EXPECT_EQ(static_cast<int>(expected.size()) + 1, bag.getSize());
  out.begin(static_cast<Bag*>(nullptr));
  out.begin(path.c_str());
  out.write("y");
  out.end();
  out.end();
  out.write("z");
  EXPECT_EQ("y", fileBytes(path));
  EXPECT_EQ(static_cast<int>(expected.size()) + 1, bag.getSize());
}

TEST(Writer, AFailedAllocationLosesNothing) {
  const std::string value(3000, '<');
  const auto script = [&](Out out) {
    out.indentSize = 600;
    out.beginItem("a");
    out.beginChildren();
    out.beginItem("b");
    out.writeStrAttr("v", value.c_str(), false);
    out.beginChildren();
    out.beginItem("c");
    out.endItem(nullptr);
  };
  const std::string whole = written(script);
  cc::test::sweepAllocations([&](cc::test::AllocSweep& sweep) {
    Bag bag;
    MLDocOut out;
    out.multiLine = false;
    out.begin(&bag);
    const bool done = sweep.attempt([&] { script(out); });
    const std::string got(bag.getBuffer(), static_cast<std::size_t>(bag.getSize()));
    EXPECT_EQ(done, got == whole);
    EXPECT_EQ(whole.substr(0, got.size()), got);
  });
}

TEST(Writer, AllocatesOnlyForTheBag) {
  Bag bag;
  bag.expand(1 << 20);
  MLDocOut out;
  out.begin(&bag);
  const cc::test::AllocCount count;
  for (int i = 0; i < 100; ++i) writeExample(out);
  EXPECT_EQ(0U, count.blocks());
}

TEST(Writer, TheWorkIsLinearInTheLength) {
  // Bytes allocated, which is what growing storage has copied, for a byte of the document.
  const auto cost = [](int items) {
    const cc::test::AllocCount count;
    const std::size_t size = written([items](Out out) {
                               for (int i = 0; i < items; ++i) writeExample(out);
                             }).size();
    return static_cast<double>(count.bytes()) / static_cast<double>(size);
  };
  const double small = cost(2000);
  const double large = cost(200000);
  EXPECT_LT(large, 2 * small + 1) << small << " and " << large << " bytes for a byte";
}

}  // namespace
