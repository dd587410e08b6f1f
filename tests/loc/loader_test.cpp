// Both loaders on good, damaged and hostile files, in both byte orders, with every allocation
// failing once.
#include <gtest/gtest.h>

#include <climits>
#include <new>
#include <set>

#include "cc_loc_loader.h"
#include "loc_support.h"
#include "tests/reference/lng_model.h"
#include "tests/support/alloc_sweep.h"

namespace {

using namespace cc::test;
using namespace loc_test;

constexpr char oldTexts[] = "old 0|old 1";
const LngFile good({"ab", "cd"});
constexpr IDLocLoader::Localization record = {2, 8, 77};

template <class Strings>
std::string bothOf(Strings stringAt) {
  return std::string(stringAt(0)) + "|" + stringAt(1);
}

// Loads the bytes with both loaders, which hold old texts, as the plain model does. A load that
// comes to 0 leaves the new texts, any other the old ones, and only missing memory may come to
// another code. Gives the code of the model.
int expectLoad(const std::string& bytes, IDLocLoader::Localization info = record) {
  reference::LngModel model(bytes);
  const int code = model.read(info.count, info.stamp);
  if (model.poolSize > 1 << 20) return 7;  // the memory at hand decides
  const std::string texts =
      model.texts.size() == 2 ? model.texts[0] + "|" + model.texts[1] : oldTexts;
  MemoryFile old(LngFile({"old 0", "old 1"}, 5).bytes());
  MemoryFile file(bytes);
  sweepAllocations([&](AllocSweep& sweep) {
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
  return code;
}

TEST(Loaders, AgreeWithTheModelOnEveryPrefixAndOnOtherBytes) {
  std::set<int> codes;
  for (const bool bigEndian : {false, true}) {
    const std::string whole = good.bytes(bigEndian) + "junk";
    for (std::size_t n = 0; n <= whole.size(); ++n) {
      codes.insert(expectLoad(whole.substr(0, n)));
      for (const int value : {0, 1, 2, 3, 5, 6, 8, 10, 16, 0x7F, 0x80, 0xFF}) {
        SCOPED_TRACE(std::to_string(value) + " at " + std::to_string(n));
        std::string changed = whole;
        if (n < changed.size()) changed[n] = static_cast<char>(value);
        codes.insert(expectLoad(changed));
      }
    }
  }
  EXPECT_EQ((std::set<int>{0, 2, 3, 4, 5, 6, 7}), codes);
}

TEST(Loaders, LeaveEverythingForACountOfZero) {
  for (const int count : {0, -1}) {
    LngFile empty({});
    empty.words[LngFile::Count] = static_cast<std::uint32_t>(count);
    EXPECT_EQ(0, expectLoad(empty.bytes().substr(0, 24), {count, 8, 77}));  // without a pool size
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

template <class Loader, auto... members, class Info>
void expectNothingLeft(Info info) {
  alignas(Loader) unsigned char bytes[sizeof(Loader)];
  auto* const loader = new (bytes) Loader;
  MemoryFile file(good.bytes());
  EXPECT_EQ(0, loader->load(file.get(), info));
  EXPECT_TRUE(((loader->*members != nullptr) && ...));
  loader->~Loader();
  const volatile Loader* const gone = loader;
  EXPECT_TRUE(((gone->*members == nullptr) && ...));
}

TEST(Loaders, LeaveNoTextsBehindThemForThoseThatStillLook) {
  const char* variables[2] = {};
  const char** targets[] = {&variables[0], &variables[1]};
  expectNothingLeft<IDLocLoader, &IDLocLoader::pool, &IDLocLoader::strings>(record);
  const CCLocLoader::Localization named = {2, 8, 77, targets};
  expectNothingLeft<CCLocLoader, &CCLocLoader::pool>(named);
}

// Whether so much memory can be had decides between 6 and 7.
TEST(Loaders, DoNotBelieveHugeSizes) {
  for (const auto& [count, poolSize] : {std::pair(2, INT_MAX), {2, 1 << 30}, {INT_MAX, 6}}) {
    LngFile file = good;
    file.words[LngFile::Count] = static_cast<std::uint32_t>(count);
    file.words[LngFile::PoolSize] = static_cast<std::uint32_t>(poolSize);
    IDLocLoader loader;
    IDLocLoader::Localization info = {count, 8, 77};
    const int code = loader.load(MemoryFile(file.bytes()).get(), info);
    EXPECT_TRUE(code == 6 || code == 7) << code;
    EXPECT_EQ(nullptr, loader.getString(0));
  }
}

}  // namespace
