// Both loaders on good, damaged and hostile files, in both byte orders, with every allocation
// failing once.
#include <gtest/gtest.h>

#include <climits>

#include "cc_loc_loader.h"
#include "loc_support.h"
#include "tests/support/alloc_sweep.h"

namespace {

using cc::test::AllocSweep;
using loc_test::LngFile;
using loc_test::MemoryFile;

constexpr char oldTexts[] = "old 0|old 1";
const LngFile good({"ab", "cd"});
constexpr IDLocLoader::Localization record = {2, 8, 77};

template <class Strings>
std::string bothOf(Strings stringAt) {
  return std::string(stringAt(0)) + "|" + stringAt(1);
}

// Loads the bytes with both loaders, which hold old texts. A load that comes to 0 leaves `texts`,
// any other the old ones, and only missing memory may come to another code.
void expectLoad(int code, const std::string& bytes, IDLocLoader::Localization info = record,
                const std::string& texts = oldTexts) {
  MemoryFile old(LngFile({"old 0", "old 1"}, 5).bytes());
  MemoryFile file(bytes);
  cc::test::sweepAllocations([&](AllocSweep& sweep) {
    IDLocLoader numbered;
    CCLocLoader named;
    const char* variables[2] = {};
    const char** targets[] = {&variables[0], &variables[1]};
    IDLocLoader::Localization before = {2, 8, 5};
    CCLocLoader::Localization namedBefore = {2, 8, 5, targets};
    ASSERT_EQ(0, numbered.load(old.get(), before) + named.load(old.get(), namedBefore));

    CCLocLoader::Localization namedInfo = {info.count, info.encoding, info.stamp, targets};
    int codes[2] = {-1, -1};
    EXPECT_TRUE(sweep.attempt([&] { codes[0] = numbered.load(file.get(), info); }));
    EXPECT_TRUE(sweep.attempt([&] { codes[1] = named.load(file.get(), namedInfo); }));
    const std::string found[] = {bothOf([&](int i) { return numbered.getString(i); }),
                                 bothOf([&](int i) { return variables[i]; })};
    for (int i = 0; i < 2; ++i) {
      if (!sweep.hasFailed() || codes[i] != 7) {
        EXPECT_EQ(code, codes[i]);
      }
      EXPECT_EQ(codes[i] == 0 ? texts : oldTexts, found[i]);
    }
    EXPECT_TRUE(!sweep.hasFailed() || codes[0] == 7 || codes[1] == 7);
    for (const int i : {INT_MIN, -1, 2, INT_MAX}) EXPECT_EQ(nullptr, numbered.getString(i));
  });
}

TEST(Loaders, GiveTheDescribedCodes) {
  constexpr std::uint32_t negative = 0x80000000;
  const struct {
    int code;
    const char* what;
    void (*change)(LngFile& f);
    const char* texts = "ab|cd";
  } rows[] = {
      {0, "as it should be", [](LngFile&) {}},
      // one word of the header
      {2, "zero word", [](LngFile& f) { f.zero = 1; }},
      {2, "magic", [](LngFile& f) { f.magic ^= 1; }},
      {3, "version 0", [](LngFile& f) { f.version = 0; }},
      {3, "version 2", [](LngFile& f) { f.version = 2; }},
      {4, "encoding 16", [](LngFile& f) { f.encoding = 16; }},
      {5, "stamp off by one", [](LngFile& f) { f.stamp = 78; }},
      {2, "count too large", [](LngFile& f) { f.count = 3; }},
      {2, "pool size 0", [](LngFile& f) { f.poolSize = 0; }},
      {2, "pool size negative", [](LngFile& f) { f.poolSize = negative; }},
      // the first wrong word decides
      {5, "stamp and count", [](LngFile& f) { f.stamp = 0, f.count = 0; }},
      // offsets and terminators
      {2, "offset at the pool's end", [](LngFile& f) { f.offsets[1] = 6; }},
      {2, "offset negative", [](LngFile& f) { f.offsets[0] = UINT32_MAX; }},
      {2, "offset most negative", [](LngFile& f) { f.offsets[0] = negative; }},
      {2, "no terminator at all", [](LngFile& f) { f.pool = "abcdef"; }},
      {0, "shared texts", [](LngFile& f) { f.offsets[0] = 3; }, "cd|cd"},
      {0, "text inside another", [](LngFile& f) { f.offsets[0] = 1; }, "b|cd"},
      {0, "end of a text", [](LngFile& f) { f.offsets[1] = 5; }, "ab|"},
      {0, "bytes behind the texts", [](LngFile& f) { f.pool += "junk", f.poolSize = 10; }},
      {0, "bytes behind the pool", [](LngFile& f) { f.pool += "junk"; }},
      // a header that promises more than there is
      {6, "pool cut", [](LngFile& f) { f.poolSize = 7; }},
  };
  for (const auto& row : rows) {
    for (const bool bigEndian : {false, true}) {
      SCOPED_TRACE(std::string(row.what) + (bigEndian ? ", other byte order" : ""));
      LngFile file = good;
      row.change(file);
      expectLoad(row.code, file.bytes(bigEndian), record, row.texts);
    }
  }
}

TEST(Loaders, RefuseEveryPrefix) {
  for (const bool bigEndian : {false, true}) {
    const std::string whole = good.bytes(bigEndian);
    for (std::size_t n = 0; n < whole.size(); ++n) {
      SCOPED_TRACE(n);
      expectLoad(6, whole.substr(0, n));
    }
  }
}

TEST(Loaders, LeaveEverythingForACountOfZero) {
  for (const int count : {0, -1}) {
    LngFile empty;
    empty.count = static_cast<std::uint32_t>(count);
    expectLoad(0, empty.bytes().substr(0, 24), {count, 8, 77});  // no pool size is even there
  }
}

TEST(Loaders, ReadFromTheFilePositionAndNoFurther) {
  MemoryFile file("before" + good.bytes() + "behind");
  std::FILE* stream = file.get();
  std::fseek(stream, 6, SEEK_SET);
  IDLocLoader loader;
  EXPECT_EQ(nullptr, loader.pool);
  EXPECT_EQ(nullptr, loader.strings);
  EXPECT_EQ(nullptr, loader.getString(0));
  IDLocLoader::Localization info = record;
  EXPECT_EQ(0, loader.load(stream, info));
  char rest[7] = "";
  EXPECT_EQ(6u, std::fread(rest, 1, 6, stream));
  EXPECT_STREQ("behind", rest);
}

TEST(Loaders, DoNotBelieveHugeSizes) {
  // Whether so much memory can be had decides between 6 and 7.
  for (const std::uint32_t size : {0x7FFFFFFFu, 0x40000000u, 0u}) {
    LngFile file = good;
    if (size == 0) file.count = INT_MAX;
    if (size != 0) file.poolSize = size;
    MemoryFile stream(file.bytes());
    IDLocLoader loader;
    IDLocLoader::Localization info = {static_cast<int>(file.count), 8, 77};
    const int code = loader.load(stream.get(), info);
    EXPECT_TRUE(code == 6 || code == 7) << code;
    EXPECT_EQ(nullptr, loader.getString(0));
  }
}

}  // namespace
