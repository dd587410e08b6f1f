// The bytes of messages: exact layouts, aliasing, failures and the cost of appending.
#include <gtest/gtest.h>

#include <climits>
#include <new>

#include "chpair.h"
#include "loc_support.h"
#include "tests/support/alloc_sweep.h"
#include "tttproc.h"

namespace {

using loc_test::bytesOf;
using loc_test::hex;

Bag bagOf(std::string_view bytes) { return Bag(bytes.data(), static_cast<int>(bytes.size())); }

TEST(Message, HasTheDescribedBytes) {
  const char cut[] = "abcdef";
  const struct {
    const char* what;
    TTT message;
    const char* bytes;
  } rows[] = {
      // constructors
      {"nothing", TTT(), ""},
      {"a text", TTT("abc"), "FF FF FF FF 61 62 63 00"},
      {"a null text", TTT(static_cast<const char*>(nullptr)), "FF FF FF FF 00"},
      {"a string with a 0", TTT(std::string("ab\0cd", 5)), "FF FF FF FF 61 62 00"},
      {"any number", TTT(LocDictionary4, -1), "FE FF FF FF 04 00 00 00 FF FF FF FF"},
      {"a bag", TTT(bagOf("ab")), "61 62"},
      // arguments
      {"text, then number", TTT(LocDictionary3, 25) << "ab" << 7,
       "FE FF FF FF 03 00 00 00 19 00 00 00 61 62 00 00 07 00 00 00"},
      {"number, then texts",
       TTT(LocDictionary0, 0) << -5 << "a"
                              << ""
                              << "b",
       "FE FF FF FF 00 00 00 00 00 00 00 00 FB FF FF FF 61 00 00 62 00"},
      {"a null argument", TTT() << static_cast<const char*>(nullptr), "00"},
      // entries
      {"entry after text", (TTT() <= TTT("x")) <= TTT(LocDictionary3, 17),
       "FF FF FF FF 78 00 00 00 FE FF FF FF 03 00 00 00 11 00 00 00"},
      {"texts", (TTT("x") <= "y") <= static_cast<const char*>(nullptr),
       "FF FF FF FF 78 00 00 00 FF FF FF FF 79 00 00 00 FF FF FF FF 00"},
      {"a slice", TTT() <= ChPair(cut + 1, cut + 3), "FF FF FF FF 62 63 00"},
      {"nothing appended", (TTT("x") <= TTT()) <= Bag(), "FF FF FF FF 78 00"},
      {"a bag appended", TTT("x") <= bagOf("yz"), "FF FF FF FF 78 00 00 00 79 7A"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(row.bytes, hex(bytesOf(row.message.getBag()))) << row.what;
    EXPECT_EQ(row.message.getBag().getSize(), row.message.getBag().getPosition()) << row.what;
  }
}

TEST(Message, CopiesAllBytesWhereverTheCursorStands) {
  Bag bag = bagOf("abcde");
  bag.setPosition(2);
  TTT assigned("old");
  assigned = bag;
  TTT moved(std::move(assigned));
  TTT chained;
  chained = std::move(moved);
  for (const TTT& message : {TTT(bag), chained, TTT(chained)}) {
    EXPECT_EQ("abcde", bytesOf(message.getBag()));
    EXPECT_EQ(5, message.getBag().getPosition());
  }
  EXPECT_EQ(2, bag.getPosition());
  EXPECT_EQ(0,
            moved.getBag().getSize());  // NOLINT(bugprone-use-after-move,*-analyzer-cplusplus.Move)
}

TEST(Message, TakesItsOwnBytesAsSource) {
  const struct {
    const char* what;
    void (*append)(TTT& message);
    const char* bytes;
  } rows[] = {
      {"its bag", [](TTT& m) { m <= m.getBag(); }, "FF FF FF FF 61 62 00 00 FF FF FF FF 61 62 00"},
      {"its text", [](TTT& m) { m <= m.getBag().getBuffer() + 4; },
       "FF FF FF FF 61 62 00 00 FF FF FF FF 61 62 00"},
      {"a slice",
       [](TTT& m) { m <= ChPair(m.getBag().getBuffer() + 5, m.getBag().getBuffer() + 6); },
       "FF FF FF FF 61 62 00 00 FF FF FF FF 62 00"},
      {"an argument", [](TTT& m) { m << m.getBag().getBuffer() + 4; },
       "FF FF FF FF 61 62 00 61 62 00"},
      {"assignment", [](TTT& m) { m = m.getBag(); }, "FF FF FF FF 61 62 00"},
      {"moved to itself",
       [](TTT& m) {
         TTT& same = m;
         m = std::move(same);
       },
       "FF FF FF FF 61 62 00"},
  };
  for (const auto& row : rows) {
    TTT message;
    message = TTT("ab").getBag();  // a buffer of exactly the data's size: appending moves it
    row.append(message);
    EXPECT_EQ(row.bytes, hex(bytesOf(message.getBag()))) << row.what;
    EXPECT_EQ(message.getBag().getSize(), message.getBag().getPosition()) << row.what;
  }
}

TEST(Message, ReportsTheNumbersOfItsFirstEntry) {
  const std::string entry("\xFE\xFF\xFF\xFF\x03\0\0\0\x19\0\0\0x\0", 14);
  const struct {
    std::string bytes;
    bool result;
    int dictionary, code;
  } rows[] = {
      {"", false, 0, -1},
      {std::string("\xFF\xFF\xFF\xFF", 4), true, 0, -1},
      {std::string("\x0C\0\0\0", 4), true, 0, 12},
      {std::string("\xFD\xFF\xFF\xFF", 4), true, 0, -3},
      {entry, true, 3, 25},
      // cut anywhere
      {entry.substr(0, 12), true, 3, 25},
      {entry.substr(0, 11), false, 3, -1},
      {entry.substr(0, 7), false, 0, -1},
      {entry.substr(0, 3), false, 0, -1},
  };
  for (const auto& row : rows) {
    const TTT message(bagOf(row.bytes));
    int dictionary = 99;
    int code = 99;
    EXPECT_EQ(row.result, message.getErrorCode(&dictionary, &code)) << hex(row.bytes);
    EXPECT_EQ(row.dictionary, dictionary) << hex(row.bytes);
    EXPECT_EQ(row.code, code) << hex(row.bytes);
    EXPECT_EQ(row.result, message.getErrorCode(nullptr, nullptr)) << hex(row.bytes);
    EXPECT_EQ(static_cast<int>(row.bytes.size()), message.getBag().getPosition());
  }
}

TEST(Message, StaysWholeWhenMemoryRunsOut) {
  const Bag other = bagOf(std::string(300, 'x') + '\0');
  const struct {
    const char* what;
    void (*append)(TTT& message, const Bag& bag);
  } rows[] = {
      {"literal", [](TTT& m, const Bag& bag) { m <= bag.getBuffer(); }},
      {"slice", [](TTT& m, const Bag& bag) { m <= ChPair(bag.getBuffer()); }},
      {"argument", [](TTT& m, const Bag& bag) { m << bag.getBuffer(); }},
      {"number", [](TTT& m, const Bag&) { m << 1; }},
      {"message", [](TTT& m, const Bag& bag) { m <= TTT(bag.getBuffer()); }},
      {"bag", [](TTT& m, const Bag& bag) { m <= bag; }},
      {"itself", [](TTT& m, const Bag&) { m <= m; }},
      {"assignment", [](TTT& m, const Bag& bag) { m = bag; }},
  };
  for (const auto& row : rows) {
    cc::test::sweepAllocations([&](cc::test::AllocSweep& sweep) {
      TTT message;
      message = TTT("ab").getBag();
      const bool done = sweep.attempt([&] { row.append(message, other); });
      if (!done) {
        EXPECT_EQ("FF FF FF FF 61 62 00", hex(bytesOf(message.getBag()))) << row.what;
      }
      EXPECT_EQ(message.getBag().getSize(), message.getBag().getPosition()) << row.what;
    });
  }
}

TEST(Message, GrowsInLinearTime) {
  // What growing copies is bounded by what it allocates: a small multiple of the final size.
  const TTT entry = TTT(LocDictionary3, 21) << 1 << 2;
  TTT message;
  const cc::test::AllocCount count;
  for (int i = 0; i < 50000; ++i) (message <= entry) <= "text";
  EXPECT_LT(count.bytes(), 8u * static_cast<unsigned int>(message.getBag().getSize()));
}

}  // namespace
