// Sizes of the public classes in both word sizes, which programs that were compiled against an
// earlier release rely on. What is inside is held against the description in packaging/abi/.

#include <gtest/gtest.h>

#include "cc_loc_loader.h"
#include "ffproc.h"
#include "loc_loader.h"
#include "mlproc.h"
#include "rundetector.h"
#include "strtag.h"

namespace {

struct Row {
  const char* what;
  std::size_t actual, in32, in64;
};

#define SIZE(type) #type, sizeof(type)

// The standard string has 24 bytes in 32 bits and 32 in 64.
const Row rows[] = {
    {SIZE(ChArr), 4, 8},
    {SIZE(ChArr16), 4, 8},
    {SIZE(ChPair), 8, 16},
    {SIZE(SimpleVector<int>), 12, 16},
    {SIZE(ArrayVector<int>), 12, 16},
    {SIZE(StringVector<char>), 12, 16},
    {SIZE(ArrayHolder<char>), 4, 8},
    {SIZE(BufHolder<char>), 4, 8},
    {SIZE(Bag), 16, 24},
    {SIZE(TTT), 16, 24},
    {SIZE(CCLocLoader), 4, 8},
    {SIZE(CCLocLoader::Localization), 16, 24},
    {SIZE(IDLocLoader), 12, 24},
    {SIZE(IDLocLoader::Localization), 12, 12},
    {SIZE(Loc::Module), 32, 48},
    {SIZE(Loc::IdModule), 40, 64},
    {SIZE(Loc::CommonCoreModule), 40, 64},
    {SIZE(Loc::Loader), 12, 16},
    {SIZE(UTF8File), 12, 24},
    {SIZE(ZFindFile), 20, 32},
    {SIZE(MLDoc), 20, 32},
    {SIZE(MLDoc::Token), 28, 48},
    {SIZE(MLDoc::Attribute), 16, 32},
    {SIZE(MLDoc::ChildIterator), 16, 24},
    {SIZE(MLDoc::AttributeIterator), 8, 16},
    {SIZE(MLDocOut), 48, 80},
    {SIZE(PairTag), 12, 24},
    {SIZE(StrTag), 8, 16},
    {SIZE(StrPtrTag), 8, 16},
    {SIZE(RunDetector), 52, 72},
};

TEST(Layout, StaysAsItIs) {
  for (const Row& row : rows)
    EXPECT_EQ(row.actual, sizeof(void*) == 4 ? row.in32 : row.in64) << row.what;
}

}  // namespace
