// The bytes of messages: exact layouts, aliasing, failures and the cost of appending.
#include <gtest/gtest.h>

#include "chpair.h"
#include "loc_support.h"
#include "tests/support/alloc_sweep.h"
#include "tttproc.h"

namespace {

using loc_test::bytesOf;
using testing::PrintToString;
using namespace std::string_literals;

Bag bagOf(std::string_view bytes) { return Bag(bytes.data(), static_cast<int>(bytes.size())); }

TEST(Message, HasTheDescribedBytes) {
  const char* const null = nullptr;
  const std::string literal = "\xFF\xFF\xFF\xFF";
  const std::string entry = "\xFE\xFF\xFF\xFF";
  const struct {
    TTT message;
    std::string bytes;
  } rows[] = {
      {TTT(), ""},
      {TTT(null), literal + '\0'},
      {TTT("ab\0cd"s), literal + "ab\0"s},
      {TTT(LocDictionary4, -1), entry + "\4\0\0\0\xFF\xFF\xFF\xFF"s},
      {TTT(LocDictionary0, 0) << -5 << "a"
                              << ""
                              << "b",
       entry + "\0\0\0\0\0\0\0\0\xFB\xFF\xFF\xFF"s + "a\0\0b\0"s},
      {(TTT() << null) <= null, "\0\0\0\0"s + literal + '\0'},
      {(TTT("x") <= TTT()) <= Bag(), literal + "x\0"s},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(row.bytes, bytesOf(row.message.getBag())) << &row - rows;
    EXPECT_EQ(row.message.getBag().getSize(), row.message.getBag().getPosition()) << &row - rows;
  }
}

TEST(Message, CopiesAllBytesWhereverTheCursorStands) {
  const Bag bag = bagOf("abcde");  // whose cursor is at 0
  TTT assigned("old");
  assigned = bag;
  TTT moved(std::move(assigned));
  TTT chained;
  chained = std::move(moved);
  for (const TTT& message : {TTT(bag), chained, TTT(chained)}) {
    EXPECT_EQ("abcde", bytesOf(message.getBag()));
    EXPECT_EQ(5, message.getBag().getPosition());
  }
  EXPECT_EQ(0, bag.getPosition());
  EXPECT_EQ(0,
            moved.getBag().getSize());  // NOLINT(bugprone-use-after-move,*-analyzer-cplusplus.Move)
}

// Each on the message of the text "ab", in a buffer of exactly its size: appending moves it. Where
// memory runs out it is as it was.
TEST(Message, TakesAllOrNothing) {
  static const std::string text(300, 'x');
  static const std::string before = "\xFF\xFF\xFF\xFF" + "ab\0"s;
  static const std::string aligned = before + '\0';
  static const std::string entry = aligned + "\xFF\xFF\xFF\xFF";
  static const auto own = [](TTT& m) { return m.getBag().getBuffer() + 4; };
  const struct {
    const char* what;
    void (*append)(TTT& message);
    std::string after;
  } rows[] = {
      {"literal", [](TTT& m) { m <= text.c_str(); }, entry + text + '\0'},
      {"slice", [](TTT& m) { m <= ChPair(text.c_str()); }, entry + text + '\0'},
      {"argument", [](TTT& m) { m << text.c_str(); }, before + text + '\0'},
      {"number", [](TTT& m) { m << 1; }, aligned + "\1\0\0\0"s},
      {"message", [](TTT& m) { m <= TTT(text); }, entry + text + '\0'},
      {"bag", [](TTT& m) { m <= bagOf(text); }, aligned + text},
      {"assignment", [](TTT& m) { m = bagOf(text); }, text},
      {"copy", [](TTT& m) { m = static_cast<const TTT&>(TTT(bagOf(text))); }, text},
      // its own bytes
      {"itself", [](TTT& m) { m <= m; }, aligned + before},
      {"its bag", [](TTT& m) { m <= m.getBag(); }, aligned + before},
      {"its text", [](TTT& m) { m <= own(m); }, aligned + before},
      {"its slice", [](TTT& m) { m <= ChPair(own(m) + 1, own(m) + 2); }, entry + 'b' + '\0'},
      {"its argument", [](TTT& m) { m << own(m); }, before + "ab" + '\0'},
      {"its assignment", [](TTT& m) { m = m.getBag(); }, before},
      {"its move", [](TTT& m) { m = static_cast<TTT&&>(m); }, before},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    cc::test::sweepAllocations([&](cc::test::AllocSweep& sweep) {
      TTT message;
      message = TTT("ab").getBag();
      const bool done = sweep.attempt([&] { row.append(message); });
      EXPECT_EQ(done ? row.after : before, bytesOf(message.getBag()));
      EXPECT_EQ(message.getBag().getSize(), message.getBag().getPosition());
    });
  }
}

TEST(Message, ReportsTheNumbersOfItsFirstEntry) {
  const std::string entry = "\xFE\xFF\xFF\xFF\x03\0\0\0\x19\0\0\0x\0"s;
  const struct {
    std::string bytes;
    bool result;
    int dictionary, code;
  } rows[] = {
      {"", false, 0, -1},
      {"\xFF\xFF\xFF\xFF", true, 0, -1},
      {"\x0C\0\0\0"s, true, 0, 12},
      {"\xFD\xFF\xFF\xFF", true, 0, -3},
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
    EXPECT_EQ(row.result, message.getErrorCode(&dictionary, &code)) << PrintToString(row.bytes);
    EXPECT_EQ(row.dictionary, dictionary) << PrintToString(row.bytes);
    EXPECT_EQ(row.code, code) << PrintToString(row.bytes);
    EXPECT_EQ(row.result, message.getErrorCode(nullptr, nullptr)) << PrintToString(row.bytes);
    EXPECT_EQ(static_cast<int>(row.bytes.size()), message.getBag().getPosition());
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
