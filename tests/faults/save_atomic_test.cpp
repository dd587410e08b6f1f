// saveAtomic where each call to the system fails, and in a process that is killed at each.

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>

#include "fileproc.h"
#include "tests/faults/fault_sweep.h"
#include "tests/support/temp_folder.h"

namespace {

using namespace cc::test;  // NOLINT(google-build-using-namespace)

const std::string oldText(3000, 'o');
const std::string newText(5000, 'n');

unsigned int permissionsOf(const std::filesystem::path& path) {
  return static_cast<unsigned int>(std::filesystem::status(path).permissions());
}

/// A file in a folder of its own, saved by its name or through a link.
struct Target {
  bool link;
  bool exists;
  const TempFolder folder = {};
  const std::string file = folder / "a-name-of-some-length";
  const std::string path = link ? folder / "link" : file;
  const std::string before = exists ? oldText : "(no file)";

  void prepare() const {
    std::filesystem::remove_all(folder / "");
    std::filesystem::create_directory(folder / "");
    if (link) std::filesystem::create_symlink("a-name-of-some-length", path);
    if (!exists) return;
    putFile(file, oldText);
    std::filesystem::permissions(file, std::filesystem::perms{0640});
  }
  void save() const { UTF8File::saveAtomic(path.c_str(), newText); }
  /// Checks that the file is whole; true when it has the new content.
  bool isReplaced() const {
    const std::string bytes = fileBytes(file);
    EXPECT_TRUE(bytes == newText || bytes == before);
    EXPECT_EQ(link, std::filesystem::is_symlink(path));
    EXPECT_TRUE(!exists || permissionsOf(file) == 0640);
    return bytes == newText;
  }
  /// How many files are left beside it, which only those may read who may read it.
  int leftovers() const {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder / "")) {
      const std::string name = entry.path().filename();
      if (name.find(".save-") != 0) continue;
      ++count;
      const unsigned int open = permissionsOf(entry.path()) & 077U;
      EXPECT_TRUE(!exists || open == 0 || open == 040) << "others may read it";
    }
    EXPECT_EQ(folder.count(), count + (link ? 1 : 0) + (fileBytes(file) != "(no file)" ? 1 : 0));
    return count;
  }
};

template <class Check>
void forEachTarget(Check check) {
  for (const bool link : {false, true}) {
    for (const bool exists : {true, false}) {
      SCOPED_TRACE(testing::Message() << "link " << link << ", exists " << exists);
      check(Target{link, exists});
    }
  }
}

TEST(Faults, SaveAtomic) {
  const Rules rules = {
      // a file that vanishes, or was never there
      {"pathStatus", GoesOn, ENOENT},
      {"pathStatus", 4},
      {"readLink", 4},
      {"randomBytes", 4},
      // the name is taken, for a hundred names
      {"openFile", 4, EEXIST, 99},
      {"openFile", GoesOn, EEXIST},
      // the folder, whose synchronising is none of the save's
      {"openFile", GoesOn, AnyWay, 1},
      {"syncFile", GoesOn, AnyWay, 1},
      {"closeFile", GoesOn, AnyWay, 1},
      {"openFile", 4},
      {"writeFile", GoesOn, Short},
      {"writeFile", 12, Ended},
      {"writeFile", 35},
      {"changeOwner", GoesOn},
      {"changePermissions", 4},
      {"syncFile", 38},
      {"closeFile", 3},
      {"renamePath", 35},
      {"unlinkPath", GoesOn},
  };
  forEachTarget([&](const Target& target) {
    sweepFaults([&](FaultSweep& sweep) {
      target.prepare();
      const std::string thrown = sweep.thrownBy([&] { target.save(); });
      EXPECT_EQ(sweep.expected(rules, target.path), thrown);
      const bool done = thrown == "(nothing)";
      EXPECT_EQ(done ? newText : target.before, fileBytes(done ? target.path : target.file));
      if (!sweep.failed("pathStatus", ENOENT)) {
        EXPECT_EQ(done, target.isReplaced());
        EXPECT_EQ(sweep.failed("unlinkPath") ? 1 : 0, target.leftovers());
      }
    });
  });
}

/// Saves in a process that is killed there; true when it was.
bool dies(const Target& target, int call) {
  const pid_t child = ::fork();
  if (child == 0) {
    killAtCall(call);
    target.save();
    ::_exit(0);
  }
  int status = -1;
  ::waitpid(child, &status, 0);
  EXPECT_TRUE(status == 0 || status == SIGKILL) << "the wait status";
  return status != 0;
}

TEST(SaveAtomic, KilledAtEachCallLeavesTheOldOrTheNewFileWhole) {
  forEachTarget([](const Target& target) {
    bool replaced = false;
    int left = 0;
    bool died = true;
    for (int call = 0; died && !testing::Test::HasFailure(); ++call) {
      SCOPED_TRACE(call);
      target.prepare();
      died = dies(target, call);
      EXPECT_TRUE(target.isReplaced() || !replaced) << "replaced by fewer calls";
      replaced = target.isReplaced();
      const int leftHere = target.leftovers();
      left = std::max(left, leftHere);
      target.save();
      EXPECT_TRUE(target.isReplaced());
      EXPECT_EQ(leftHere, target.leftovers()) << "the next save cleared or left something";
    }
    EXPECT_TRUE(replaced);
    EXPECT_EQ(1, left) << "never killed while the new file stood beside the old one, or left more";
  });
}

// What a loss of power leaves depends on the order: the content is lasting before it gets the name,
// and the name afterwards.
TEST(SaveAtomic, SynchronisesBeforeAndAfterRenaming) {
  const Target target = {false, true};
  target.prepare();
  std::vector<std::string_view> calls = tracedCalls([&] { target.save(); });
  std::erase_if(calls, [](std::string_view call) {
    return call != "writeFile" && call != "changePermissions" && call != "syncFile" &&
           call != "renamePath";
  });
  EXPECT_EQ((std::vector<std::string_view>{"writeFile", "changePermissions", "syncFile",
                                           "renamePath", "syncFile"}),
            calls);
}

}  // namespace
