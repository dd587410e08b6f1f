// saveAtomic in a process that is killed at each call to the system, before it and after it.

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <ostream>

#include "fileproc.h"
#include "tests/faults/fault_sweep.h"
#include "tests/support/temp_folder.h"

namespace {

using cc::test::fileBytes;
using cc::test::putFile;
using cc::test::TempFolder;

const std::string oldText(3000, 'o');
const std::string newText(5000, 'n');

unsigned int permissionsOf(const std::filesystem::path& path) {
  return static_cast<unsigned int>(std::filesystem::status(path).permissions());
}

/// Saves in a process that is killed there; true when it was.
bool dies(const std::string& path, int call, bool after) {
  const pid_t child = ::fork();
  if (child == 0) {
    cc::test::killAtCall(call, after);
    UTF8File::saveAtomic(path.c_str(), newText);
    ::_exit(0);
  }
  int status = -1;
  ::waitpid(child, &status, 0);
  EXPECT_TRUE(status == 0 || status == SIGKILL) << "the wait status";
  return status != 0;
}

struct Target {
  const char* name;
  bool exists;
  bool link;

  friend void PrintTo(const Target& target, std::ostream* out) { *out << target.name; }
};

class Killed : public testing::TestWithParam<Target> {
 protected:
  const TempFolder folder;
  const std::string file = folder / "file";
  const std::string path = GetParam().link ? folder / "link" : file;

  void prepare() {
    std::filesystem::remove_all(folder / "");
    std::filesystem::create_directory(folder / "");
    if (GetParam().link) {
      ASSERT_EQ(0, ::symlink("file", path.c_str()));
    }
    if (GetParam().exists) {
      putFile(file, oldText);
      ASSERT_EQ(0, ::chmod(file.c_str(), 0640));
    }
  }
  /// Checks that the target is whole; true when it has the new content.
  bool isReplaced() {
    const std::string bytes = fileBytes(file);
    EXPECT_TRUE(bytes == newText || bytes == (GetParam().exists ? oldText : "(no file)"));
    EXPECT_EQ(GetParam().link, std::filesystem::is_symlink(path));
    if (GetParam().exists) {
      EXPECT_EQ(0640U, permissionsOf(file));
    }
    return bytes == newText;
  }
  /// Checks what the dead process left beside the target: how many files.
  int leftovers() {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder / "")) {
      const std::string name = entry.path().filename();
      if (name == "file" || name == "link") continue;
      ++count;
      EXPECT_EQ(0U, name.find(".save-")) << name;
      const unsigned int open = permissionsOf(entry.path()) & 077U;
      EXPECT_TRUE(!GetParam().exists || open == 0 || open == 040) << "others may read it";
    }
    EXPECT_LE(count, 1);
    return count;
  }
};

TEST_P(Killed, LeavesTheOldOrTheNewFileWhole) {
  for (const bool after : {false, true}) {
    bool replaced = false;
    int left = 0;
    int call = 0;
    for (bool died = true; died; ++call) {
      SCOPED_TRACE(testing::Message() << (after ? "after" : "before") << " call " << call);
      prepare();
      died = dies(path, call, after);
      EXPECT_TRUE(isReplaced() || !replaced) << "replaced by fewer calls";
      replaced = isReplaced();
      const int leftHere = leftovers();
      left += leftHere;
      UTF8File::saveAtomic(path.c_str(), newText);
      EXPECT_TRUE(isReplaced());
      EXPECT_EQ(leftHere, leftovers()) << "the next save cleared or left something";
      if (HasFailure()) return;
    }
    EXPECT_TRUE(replaced);
    EXPECT_GT(left, 0) << "never killed while the new file stood beside the old one";
  }
}

INSTANTIATE_TEST_SUITE_P(Targets, Killed,
                         testing::Values(Target{"Existing", true, false},
                                         Target{"New", false, false},
                                         Target{"LinkToExisting", true, true},
                                         Target{"LinkToNew", false, true}),
                         [](const auto& row) { return std::string(row.param.name); });

// What a loss of power leaves depends on the order: the content is lasting before it gets the name,
// and the name afterwards.
TEST(SaveAtomic, SynchronisesBeforeAndAfterRenaming) {
  const TempFolder folder;
  const std::string path = putFile(folder / "a", oldText);
  std::vector<std::string_view> calls =
      cc::test::tracedCalls([&] { UTF8File::saveAtomic(path.c_str(), newText); });
  std::erase_if(calls, [](std::string_view call) {
    return call != "writeFile" && call != "changePermissions" && call != "syncFile" &&
           call != "renamePath";
  });
  EXPECT_EQ((std::vector<std::string_view>{"writeFile", "changePermissions", "syncFile",
                                           "renamePath", "syncFile"}),
            calls);
}

}  // namespace
