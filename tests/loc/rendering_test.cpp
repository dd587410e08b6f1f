// Rendering: the placeholders, the slots, loading on the spot, and hostile bytes and dictionaries.
#include <gtest/gtest.h>

#include <cstring>

#include "chpair.h"
#include "loc_loader.h"
#include "loc_module.h"
#include "loc_support.h"
#include "render_model.h"
#include "tests/support/alloc_sweep.h"
#include "tttproc.h"

namespace {

using namespace loc_test;
using cc::test::AllocSweep;
using cc::test::sweepAllocations;
using testing::PrintToString;

constexpr char notLoaded[] = "Some .loc dictionary is not loaded";

// Words and nothing else, as a message.
TTT words(std::initializer_list<int> list) {
  TTT message;
  for (const int word : list) message << word;
  return message;
}

// The text, with "!" behind it where rendering threw because the bytes ended.
std::string rendered(const TTT& message, IDLocLoader& dictionary) {
  std::string out = "old";
  try {
    message.make(dictionary, out);
  } catch (const Bag::Exception&) {
    out += "!";
  }
  EXPECT_EQ(message.getBag().getSize(), message.getBag().getPosition());
  return out;
}

// What the plain walk makes of the bytes, as `rendered` gives it.
std::string modelled(std::string_view bytes, const std::vector<std::string>& texts) {
  RenderModel model(bytes, texts);
  const std::optional<std::string> text = model.render();
  return text ? *text : model.out + "!";
}

// Each message is rendered whole, as far as the memory goes, and cut behind each of its bytes as
// the plain walk does it.
TEST(Rendering, ExpandsPlaceholders) {
  const TTT entry(LocDictionary3, 0);
  const std::string nines(400, '9');
  const struct {
    std::vector<std::string> texts;
    TTT message;
    std::string text;
  } rows[] = {
      {{}, TTT("ab") <= "cd", "abcd"},
      {{"%s" + nines + "%s"}, TTT(entry) << nines.c_str() << "!", nines + nines + "!"},
      {{"x", "y", "plain"}, words({2}), "plain"},
      {{"plain"}, (TTT(entry) <= entry) <= "!", "plainplain!"},
      {{"a%d b%s c%i%% %u", "e"},
       (TTT(entry) << -1 << "x" << 1 << 9) <= words({1}),
       "a-1 bx ce% 9e"},
      // numbers
      {{"%d%%%u"}, TTT(entry) << -5 << -5, "-5%4294967291"},
      {{"%d %d"}, TTT(entry) << INT32_MIN << INT32_MAX, "-2147483648 2147483647"},
      // texts are not aligned, words are
      {{"%s%d[%s]"}, TTT(entry) << "abcd" << 7 << "%d", "abcd7[%d]"},
      // other messages stay as they are
      {{"%i and %d", "100%% %d"}, TTT(entry) << 1 << 2, "100%% %d and 2"},
      {{"%%%%d"}, entry, "%%d"},
      // rendering stops
      {{"before %", "next"}, TTT(entry) <= words({1}), "before "},
      {{"before %x after"}, TTT(entry) <= "next", "before "},
      {{}, TTT("ab") <= words({100000}), "ab"},
      {{}, TTT("ab") <= words({-3}), "ab"},
      {{"text"}, (TTT("ab") <= TTT(static_cast<LocDictionaryId>(5), 0)) <= "cd", "ab"},
      {{"text"}, TTT("ab") <= words({-2, -1, 0}), "ab"},
      // numbers that the dictionary does not hold
      {{"text"}, TTT("ab") <= words({1}), notLoaded},
      {{"text"}, TTT("ab") <= TTT(LocDictionary0, -1), notLoaded},
      {{"%i"}, TTT("ab") <= (TTT(entry) << 1), notLoaded},
      {{}, TTT("ab") <= words({0}), notLoaded},
  };
  for (const auto& row : rows) {
    Dictionary dictionary(row.texts);
    const std::string_view bytes = bytesOf(row.message.getBag());
    EXPECT_EQ(row.text, rendered(row.message, dictionary)) << PrintToString(bytes);
    sweepAllocations([&](AllocSweep& sweep) {
      std::string out;
      const bool done = sweep.attempt([&] { row.message.make(dictionary, out); });
      if (done || row.text != notLoaded) {
        EXPECT_EQ(done ? row.text : row.text.substr(0, out.size()), out);
      }
    });
    for (std::size_t n = 0; n <= bytes.size(); ++n) {
      const TTT prefix(Bag(bytes.data(), static_cast<int>(n)));
      EXPECT_EQ(modelled(bytes.substr(0, n), row.texts), rendered(prefix, dictionary))
          << n << " of " << PrintToString(bytes);
    }
  }
}

TEST(Rendering, TakesTheSlotOfEachEntry) {
  const KeepSlots keep;
  Dictionary zero({"zero", "short"});
  Dictionary one({"one"});
  IDLocLoader* slots[] = {&zero, &one, nullptr, nullptr, &zero};
  const struct {
    const char* what;
    TTT message;
    const char *multi, *single;
  } rows[] = {
      {"both forms of slot 0", TTT(LocDictionary0, 0) <= words({1}), "zeroshort", "zeroshort"},
      {"other slots", (TTT(LocDictionary1, 0) <= TTT(LocDictionary4, 1)), "oneshort", "zeroshort"},
      {"an empty slot", TTT("x") <= TTT(LocDictionary2, 0), notLoaded, "xzero"},
      {"number of another slot", TTT(LocDictionary1, 1), notLoaded, "short"},
  };
  for (const auto& row : rows) {
    std::string out = "old";
    TTT::make(slots, row.message.getBag(), out, true);
    EXPECT_EQ(row.multi, out) << row.what;
    TTT::make(slots, row.message.getBag(), out, false);
    EXPECT_EQ(row.single, out) << row.what;
    for (int i = 0; i < 5; ++i) TTT::dictionaries[i] = slots[i];
    row.message.makeMulti(out);
    EXPECT_EQ(row.multi, out) << row.what;
    TTT::make(nullptr, row.message.getBag(), out, true);
    EXPECT_EQ(notLoaded, out) << row.what;
  }
  Bag moved = TTT("a text needs no slot").getBag();
  moved.setPosition(2);
  for (const bool multi : {false, true}) {
    std::string out;
    TTT::make(nullptr, moved, out, multi);
    EXPECT_EQ("a text needs no slot", out);
    EXPECT_EQ(2, moved.getPosition());
  }
}

std::string commonCoreFile() {
  std::vector<std::string> texts(39, "text");
  texts[25] = "\nFile: %s";
  return LngFile(texts, 0xF196B6AA).bytes();
}

class OnTheSpot : public testing::Test {
 protected:
  OnTheSpot() {
    etc.put("common_core.eng.lng", commonCoreFile());
    TTT::dictionaries[3] = nullptr;
  }

