// Modules: how files are named and found, what failures say, and what memory failure leaves.
#include <gtest/gtest.h>

#include "common_core_loc.h"
#include "loc/message_numbers.h"
#include "loc_loader.h"
#include "loc_module.h"
#include "loc_support.h"
#include "tests/support/alloc_sweep.h"

namespace {

using namespace cc::test;
using namespace loc_test;

std::string failure(const std::string& reason, const std::string& path) {
  return "Localization loading failed" + reason + "\n(file: " + path + ")";
}

TEST(Module, ComposesPaths) {
  std::string path = "/etc/x";  // which the path replaces
  Loc::Module::makePath(path, "m", "de", path);
  EXPECT_EQ("/etc/xm.de.lng", path);
}

TEST(Module, WordsErrors) {
  const std::pair<int, const char*> rows[] = {
      {1, ": Could not find or access localization"},
      {2, ": Localization data is invalid"},
      {3, ": Localization data has unsupported version"},
      {4, ": Localization character encoding is wrong"},
      {5, ": Localization and executable file versions are different"},
      {6, ": Error during file reading"},
      {7, ": Not enough memory"},
      // codes that only a class of a client can return
      {0, ""},
      {-1, ""},
      {8, ""},
  };
  for (const auto& [code, reason] : rows) {
    std::string error = "old";
    Loc::Module::makeError("/x/y.lng", code, &error);
    EXPECT_EQ(failure(reason, "/x/y.lng"), error) << code;
  }
}

TEST(Module, LoadsTheFileOfItsLanguage) {
  const EtcDir etc;
  etc.put("m.eng.lng", LngFile({"english"}, 7).bytes());
  etc.put("m.deu.lng", LngFile({"deutsch"}, 7).bytes());
  etc.put("m.bad.lng", LngFile({"bad"}, 8).bytes());
  etc.put("m..lng", LngFile({"none"}, 7).bytes());
  std::filesystem::create_directory(etc.path + "m.x");
  const std::string missing = ": Could not find or access localization";
  const std::string stamps = ": Localization and executable file versions are different";
  const struct {
    const char* language;
    bool mandatory, result;
    std::string error, text;
  } rows[] = {
      {nullptr, true, true, "", "english"},
      {"deu", true, true, "", "deutsch"},
      {"", true, true, "", "none"},
      {"fra", false, true, "", "before"},
      {"fra", true, false, failure(missing, etc.path + "m.fra.lng"), "before"},
      {"bad", false, false, failure(stamps, etc.path + "m.bad.lng"), "before"},
      // a path is no language
      {"x/../m.eng", false, true, "", "before"},
      {"x/../m.deu", true, false, failure(missing, etc.path + "m.x/../m.deu.lng"), "before"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.language ? row.language : "null");
    EXPECT_EQ(row.result, TestModule("m", row.mandatory).load(row.language, nullptr));
    sweepAllocations([&](AllocSweep& sweep) {
      TestModule module("m", row.mandatory, "before");
      std::string error;
      bool result = false;
      const bool returned = sweep.attempt([&] { result = module.load(row.language, &error); });
      EXPECT_EQ(result ? row.text : "before", module.dictionary.getString(0));
      EXPECT_TRUE(result == row.result || sweep.hasFailed());
      // The file's own loader turns missing memory into its code.
      if (returned && error != row.error) {
        EXPECT_EQ(0u, error.find("Localization loading failed: Not enough memory\n")) << error;
        EXPECT_TRUE(sweep.hasFailed());
      }
    });
  }
}

TEST(Module, ThrowsWhereNobodyReadsTheFile) {
  const EtcDir etc;
  etc.put("m.eng.lng", "");
  Loc::Module module;
  module.name = "m";
  EXPECT_THROW(module.load("eng", nullptr), int);
}

TEST(Loader, LoadsInOrderAndStopsAtTheFirstFailure) {
  const EtcDir etc;
  etc.put("first.eng.lng", LngFile({"1"}, 7).bytes());
  etc.put("third.eng.lng", LngFile({"3"}, 8).bytes());
  etc.put("fourth.eng.lng", LngFile({"4"}, 7).bytes());
  std::string error = "untouched";
  Loc::Loader loader;
  auto* first = new TestModule("first", true);
  auto* fourth = new TestModule("fourth", true);
  EXPECT_TRUE(loader.load("eng", &error));
  loader.append(first);
  loader.append(new TestModule("second", false));
  loader.append(nullptr);
  EXPECT_TRUE(loader.load("eng", &error));
  EXPECT_EQ("untouched", error);
  loader.append(new TestModule("third", true));
  loader.append(fourth);
  EXPECT_FALSE(loader.load("eng", &error));
  EXPECT_NE(std::string::npos, error.find("(file: " + etc.path + "third.eng.lng)")) << error;
  EXPECT_STREQ("1", first->dictionary.getString(0));
  EXPECT_EQ(nullptr, fourth->dictionary.getString(0));
}

TEST(CommonCoreModule, HasItsRecordAndItsSlot) {
  constexpr unsigned int stamp = 0xF196B6AA;
  EXPECT_EQ(cc::messageCount, LCA_info.count);
  EXPECT_EQ(8, LCA_info.encoding);
  EXPECT_EQ(stamp, static_cast<unsigned int>(LCA_info.stamp));

  const EtcDir etc;
  const KeepSlots keep;
  TTT::dictionaries[3] = nullptr;
  const struct {
    std::size_t count;
    unsigned int stamp;
    const char* reason;
  } rows[] = {
      {39, stamp, nullptr},  // loads
      {38, stamp, ": Localization data is invalid"},
      {39, stamp + 1, ": Localization and executable file versions are different"},
  };
  for (const auto& row : rows) {
    const std::vector<std::string> texts(row.count, row.reason ? "text" : "new");
    etc.put("common_core.eng.lng", LngFile(texts, row.stamp).bytes());
    std::string error;
    EXPECT_EQ(!row.reason, Loc::CommonCoreModule().load("eng", &error));
    EXPECT_EQ(row.reason ? failure(row.reason, etc.path + "common_core.eng.lng") : "", error);
    ASSERT_NE(nullptr, TTT::dictionaries[3]);
    EXPECT_STREQ("new", TTT::dictionaries[3]->getString(38)) << "the slot and its texts stay";
  }
}

}  // namespace
