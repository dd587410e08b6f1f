// The owned strings: conversions, aliasing, exact sizes, and every allocation failing once.

#include "charr.h"

#include <gtest/gtest.h>

#include <cstdarg>
#include <cstdio>

#include "charproc.h"
#include "tests/support/alloc_sweep.h"
#include "tests/support/guarded_buffer.h"
#include "tests/support/plain_numbers.h"

using namespace cc::test;

namespace {

const unsigned short kUnits[] = {'a', 0x0430, 0x20AC, 0};  // 'a', Cyrillic 'a', the euro sign
const char kBytes[] = "a\xD0\xB0\xE2\x82\xAC";
const char* const kNull = nullptr;
const unsigned short* const kNoUnits = nullptr;

std::string textOf(const ChArr& s) { return s.get() ? s.c_str() : "(null)"; }

std::u16string textOf(const ChArr16& s) {
  if (!s.get()) return u"(null)";
  return {s.c_str(), s.c_str() + s.length()};
}

TEST(ChArr, NullIsNoString) {
  const ChArr none;
  EXPECT_EQ(nullptr, none.get());
  EXPECT_EQ(empty_string, none.c_str());
  EXPECT_EQ(0u, none.length());
  EXPECT_TRUE(none.isEmpty());
  EXPECT_TRUE(ChArr("").isEmpty());
  EXPECT_FALSE(ChArr("x").isEmpty());
  const ChArr16 none16;
  EXPECT_EQ(empty_string16, none16.c_str());
  EXPECT_EQ(0u, none16.length());
  EXPECT_TRUE(none16.isEmpty());
}

void formatInto(ChArr& s, const char* format, ...) {
  va_list args;
  va_start(args, format);
  s.format_va(format, args);
  va_end(args);
}

/// Calls `call` on a copy of `start` and its text, with every allocation failing once: the string
/// is then `result`, in exactly the room it needs, or as it was.
template <class String, class Call, class Text>
void expectReplaced(const String& start, Call call, const Text& result) {
  sweepAllocations([&](AllocSweep& sweep) {
    String s(start);
    const AllocCount count;
    if (sweep.attempt([&] { call(s, s.get()); })) {
      const std::size_t room = count.blocks() * (s.length() + 1) * sizeof(*s.get());
      EXPECT_EQ(room, count.bytes());
      EXPECT_EQ(result, textOf(s));
    } else {
      EXPECT_EQ(textOf(start), textOf(s));
    }
  });
}

using S = ChArr&;
using P = const char*;
using S16 = ChArr16&;
using P16 = const unsigned short*;

// `own` is the text that the string starts with.
TEST(ChArr, ReplacesItsText) {
  const struct {
    void (*call)(ChArr& s, const char* own);
    std::string result;
    const char* start = "0123456789";
  } rows[] = {
      {[](S s, P) { s = kNull; }, "(null)"},
      {[](S s, P own) { s = own; }, "0123456789"},
      {[](S s, P own) { s = own + 2; }, "23456789"},
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
      {[](S s, P) { s += "ab"; }, "0123456789ab"},
      {[](S s, P own) { s += own + 7; }, "0123456789789"},
      {[](S s, P own) { s += own; }, "01234567890123456789"},
      {[](S s, P) { s += ""; }, "0123456789"},
      {[](S s, P) { s += nullptr; }, "0123456789"},
      {[](S s, P) { s.insert("ab"); }, "ab0123456789"},
      {[](S s, P own) { s.insert(own + 7); }, "7890123456789"},
      {[](S s, P) { s.insert(""); }, "0123456789"},
      {[](S s, P) { s.insert(nullptr); }, "0123456789"},
      {[](S s, P) { s.format("%d-%s %.1f", 5, "x", 0.5); }, "5-x 0.5"},
      {[](S s, P own) { formatInto(s, "<%s>%d", own + 8, 5); }, "<89>5"},
      {[](S s, P) { s.format("%04095d", 0); }, std::string(4095, '0')},
      {[](S s, P) { s.format("%05000d", 0); }, std::string(4095, '0')},
      {[](S s, P) { s.assign1251("\xC0\xE1", 2); }, "\xD0\x90\xD0\xB1"},
      {[](S s, P own) { s.assign1251(own + 3, 3); }, "345"},
      {[](S s, P) { s.assign1251(nullptr, 0); }, ""},
      {[](S s, P) { s += "ab"; }, "ab", kNull},
      {[](S s, P) { s += ""; }, "", kNull},
      {[](S s, P) { s += nullptr; }, "(null)", kNull},
      {[](S s, P) { s.insert("ab"); }, "ab", kNull},
      {[](S s, P) { s.insert(""); }, "(null)", kNull},
      {[](S s, P) { s.stealFrom(s); }, "(null)", kNull},
      // counts that no text has
      {[](S s, P) { s.assign("x", -1); }, "never"},
      {[](S s, P) { s.assign(kUnits, -1); }, "never"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    expectReplaced(ChArr(row.start), row.call, row.result);
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
      {[](S16 s, P16) { s = static_cast<ChArr16&&>(s); }, whole},
      {[](S16 s, P16) { s.assign(kUnits + 1, kUnits + 2); }, u"\u0430"},
      {[](S16 s, P16 own) { s.assign(own, own + 1); }, whole},
      {[](S16 s, P16 own) { s.assign(own, 1); }, whole},
      {[](S16 s, P16 own) { s.assign(own + 1, own + 2); }, u"\u0430"},
      {[](S16 s, P16) { s.assign(kNoUnits, kNoUnits); }, u"(null)"},
      {[](S16 s, P16) { s.assign(kNoUnits, 3); }, u"(null)"},
      {[](S16 s, P16) { s.assign(kUnits, 2); }, u"a\u0430"},
      {[](S16 s, P16) { s.adopt(strnew16(kUnits, 1u)); }, u"a"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    expectReplaced(ChArr16(kUnits), row.call, row.result);
  }
}

template <class String>
void expectFreedFirst(const String& start, const String& other) {
  sweepAllocations([&](AllocSweep& sweep) {
    String s(start);
    const bool done = sweep.attempt([&] { s = other; });
    EXPECT_EQ(textOf(done ? other : String()), textOf(s));
    sweep.attempt([&] { EXPECT_TRUE(String(other).get()); });
    sweep.attempt([&] { EXPECT_TRUE(String(other.get()).get()); });
  });
}

TEST(ChArr, AssignmentFromAnotherFreesFirst) {
  expectFreedFirst(ChArr("old"), ChArr("the other text"));
  expectFreedFirst(ChArr16(kUnits + 1), ChArr16(kUnits));
}

// What a move leaves behind is looked at on purpose.
// NOLINTBEGIN(bugprone-use-after-move, clang-analyzer-cplusplus.Move)
template <class String>
void expectHandedOver(String a) {
  const std::size_t before = liveBlocks();
  const auto* const text = a.get();
  String b(std::move(a));
  EXPECT_EQ(nullptr, a.get());
  a = b;
  EXPECT_NE(text, a.get());
  a = std::move(b);
  EXPECT_EQ(nullptr, b.get());
  EXPECT_EQ(text, a.get());
  auto* const stolen = a.steal();
  EXPECT_EQ(nullptr, a.get());
  b.adopt(stolen);
  b.adopt(stolen);
  EXPECT_EQ(text, b.get());
  EXPECT_EQ(before, liveBlocks());
}
// NOLINTEND(bugprone-use-after-move, clang-analyzer-cplusplus.Move)

TEST(ChArr, HandsOverItsArray) {
  expectHandedOver(ChArr("text"));
  expectHandedOver(ChArr16(kUnits));
  ChArr s("old");
  ChArr other("text");
  const char* const text = other.get();
  s.stealFrom(other);
  EXPECT_EQ(text, s.get());
  EXPECT_EQ(nullptr, other.get());
}

TEST(ChArr, ReadsNothingOutsideOfARange) {
  const GuardedBuffer memory("0123");
  ChArr byRange, byCount, from1251;
  byRange.assign(memory.begin(), memory.end());
  byCount.assign(memory.begin(), 4);
  from1251.assign1251(memory.begin(), 4);
  for (const ChArr* s : {&byRange, &byCount, &from1251}) EXPECT_EQ("0123", textOf(*s));
}

TEST(ChArr, IsEmptyWhereTextCannotBeFormatted) {
  const wchar_t wide[] = {'a', 0x0430, 0};  // which the plain locale cannot write
  ChArr s("old");
  const int direct = inPlainLocale([&] {
    s.format("ab%ls", wide);
    return std::snprintf(nullptr, 0, "ab%ls", wide);
  });
  EXPECT_LT(direct, 0);
  EXPECT_EQ("", textOf(s));
}

// The 128 upper bytes in order, row by row of the code page; the lower ones stay.
TEST(ChArr, KnowsWindows1251) {
  const char* const rows[] = {
      "ЂЃ‚ѓ„…†‡€‰Љ‹ЊЌЋЏ", "ђ‘’“”•–— ™љ›њќћџ", "\xC2\xA0ЎўЈ¤Ґ¦§Ё©Є«¬\xC2\xAD®Ї",
      "°±Ііґµ¶·ё№є»јЅѕї", "АБВГДЕЖЗИЙКЛМНОП", "РСТУФХЦЧШЩЪЫЬЭЮЯ",
      "абвгдежзийклмноп", "рстуфхцчшщъыьэюя",
  };
  std::string bytes;
  for (int byte = 1; byte < 256; ++byte) bytes += static_cast<char>(byte);
  std::string expected = bytes.substr(0, 127);
  for (const char* row : rows) expected += row;
  ChArr s;
  s.assign1251(bytes.data(), 255);
  EXPECT_EQ(expected, textOf(s));
}

}  // namespace
