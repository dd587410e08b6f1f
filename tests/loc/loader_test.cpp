// Both loaders on good, damaged and hostile files, in both byte orders.
#include <gtest/gtest.h>

#include <climits>

#include "cc_loc_loader.h"
#include "id_loc_loader.h"
#include "loc_support.h"
#include "tests/support/alloc_sweep.h"

namespace {

using cc::test::AllocSweep;
using loc_test::LngFile;
using loc_test::MemoryFile;

// Both loaders with old texts in place; a load must change all of them or none.
class Loaders {
 public:
  Loaders() {
    MemoryFile old(LngFile({"old 0", "old 1"}, 5).bytes());
    EXPECT_EQ(0, load(old, {2, 8, 5}));
    EXPECT_EQ("old 0|old 1", texts());
  }

  // The code of both, which must be the same one.
  int load(MemoryFile& file, IDLocLoader::Localization info) {
    const char** targets[] = {&variables[0], &variables[1]};
    CCLocLoader::Localization record = {info.count, info.encoding, info.stamp, targets};
    const int code = numbered.load(file.get(), info);
    EXPECT_EQ(code, loader.load(file.get(), record));
    return code;
  }

  // "first|second" of both, which must agree.
  std::string texts() const {
    std::string both = std::string(numbered.getString(0)) + "|" + numbered.getString(1);
    EXPECT_EQ(both, std::string(variables[0]) + "|" + variables[1]);
    EXPECT_EQ(nullptr, numbered.getString(2));
    EXPECT_EQ(nullptr, numbered.getString(-1));
    return both;
  }