  std::string render() const {
    std::string out = "old";
    message.makeMulti(out);
    return out;
  }

  const EtcDir etc;
  const KeepSlots keep;
  const TTT message = TTT("error") <= (TTT(LocDictionaryCommonCore, 25) << "ab");
};

TEST_F(OnTheSpot, LoadsEnglishOnce) {
  EXPECT_EQ("error\nFile: ab", render());
  etc.put("common_core.eng.lng", "damaged");
  EXPECT_EQ("error\nFile: ab", render());
  etc.put("common_core.eng.lng", commonCoreFile());
  const std::size_t blocks = cc::test::liveBlocks();
  for (int i = 0; i < 40; ++i) {
    TTT::dictionaries[3] = nullptr;
    EXPECT_EQ("error\nFile: ab", render());
  }
  EXPECT_EQ(blocks, cc::test::liveBlocks()) << "by one module";
}

TEST_F(OnTheSpot, NeedsTheLibrarysOwnTable) {
  IDLocLoader* slots[5] = {};
  std::string out;
  TTT::make(slots, message.getBag(), out, true);
  EXPECT_EQ(notLoaded, out);
  EXPECT_EQ(nullptr, slots[3]);
  const std::string file = etc.path + "common_core.eng.lng";
  std::filesystem::remove(file);
  TTT::make(slots, message.getBag(), out, true);
  EXPECT_EQ(
      "Localization loading failed: Could not find or access localization\n(file: " + file + ")",
      out);
}

TEST_F(OnTheSpot, CanBeTriedAgainAfterMemoryRanOut) {
  render();
  sweepAllocations([&](AllocSweep& sweep) {
    TTT::dictionaries[3] = nullptr;
    std::string out;
    const bool returned = sweep.attempt([&] { message.makeMulti(out); });
    EXPECT_EQ(returned, TTT::dictionaries[3] != nullptr);
    EXPECT_EQ(message.getBag().getSize(), message.getBag().getPosition());
    EXPECT_EQ("error\nFile: ab", render()) << "texts of an earlier load stay";
  });
}

bool renderAtExit = false;

void printRendering(const char* when) {
  if (!renderAtExit) return;
  std::string out;
  TTT(LocDictionaryCommonCore, 0).makeMulti(out);
  std::fprintf(stderr, "%s: %s. ", when, out.c_str());
}

// Made before main, so after the library's own objects and destroyed before them.
const struct PrintsWhenDestroyed {
  ~PrintsWhenDestroyed() { printRendering("static object"); }
} printsWhenDestroyed;

// Runs after every static object is gone.
__attribute__((destructor)) void afterAll() {
  printRendering("after all");
  TTT::dictionaries[3] = nullptr;
  printRendering("without slot");
}

TEST_F(OnTheSpot, WorksDuringProcessExit) {
  EXPECT_EXIT(
      {
        render();
        std::atexit([] { printRendering("atexit"); });
        renderAtExit = true;
        std::exit(0);
      },
      testing::ExitedWithCode(0),
      "atexit: text. static object: text. "
      "after all: Some .loc dictionary is not loaded. "
      "without slot: Some .loc dictionary is not loaded. ");
}

TEST(Rendering, CostsLinearTime) {
  // The only memory that rendering takes is that of the growing text.
  Dictionary dictionary({"%d%%%s%i", "text"});
  TTT message;
  for (int i = 0; i < 20000; ++i) message <= (TTT(LocDictionary0, 0) << i << "arg" << 1);
  std::string out;
  const cc::test::AllocCount count;
  message.make(dictionary, out);
  EXPECT_LT(count.bytes(), 6 * out.size());
}

}  // namespace
