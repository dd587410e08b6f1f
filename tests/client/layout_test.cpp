// Sizes of the public classes and places of their public fields, in both word sizes: what programs
// that were compiled against an earlier release rely on.

#include <gtest/gtest.h>

#include <cstddef>

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
#define PLACE(type, field) #type "::" #field, offsetof(type, field)

// The standard string has 24 bytes in 32 bits and 32 in 64.
const Row rows[] = {
    // text and containers
    {SIZE(ChArr), 4, 8},
    {SIZE(ChArr16), 4, 8},
    {SIZE(ChPair), 8, 16},
    {PLACE(ChPair, begin), 0, 0},
    {PLACE(ChPair, end), 4, 8},
    {SIZE(SimpleVector<int>), 12, 16},
    {SIZE(ArrayVector<int>), 12, 16},
    {SIZE(StringVector<char>), 12, 16},
    {SIZE(ArrayHolder<char>), 4, 8},
    {SIZE(BufHolder<char>), 4, 8},
    {SIZE(Bag), 16, 24},
    // messages and dictionaries
    {SIZE(TTT), 16, 24},
    {SIZE(CCLocLoader), 4, 8},
    {SIZE(CCLocLoader::Localization), 16, 24},
    {PLACE(CCLocLoader::Localization, count), 0, 0},
    {PLACE(CCLocLoader::Localization, encoding), 4, 4},
    {PLACE(CCLocLoader::Localization, stamp), 8, 8},
    {PLACE(CCLocLoader::Localization, targets), 12, 16},
    {SIZE(IDLocLoader), 12, 24},
    {SIZE(IDLocLoader::Localization), 12, 12},
    {PLACE(IDLocLoader::Localization, count), 0, 0},
    {PLACE(IDLocLoader::Localization, encoding), 4, 4},
    {PLACE(IDLocLoader::Localization, stamp), 8, 8},
    {SIZE(Loc::Module), 32, 48},
    {SIZE(Loc::IdModule), 40, 64},
    {SIZE(Loc::CommonCoreModule), 40, 64},
    {SIZE(Loc::Loader), 12, 16},
    // files
    {SIZE(UTF8File), 12, 24},
    {SIZE(ZFindFile), 20, 32},
    {PLACE(ZFindFile, includeMask), 0, 0},
    {PLACE(ZFindFile, excludeMask), 4, 4},
    {PLACE(ZFindFile, type), 8, 8},
    {PLACE(ZFindFile, entry), 12, 16},
    {PLACE(ZFindFile, dir), 16, 24},
    // markup
    {SIZE(MLDoc), 20, 32},
    {SIZE(MLDoc::Token), 28, 48},
    {PLACE(MLDoc::Token, name), 0, 0},
    {PLACE(MLDoc::Token, tag), 8, 16},
    {PLACE(MLDoc::Token, type), 16, 32},
    {PLACE(MLDoc::Token, depth), 20, 36},
    {PLACE(MLDoc::Token, opening), 24, 40},
    {PLACE(MLDoc::Token, closing), 25, 41},
    {SIZE(MLDoc::Attribute), 16, 32},
    {PLACE(MLDoc::Attribute, name), 0, 0},
    {PLACE(MLDoc::Attribute, value), 8, 16},
    {SIZE(MLDoc::ChildIterator), 16, 24},
    {SIZE(MLDoc::AttributeIterator), 8, 16},
    {SIZE(MLDocOut), 48, 80},
    {SIZE(PairTag), 12, 24},
    {PLACE(PairTag, name), 0, 0},
    {PLACE(PairTag, value), 4, 8},
    {PLACE(PairTag, nameEnd), 8, 16},
    {SIZE(StrTag), 8, 16},
    {PLACE(StrTag, name), 0, 0},
    {PLACE(StrTag, value), 4, 8},
    {SIZE(StrPtrTag), 8, 16},
    // processes
    {SIZE(RunDetector), 52, 72},
};

TEST(Layout, StaysAsItIs) {
  for (const Row& row : rows)
    EXPECT_EQ(row.actual, sizeof(void*) == 4 ? row.in32 : row.in64) << row.what;
}

}  // namespace
