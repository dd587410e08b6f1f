// First use of everything that is shared, by eight threads at the same moment. Each case is a
// process of its own, so what is prepared on first use is prepared here.

#include <gtest/gtest.h>

#include <latch>
#include <string>
#include <thread>
#include <vector>

#include "charproc.h"
#include "loc_module.h"
#include "mlproc.h"
#include "pairtag.h"
#include "tttproc.h"
#include "utf8proc.h"

namespace {

template <class Use>
void onEightThreads(Use use) {
  std::latch start(8);
  std::vector<std::jthread> threads(8);
  for (std::jthread& thread : threads) {
    thread = std::jthread([&] {
      start.arrive_and_wait();
      use();
    });
  }
}

TEST(Threads, TablesAndKernels) {
  onEightThreads([] {
    std::string text(300, 'a');
    for (int i = 0; i < 40; ++i) text += "\xC3\xA9 \xD0\xBC\xD0\xB8\xD1\x80 ";
    const char* const end = text.data() + text.size();
    std::string upper = text;
    strup_utf8(upper.data(), upper.data() + upper.size());
    EXPECT_EQ(0, strcmp_i_utf8(text.data(), end, upper.data(), upper.data() + upper.size()));
    const char pattern[] = "\xD0\xBC\xD0\xB8\xD1\x80";
    EXPECT_EQ(text.data() + 303, strfind_i_utf8(text.data(), end, pattern, pattern + 6));
    EXPECT_EQ(nullptr, strchk_utf8(text.data(), static_cast<unsigned int>(text.size())));
    unsigned short* units = strnew16(text.data(), end);
    EXPECT_EQ(strlen_utf8(text.data(), end), strlen_utf16(units));
    delete[] units;
    double number = 0;
    EXPECT_TRUE(strtodouble("1.5", &number));
  });
}

TEST(Threads, OneTable) {
  static const PairTag table[] = {{"one", 1}, {"three", 3}, {nullptr, 0}};
  onEightThreads([] { EXPECT_EQ(3, table->translate(ChPair("THREE"))); });
}

TEST(Threads, DocumentsAndTheirFailures) {
  onEightThreads([] {
    MLDoc doc;
    const std::string text = "<a x=\"1.5\"><";
    doc.load("doc", text.data(), static_cast<int>(text.size()));
    MLDoc::Token token;
    EXPECT_TRUE(doc.step(token));
    EXPECT_EQ(1.5, doc.getDouble(doc.getAttributeValue(token, "x")));
    EXPECT_THROW(doc.step(token), TTT);
    Bag bag;
    MLDocOut out;
    out.begin(&bag);
    out.writeDoubleAttr("x", 1.5, false);
    EXPECT_LT(0, bag.getSize());
  });
}

TEST(Threads, RenderingFromOneDictionary) {
  Loc::CommonCoreModule module;
  std::string error;
  ASSERT_TRUE(module.load("eng", &error)) << error;
  onEightThreads([] {
    std::string text;
    TTT(LocDictionaryCommonCore, 14).makeMulti(text);
    EXPECT_NE("Some .loc dictionary is not loaded", text);
    EXPECT_FALSE(text.empty());
  });
}

}  // namespace
