// The owned strings: conversions, aliasing, exact sizes, and every allocation failing once.

#include "charr.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>

#include "charproc.h"
#include "tests/support/alloc_sweep.h"
#include "tests/support/guarded_buffer.h"

using cc::test::AllocCount;
using cc::test::AllocSweep;
using cc::test::GuardedBuffer;
using cc::test::liveBlocks;
using cc::test::sweepAllocations;

namespace {

const unsigned short kUnits[] = {'a', 0x0430, 0x20AC, 0};  // 'a', Cyrillic 'a', the euro sign
const char kBytes[] = "a\xD0\xB0\xE2\x82\xAC";
const char* const kNull = nullptr;
const unsigned short* const kNoUnits = nullptr;

std::string textOf(const ChArr& s) { return s.get() ? s.get() : "(null)"; }

std::u16string textOf(const ChArr16& s) {
  if (!s.get()) return u"(null)";
  return {s.get(), s.get() + s.length()};
}

TEST(ChArr, NullIsNoString) {
  const ChArr none;
  EXPECT_EQ(nullptr, none.get());
  EXPECT_EQ(empty_string, none.c_str());
  EXPECT_EQ(0u, none.length());
  EXPECT_TRUE(none.isEmpty());
  const ChArr empty("");
  EXPECT_NE(nullptr, empty.get());
  EXPECT_TRUE(empty.isEmpty());
  const ChArr16 none16;
  EXPECT_EQ(empty_string16, none16.c_str());
  EXPECT_EQ(0u, none16.length());
  EXPECT_TRUE(none16.isEmpty());
}

// Each on the string "0123456789"; `own` is its text.
using S = ChArr&;
using P = const char*;
using S16 = ChArr16&;
using P16 = const unsigned short*;
TEST(ChArr, ReplacesItsText) {
  const struct {
    void (*call)(ChArr& s, const char* own);
    std::string result;
  } rows[] = {
      {[](S s, P) { s = "new"; }, "new"},
      {[](S s, P) { s = kNull; }, "(null)"},
      {[](S s, P own) { s = own; }, "0123456789"},
      {[](S s, P own) { s = own + 2; }, "23456789"},
      {[](S s, P own) { s = own + 10; }, ""},
      {[](S s, P) { s = static_cast<const ChArr&>(s); }, "0123456789"},
      {[](S s, P) { s = static_cast<ChArr&&>(s); }, "0123456789"},
      {[](S s, P) { s.stealFrom(s); }, "0123456789"},
      {[](S s, P) { s = static_cast<const ChArr&>(ChArr()); }, "(null)"},
      {[](S s, P) { s = kUnits; }, kBytes},
      {[](S s, P) { s = kNoUnits; }, "(null)"},
      {[](S s, P) { s.assign("abcdef", 3); }, "abc"},
      {[](S s, P own) { s.assign(own, own + 3); }, "0123456789"},
      {[](S s, P own) { s.assign(own, 3); }, "0123456789"},
      {[](S s, P own) { s.assign(own + 1, own + 4); }, "123"},
      {[](S s, P) { s.assign(kNull, kNull); }, "(null)"},
      {[](S s, P) { s.assign(kNull, 3); }, "(null)"},
      {[](S s, P) { s.assign(kUnits, 2); }, "a\xD0\xB0"},
      {[](S s, P) { s.assign(kNoUnits, 2); }, "(null)"},
      {[](S s, P) { s.assign(kUnits + 1, kUnits + 3); }, kBytes + 1},
      {[](S s, P) { s.assign(kUnits, kUnits); }, ""},
      {[](S s, P) { s += "ab"; }, "0123456789ab"},
      {[](S s, P own) { s += own + 7; }, "0123456789789"},
      {[](S s, P own) { s += own; }, "01234567890123456789"},
      {[](S s, P) { s += nullptr; }, "0123456789"},
      {[](S s, P) { s.insert("ab"); }, "ab0123456789"},
      {[](S s, P own) { s.insert(own + 7); }, "7890123456789"},
      {[](S s, P) { s.insert(""); }, "0123456789"},
      {[](S s, P) { s.insert(nullptr); }, "0123456789"},
      {[](S s, P) { s.format("%d-%s %.1f", 5, "x", 0.5); }, "5-x 0.5"},
      {[](S s, P own) { s.format("<%s>", own + 8); }, "<89>"},
      {[](S s, P) { s.assign1251("\xC0\xE1", 2); }, "\xD0\x90\xD0\xB1"},
      {[](S s, P own) { s.assign1251(own + 3, 3); }, "345"},
      {[](S s, P) { s.assign1251(nullptr, 0); }, ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    sweepAllocations([&](AllocSweep& sweep) {
      ChArr s("0123456789");
      const bool done = sweep.attempt([&] { row.call(s, s.get()); });
      EXPECT_EQ(done ? row.result : "0123456789", textOf(s));
    });
  }
}

TEST(ChArr, GrowsFromNothing) {
  const struct {
    void (*call)(ChArr& s);
    std::string result;
  } rows[] = {
      {[](ChArr& s) { s += "ab"; }, "ab"},          {[](ChArr& s) { s += ""; }, ""},
      {[](ChArr& s) { s += nullptr; }, "(null)"},   {[](ChArr& s) { s.insert("ab"); }, "ab"},
      {[](ChArr& s) { s.insert(""); }, "(null)"},   {[](ChArr& s) { s.assign("", 0); }, ""},
      {[](ChArr& s) { s.stealFrom(s); }, "(null)"},
  };
  for (const auto& row : rows) {
    ChArr s;
    row.call(s);
    EXPECT_EQ(row.result, textOf(s));
  }
}

TEST(ChArr, AssignmentFromAnotherFreesFirst) {
  const ChArr other("the other text");
  const ChArr16 other16(kUnits);
  sweepAllocations([&](AllocSweep& sweep) {
    ChArr s("old");
    const bool done = sweep.attempt([&] { s = other; });
    EXPECT_EQ(done ? "the other text" : "(null)", textOf(s));
  });
  sweepAllocations([&](AllocSweep& sweep) {
    ChArr16 s(kUnits + 1);
    const bool done = sweep.attempt([&] { s = other16; });
    EXPECT_EQ(done ? textOf(other16) : u"(null)", textOf(s));
  });
  sweepAllocations([&](AllocSweep& sweep) {
    sweep.attempt([&] { const ChArr s("a"); });
    sweep.attempt([&] { EXPECT_TRUE(ChArr(other).get()); });
    sweep.attempt([&] { const ChArr16 s(kUnits); });
    sweep.attempt([&] { EXPECT_TRUE(ChArr16(other16).get()); });
  });
}

// What a move leaves behind is looked at on purpose.
// NOLINTBEGIN(bugprone-use-after-move, clang-analyzer-cplusplus.Move)
TEST(ChArr, TakesAndHandsOverArrays) {
  const std::size_t before = liveBlocks();
  {
    ChArr a("text");
    const char* text = a.get();
    ChArr b(std::move(a));
    EXPECT_EQ(nullptr, a.get());
    a = std::move(b);
    b = "other";
    b.stealFrom(a);
    EXPECT_EQ(text, b.get());
    EXPECT_EQ(nullptr, a.get());
    char* stolen = b.steal();
    a.adopt(stolen);
    a.adopt(stolen);
    EXPECT_EQ("text", textOf(a));
    const ChArr copy(a);
    EXPECT_NE(copy.get(), a.get());
    EXPECT_EQ("text", textOf(copy));
    a.adopt(nullptr);
  }
  EXPECT_EQ(before, liveBlocks());
}
// NOLINTEND(bugprone-use-after-move, clang-analyzer-cplusplus.Move)

TEST(ChArr, AllocatesExactlyTheText) {
  void (*const rows[])(ChArr&) = {
      [](ChArr& s) { s = "12345"; },
      [](ChArr& s) { s.assign("12345xx", 5); },
      [](ChArr& s) { s.format("%05d", 12345); },
      [](ChArr& s) { s.assign1251("12345", 5); },
      [](ChArr& s) { s.insert("12345"); },
  };
  for (const auto& row : rows) {
    ChArr s;
    const AllocCount count;
    row(s);
    EXPECT_EQ(1u, count.blocks());
    EXPECT_EQ(6u, count.bytes());
  }
  ChArr s("123");
  const AllocCount count;
  s += "";
  EXPECT_EQ(1u, count.blocks());
  EXPECT_EQ(4u, count.bytes());
}

TEST(ChArr, RefusesCountsThatNoTextHas) {
  ChArr s("old");
  EXPECT_THROW(s.assign("x", -1), std::bad_alloc);
  EXPECT_THROW(s.assign(kUnits, -1), std::bad_alloc);
  EXPECT_EQ("old", textOf(s));
}

TEST(ChArr, ReadsNothingOutsideOfARange) {
  const std::string text = "0123456789";
  for (std::size_t n = 0; n <= text.size(); ++n) {
    const GuardedBuffer memory(text.substr(0, n));
    ChArr s;
    s.assign(memory.begin(), memory.end());
    EXPECT_EQ(text.substr(0, n), textOf(s));
    s.assign(memory.begin(), static_cast<int>(n));
    EXPECT_EQ(text.substr(0, n), textOf(s));
    s.assign1251(memory.begin(), static_cast<int>(n));
    EXPECT_EQ(text.substr(0, n), textOf(s));
  }
}

TEST(ChArr, KeepsZeroBytesOfACount) {
  ChArr s;
  s.assign("a\0b", 3);
  EXPECT_EQ(std::string("a\0b\0", 4), std::string(s.get(), 4));
  EXPECT_EQ(1u, s.length());
}

TEST(ChArr, CutsFormattedText) {
  const std::string text(5000, 'x');
  ChArr s;
  for (const std::size_t n : {std::size_t{0}, std::size_t{4094}, std::size_t{4095},
                              std::size_t{4096}, std::size_t{5000}}) {
    s.format("%s", text.substr(0, n).c_str());
    EXPECT_EQ(text.substr(0, std::min<std::size_t>(n, 4095)), textOf(s));
  }
}

TEST(ChArr, IsEmptyWhereTextCannotBeFormatted) {
  const locale_t plain = ::newlocale(LC_ALL_MASK, "C", nullptr);
  const locale_t own = ::uselocale(plain);
  const wchar_t wide[] = {'a', 0x0430, 0};  // which the plain locale cannot write
  char direct[16];
  ASSERT_LT(std::snprintf(direct, sizeof direct, "ab%ls", wide), 0);
  ChArr s("old");
  s.format("ab%ls", wide);
  EXPECT_EQ("", textOf(s));
  ::uselocale(own);
  ::freelocale(plain);
}

// The 128 upper bytes in order, row by row of the code page.
TEST(ChArr, KnowsWindows1251) {
  const char* const rows[] = {
      "ЂЃ‚ѓ„…†‡€‰Љ‹ЊЌЋЏ", "ђ‘’“”•–— ™љ›њќћџ", "\xC2\xA0ЎўЈ¤Ґ¦§Ё©Є«¬\xC2\xAD®Ї",
      "°±Ііґµ¶·ё№є»јЅѕї", "АБВГДЕЖЗИЙКЛМНОП", "РСТУФХЦЧШЩЪЫЬЭЮЯ",
      "абвгдежзийклмноп", "рстуфхцчшщъыьэюя",
  };
  for (int row = 0; row < 8; ++row) {
    char bytes[16];
    for (int i = 0; i < 16; ++i) bytes[i] = static_cast<char>(0x80 + 16 * row + i);
    ChArr s;
    s.assign1251(bytes, 16);
    EXPECT_EQ(rows[row], textOf(s));
  }
  for (int byte = 0; byte < 0x80; ++byte) {
    const char c = static_cast<char>(byte);
    ChArr s;
    s.assign1251(&c, 1);
    EXPECT_EQ(c, s.get()[0]);
    EXPECT_EQ(0, s.get()[1]);
  }
}

// Each on the string of `kUnits`; `own` is its text.
TEST(ChArr16, ReplacesItsText) {
  const std::u16string whole = u"a\u0430\u20AC";
  const struct {
    void (*call)(ChArr16& s, const unsigned short* own);
    std::u16string result;
  } rows[] = {
      {[](S16 s, P16 own) { s = own; }, whole},
      {[](S16 s, P16 own) { s = own + 1; }, u"\u0430\u20AC"},
      {[](S16 s, P16) { s = kNoUnits; }, u"(null)"},
      {[](S16 s, P16) { s = kBytes + 1; }, u"\u0430\u20AC"},
      {[](S16 s, P16) { s = kNull; }, u"(null)"},
      {[](S16 s, P16) { s = static_cast<const ChArr16&>(s); }, whole},
      {[](S16 s, P16) {
         ChArr16 other(kUnits + 2);
         s = std::move(other);
       },
       u"\u20AC"},
      {[](S16 s, P16) { s.assign(kUnits + 1, kUnits + 2); }, u"\u0430"},
      {[](S16 s, P16 own) { s.assign(own, own + 1); }, whole},
      {[](S16 s, P16 own) { s.assign(own, 1); }, whole},
      {[](S16 s, P16 own) { s.assign(own + 1, own + 2); }, u"\u0430"},
      {[](S16 s, P16) { s.assign(nullptr, 3); }, u"(null)"},
      {[](S16 s, P16) { s.assign(kUnits, 2); }, u"a\u0430"},
      {[](S16 s, P16) { s.adopt(strnew16(kUnits, 1u)); }, u"a"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    sweepAllocations([&](AllocSweep& sweep) {
      ChArr16 swept(kUnits);
      const bool done = sweep.attempt([&] { row.call(swept, swept.get()); });
      EXPECT_EQ(done ? row.result : whole, textOf(swept));
    });
  }
}

}  // namespace