 private:
  IDLocLoader numbered;
  CCLocLoader loader;
  const char* variables[2] = {nullptr, nullptr};
};

const LngFile good({"ab", "cd"});
constexpr IDLocLoader::Localization record = {2, 8, 77};

template <class Change>
LngFile changed(Change change) {
  LngFile file = good;
  change(file);
  return file;
}

TEST(Loaders, GiveTheDescribedCodes) {
  constexpr std::uint32_t negative = 0x80000000;
  const struct {
    int code;
    const char* what;
    LngFile file;
    const char* texts = "ab|cd";
  } rows[] = {
      {0, "as it should be", good},
      // one word of the header
      {2, "zero word", changed([](LngFile& f) { f.zero = 1; })},
      {2, "magic", changed([](LngFile& f) { f.magic ^= 1; })},
      {3, "version 0", changed([](LngFile& f) { f.version = 0; })},
      {3, "version 2", changed([](LngFile& f) { f.version = 2; })},
      {4, "encoding 16", changed([](LngFile& f) { f.encoding = 16; })},
      {5, "stamp off by one", changed([](LngFile& f) { f.stamp = 78; })},
      {2, "count too large", changed([](LngFile& f) { f.count = 3; })},
      {2, "count negative", changed([](LngFile& f) { f.count = negative; })},
      {2, "pool size 0", changed([](LngFile& f) { f.poolSize = 0; })},
      {2, "pool size negative", changed([](LngFile& f) { f.poolSize = negative; })},
      // the first wrong word decides
      {5, "stamp and count", changed([](LngFile& f) { f.stamp = 0, f.count = 0; })},
      // offsets and terminators
      {2, "offset at the pool's end", changed([](LngFile& f) { f.offsets[1] = 6; })},
      {2, "offset negative", changed([](LngFile& f) { f.offsets[0] = UINT32_MAX; })},
      {2, "offset most negative", changed([](LngFile& f) { f.offsets[0] = negative; })},
      {2, "no terminator at all", changed([](LngFile& f) { f.pool = "abcdef"; })},
      {0, "shared texts", changed([](LngFile& f) { f.offsets[0] = 3; }), "cd|cd"},
      {0, "text inside another", changed([](LngFile& f) { f.offsets[0] = 1; }), "b|cd"},
      {0, "end of a text", changed([](LngFile& f) { f.offsets[1] = 5; }), "ab|"},
      {0, "bytes behind the texts", changed([](LngFile& f) { f.pool += "junk", f.poolSize = 10; })},
      {0, "bytes behind the pool", changed([](LngFile& f) { f.pool += "junk"; })},
      // a header that promises more than there is
      {6, "pool cut", changed([](LngFile& f) { f.poolSize = 7; })},
  };
  for (const auto& row : rows) {
    for (const bool bigEndian : {false, true}) {
      SCOPED_TRACE(std::string(row.what) + (bigEndian ? ", other byte order" : ""));
      Loaders loaders;
      MemoryFile file(row.file.bytes(bigEndian));
      EXPECT_EQ(row.code, loaders.load(file, record));
      EXPECT_EQ(row.code == 0 ? row.texts : "old 0|old 1", loaders.texts());
    }
  }
}

TEST(Loaders, RefuseEveryPrefix) {
  for (const bool bigEndian : {false, true}) {
    const std::string whole = good.bytes(bigEndian);
    for (std::size_t n = 0; n < whole.size(); ++n) {
      Loaders loaders;
      MemoryFile file(whole.substr(0, n));
      EXPECT_EQ(6, loaders.load(file, record)) << n;
      EXPECT_EQ("old 0|old 1", loaders.texts()) << n;
    }
  }
}

TEST(Loaders, ReadFromTheFilePositionAndNoFurther) {
  MemoryFile file("before" + good.bytes() + "behind");
  std::FILE* stream = file.get();
  std::fseek(stream, 6, SEEK_SET);
  IDLocLoader loader;
  IDLocLoader::Localization info = record;
  EXPECT_EQ(0, loader.load(stream, info));
  char rest[7] = "";
  EXPECT_EQ(6u, std::fread(rest, 1, 6, stream));
  EXPECT_STREQ("behind", rest);
}

TEST(Loaders, LeaveEverythingForACountOfZero) {
  for (const int count : {0, -1}) {
    LngFile empty;
    empty.count = static_cast<std::uint32_t>(count);
    Loaders loaders;
    MemoryFile file(empty.bytes().substr(0, 24));  // the pool size is not even there
    EXPECT_EQ(0, loaders.load(file, {count, 8, 77}));
    EXPECT_EQ("old 0|old 1", loaders.texts());
  }
  IDLocLoader fresh;
  EXPECT_EQ(nullptr, fresh.pool);
  EXPECT_EQ(nullptr, fresh.strings);
  EXPECT_EQ(nullptr, fresh.getString(0));
}

TEST(Loaders, DoNotBelieveHugeSizes) {
  // Whether so much memory can be had decides between 6 and 7.
  for (const std::uint32_t size : {0x7FFFFFFFu, 0x40000000u}) {
    Loaders loaders;
    MemoryFile file(changed([=](LngFile& f) { f.poolSize = size; }).bytes());
    const int code = loaders.load(file, record);
    EXPECT_TRUE(code == 6 || code == 7) << code;
    EXPECT_EQ("old 0|old 1", loaders.texts());
  }
  LngFile many = good;
  many.count = 0x7FFFFFFF;
  MemoryFile file(many.bytes());
  IDLocLoader loader;
  IDLocLoader::Localization info = {INT_MAX, 8, 77};
  const int code = loader.load(file.get(), info);
  EXPECT_TRUE(code == 6 || code == 7) << code;
}

TEST(Loaders, ReportMissingMemoryAndKeepTheirTexts) {
  MemoryFile file(good.bytes());
  MemoryFile old(LngFile({"old 0", "old 1"}, 5).bytes());
  cc::test::sweepAllocations([&](AllocSweep& sweep) {
    IDLocLoader loader;
    IDLocLoader::Localization before = {2, 8, 5};
    ASSERT_EQ(0, loader.load(old.get(), before));
    IDLocLoader::Localization info = record;
    int code = -1;
    EXPECT_TRUE(sweep.attempt([&] { code = loader.load(file.get(), info); }));
    EXPECT_EQ(sweep.hasFailed() ? 7 : 0, code);
    EXPECT_STREQ(sweep.hasFailed() ? "old 0" : "ab", loader.getString(0));
  });
  cc::test::sweepAllocations([&](AllocSweep& sweep) {
    CCLocLoader loader;
    const char* variables[] = {"untouched", "untouched"};
    const char** targets[] = {&variables[0], &variables[1]};
    CCLocLoader::Localization info = {2, 8, 77, targets};
    int code = -1;
    EXPECT_TRUE(sweep.attempt([&] { code = loader.load(file.get(), info); }));
    EXPECT_EQ(sweep.hasFailed() ? 7 : 0, code);
    EXPECT_STREQ(sweep.hasFailed() ? "untouched" : "ab", variables[0]);
  });
}

}  // namespace
