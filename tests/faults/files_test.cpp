// Files, directories and whole files: what each failing call makes of each operation, and what is
// left afterwards.

#include <gtest/gtest.h>

#include "ffproc.h"
#include "fileproc.h"
#include "tests/faults/fault_sweep.h"
#include "tests/support/temp_folder.h"

namespace {

using namespace cc::test;  // NOLINT(google-build-using-namespace)
using Check = std::function<void(UTF8File& file, bool done)>;

TEST(Faults, OpenFile) {
  enum Before { Closed, Reading, Writing };
  struct Row {
    const char* name;
    Before before;
    std::function<bool(UTF8File& file)> action;
    Rules rules;
    Check check;
  };
  const TempFolder folder;
  const std::string path = folder / "a";
  char buffer[8];
  Bag bag("old", 3);
  bool lost = false;
  const Rules opens = {{"openStream", 4}, {"fileStatus", 4}, {"closeStream", GoesOn}};
  const Rules reads = {{"readStream", 32, Ended}, {"readStream", 26}, {"seekStream", 27}};
  const Rules writes = {{"writeStream", 12, Ended}, {"writeStream", 35}};
  const Rules lines = {{"readStreamLine", 26}, {"readStreamByte", 26}};
  const Rules moves = {{"seekStream", 27}, {"tellStream", 27}};
  const Rules tells = {{"tellStream", Silent}};
  const Rules flushes = {{"flushStream", withoutError(38)}};
  const Rules closes = {{"closeStream", 3}};
  const auto opener = [&](UTF8File::Mode mode) {
    return [&path, mode](UTF8File& file) { return file.open(path.c_str(), mode); };
  };
  const auto readsTwo = [&](UTF8File& file) {
    return file.readLine(buffer, 3, nullptr) && file.readLine(buffer, 3, nullptr);
  };
  const Check nothing = [](UTF8File&, bool) {};
  const Check isOpen = [&](UTF8File& file, bool done) {
    EXPECT_EQ(done, file.getStream() != nullptr);
    EXPECT_STREQ(done ? path.c_str() : nullptr, file.getName());
  };
  const Check isClosed = [](UTF8File& file, bool) {
    EXPECT_EQ(nullptr, file.getStream());
    EXPECT_TRUE(file.close());
  };
  const Check isAt = [](UTF8File& file, bool done) { EXPECT_EQ(done ? 2 : 1, file.pos()); };
  // Only where the way back fails too does the position go.
  const Check stays = [&](UTF8File& file, bool) { EXPECT_EQ(lost ? 11 : 1, file.pos()); };
  const Check hasOld = [&](UTF8File&, bool) { EXPECT_EQ("old", dataOf(bag)); };
  const Check hasRecord = [&](UTF8File&, bool done) {
    EXPECT_EQ(done ? "ab" : "old", dataOf(bag));
  };
  const Check hasLine = [&](UTF8File&, bool done) { EXPECT_STREQ(done ? "\2" : buffer, buffer); };
  const Row rows[] = {
      {"open to read", Closed, opener(UTF8File::ModeRead), opens, isOpen},
      {"open to write", Closed, opener(UTF8File::ModeWrite), opens, isOpen},
      {"read", Reading, [&](UTF8File& f) { return f.read(buffer, 4); }, reads, nothing},
      {"write", Writing, [](UTF8File& f) { return f.write("xyz"); }, writes, nothing},
      {"push", Writing, [&](UTF8File& f) { return f.push(bag); }, writes, hasOld},
      {"pop", Reading, [&](UTF8File& f) { return f.seek(5, 0) && f.pop(bag); }, reads, hasRecord},
      {"flush", Writing, [](UTF8File& f) { return f.flush(); }, flushes, nothing},
      {"seek", Reading, [](UTF8File& f) { return f.seek(2, 0); }, moves, isAt},
      {"pos", Reading, [](UTF8File& f) { return f.pos() == 1; }, tells, nothing},
      {"size", Reading, [](UTF8File& f) { return f.size() == 11; }, moves, stays},
      {"lines that fill the buffer", Reading, readsTwo, lines, hasLine},
      {"close", Writing, [](UTF8File& f) { return f.close(); }, closes, isClosed},
  };
  for (const Row& row : rows) {
    for (const bool throwing : {true, false}) {
      SCOPED_TRACE(row.name);
      sweepFaults([&](FaultSweep& sweep) {
        putFile(path, std::string("abc\r\n\2\0\0\0ab", 11));
        bag = Bag("old", 3);
        UTF8File file(throwing);
        if (row.before == Reading) {
          ASSERT_TRUE(file.open(path.c_str(), UTF8File::ModeRead) && file.seek(1, 0));
        } else if (row.before == Writing) {
          ASSERT_TRUE(file.open(path.c_str(), UTF8File::ModeWrite) && file.write("1"));
        }
        bool done = false;
        const std::string thrown = sweep.thrownBy([&] { done = row.action(file); });
        const std::string expected = sweep.expected(row.rules, path);
        EXPECT_EQ(throwing && expected != "(silent)" ? expected : "(nothing)", thrown);
        EXPECT_EQ(expected == "(nothing)", done);
        lost = sweep.failed("seekStream", AnyWay, 1);
        row.check(file, done);
      });
    }
  }
}

TEST(Faults, Paths) {
  const TempFolder folder;
  const std::string a = folder / "a";
  const std::string b = folder / "b";
  const std::string dir = folder / "directory";
  const Rules makes = {{"makeDirectory", GoesOn, EEXIST}, {"makeDirectory", 8}};
  const Rules rmdirs = {{"removeDirectory", GoesOn, ENOENT}, {"removeDirectory", 10}};
  const Rules removes = {{"removePath", GoesOn, ENOENT}, {"removePath", 9}};
  struct Row {
    const char* name;
    std::string path;
    std::function<bool(UTF8File& file)> action;
    Rules rules;
  };
  const Row rows[] = {
      {"mkdir", b, [&](UTF8File& f) { return f.mkdir(b.c_str()); }, makes},
      {"rmdir", dir, [&](UTF8File& f) { return f.rmdir(dir.c_str()); }, rmdirs},
      {"remove", a, [&](UTF8File& f) { return f.remove(a.c_str()); }, removes},
      {"rename",
       a,
       [&](UTF8File& f) { return f.rename(a.c_str(), b.c_str()); },
       {{"renamePath", Silent}}},
      {"exist", a, [&](UTF8File&) { return UTF8File::exist(a.c_str()); }, {{"statPath", Silent}}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    sweepFaults([&](FaultSweep& sweep) {
      std::filesystem::remove_all(b);
      std::filesystem::create_directory(dir);
      putFile(a, "1");
      UTF8File file(true);
      bool done = false;
      const std::string thrown = sweep.thrownBy([&] { done = row.action(file); });
      const std::string expected = sweep.expected(row.rules, row.path);
      EXPECT_EQ(expected == "(silent)" ? "(nothing)" : expected, thrown);
      EXPECT_EQ(expected == "(nothing)", done);
      if (!sweep.failures().empty()) {
        EXPECT_EQ(2, folder.count()) << "something was changed";
      }
    });
  }
}

TEST(Faults, LoadWholeFile) {
  const TempFolder folder;
  const std::string content(1000, 'x');
  const Rules rules = {
      {"openFile", 4},         {"fileStatus", 4}, {"seekFile", 27}, {"readFile", GoesOn, Short},
      {"readFile", 32, Ended}, {"readFile", 26},  {"closeFile", 3}};
  // What is measured by its status, and what by positions.
  const std::pair<std::string, std::string> files[] = {{putFile(folder / "a", content), content},
                                                       {"/dev/null", ""}};
  for (const auto& [path, bytes] : files) {
    const char* const name = path.c_str();
    for (int target = 0; target < 4; ++target) {
      SCOPED_TRACE(testing::Message() << path << ", target " << target);
      sweepFaults([&, &wanted = bytes, &place = path](FaultSweep& sweep) {
        ArrayHolder<char> array;
        std::string string = "old";
        ChArr text("old");
        Bag bag("old", 3);
        unsigned int size = 0;
        const std::string thrown = sweep.thrownBy([&] {
          size = target == 0   ? UTF8File::load(name, array, 1000, true)
                 : target == 1 ? UTF8File::load(name, string, 1000)
                 : target == 2 ? UTF8File::load(name, text, 1000, true)
                               : UTF8File::load(name, bag, 1000, false);
        });
        EXPECT_EQ(sweep.expected(rules, place), thrown);
        const bool done = thrown == "(nothing)";
        EXPECT_EQ(done ? wanted.size() : 0, size);
        EXPECT_EQ(wanted, target == 0 && done ? array.get() : wanted);
        EXPECT_TRUE(string == wanted || (target == 1 ? !done : string == "old"));
        EXPECT_EQ(target == 2 && done ? wanted : "old", text.get());
        EXPECT_EQ(target == 3 && done ? wanted : "old", dataOf(bag));
      });
    }
  }
}

TEST(Faults, SaveInPlace) {
  const TempFolder folder;
  const std::string path = folder / "a";
  const std::string content(100'000, 'x');
  const Rules rules = {{"openStream", 4},
                       {"fileStatus", 4},
                       {"writeStream", 12, Ended},
                       {"writeStream", 35},
                       {"closeStream", 3}};
  sweepFaults([&](FaultSweep& sweep) {
    putFile(path, "old");
    const std::string thrown = sweep.thrownBy([&] { UTF8File::save(path.c_str(), content); });
    EXPECT_EQ(sweep.expected(rules, path), thrown);
    if (sweep.failures().empty()) {
      EXPECT_EQ(content, fileBytes(path));
    }
    EXPECT_EQ(1, folder.count());
  });
}

TEST(Faults, FindFile) {
  const TempFolder folder;
  for (const char* name : {"a", "b", "c"}) putFile(folder / name, "");
  const std::string path = folder / "";
  sweepFaults([&](FaultSweep& sweep) {
    int seen = 0;
    sweep.during([&] {
      ZFindFile find(path.c_str());
      const bool opened = find.dir != nullptr;
      while (find.next()) ++seen;
      EXPECT_EQ(nullptr, find.dir);
      EXPECT_EQ(nullptr, find.entry);
      EXPECT_NE(opened, sweep.failed("openDirectory"));
    });
    const bool cut = sweep.failed("openDirectory") || sweep.failed("readDirectory");
    EXPECT_TRUE(cut ? seen <= 3 : seen == 3) << seen;
  });
}

}  // namespace
