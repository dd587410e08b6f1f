// UTF8File::saveAtomic: what is kept of the target, and that failures leave it whole and alone.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "fileproc.h"
#include "tests/files/messages.h"
#include "tests/support/alloc_sweep.h"
#include "tests/support/temp_folder.h"

namespace {

using cc::test::failure;
using cc::test::fileBytes;
using cc::test::putFile;
using cc::test::TempFolder;
using cc::test::thrownBy;

struct stat statusOf(const std::string& path) {
  struct stat status {};
  EXPECT_EQ(0, ::lstat(path.c_str(), &status)) << path;
  return status;
}

TEST(SaveAtomic, CreatesAndReplaces) {
  const TempFolder folder;
  const std::string path = folder / "a";
  const mode_t mask = ::umask(027);
  UTF8File::saveAtomic(path.c_str(), "ab\0c", 4);
  ::umask(mask);
  EXPECT_EQ(std::string("ab\0c", 4), fileBytes(path));
  EXPECT_EQ(0640U, statusOf(path).st_mode & 07777U);
  const ino_t first = statusOf(path).st_ino;
  ASSERT_EQ(0, ::link(path.c_str(), (folder / "other").c_str()));

  Bag bag("12345", 5);
  bag.setPosition(2);
  UTF8File::saveAtomic(path.c_str(), bag);
  EXPECT_EQ("12345", fileBytes(path));
  EXPECT_NE(first, statusOf(path).st_ino) << "written in place";
  EXPECT_EQ(std::string("ab\0c", 4), fileBytes(folder / "other")) << "the old file is touched";
  UTF8File::saveAtomic(path.c_str(), std::string(3000000, 'x'));
  EXPECT_EQ(std::string(3000000, 'x'), fileBytes(path));
  UTF8File::saveAtomic(path.c_str(), nullptr, 0);
  EXPECT_EQ("", fileBytes(path));
}

TEST(SaveAtomic, KeepsPermissionsOwnerAndGroup) {
  const TempFolder folder;
  for (const unsigned int permissions : {0666U, 04750U, 0U}) {
    const std::string path = putFile(folder / std::to_string(permissions), "old");
    if (::geteuid() == 0) {
      ASSERT_EQ(0, ::chown(path.c_str(), 1234, 2345));
    }
    ASSERT_EQ(0, ::chmod(path.c_str(), permissions));
    const struct stat before = statusOf(path);
    UTF8File::saveAtomic(path.c_str(), std::string("new"));
    const struct stat after = statusOf(path);
    EXPECT_EQ(permissions, after.st_mode & 07777U);
    EXPECT_EQ(before.st_uid, after.st_uid);
    EXPECT_EQ(before.st_gid, after.st_gid);
  }
}

TEST(SaveAtomic, GoesThroughSymbolicLinks) {
  const TempFolder folder;
  std::filesystem::create_directories(folder / "d/e");
  const std::string target = putFile(folder / "d/target", "old");
  struct Row {
    const char* link;
    std::string text;
    std::string file;
  };
  const Row rows[] = {
      {"absolute", target, target},        {"relative", "d/target", target},
      {"d/e/up", "../target", target},     {"second", "relative", target},
      {"d/e/far", "../../second", target}, {"dangling", "d/fresh", folder / "d/fresh"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.link);
    const std::string link = folder / row.link;
    ASSERT_EQ(0, ::symlink(row.text.c_str(), link.c_str()));
    UTF8File::saveAtomic(link.c_str(), std::string(row.link));
    EXPECT_TRUE(S_ISLNK(statusOf(link).st_mode));
    EXPECT_TRUE(S_ISREG(statusOf(row.file).st_mode));
    EXPECT_EQ(row.link, fileBytes(row.file));
  }
  ASSERT_EQ(0, ::chdir((folder / "d/e").c_str()));
  UTF8File::saveAtomic("plain", std::string("plain"));
  ASSERT_EQ(0, ::chdir("/"));
  EXPECT_EQ("plain", fileBytes(folder / "d/e/plain"));
}

TEST(SaveAtomic, RefusesWhatIsNoRegularFile) {
  const TempFolder folder;
  const std::string pipe = folder / "pipe";
  const std::string loop = folder / "loop";
  const std::string directory = folder / "dir";
  const std::string file = putFile(folder / "file", "old");
  ASSERT_EQ(0, ::mkfifo(pipe.c_str(), 0600));
  ASSERT_EQ(0, ::symlink("loop", loop.c_str()));
  ASSERT_EQ(0, ::mkdir(directory.c_str(), 0755));
  // A device of its own where there are privileges, which could replace that of the system.
  std::string device = folder / "device";
  if (::mknod(device.c_str(), S_IFCHR | 0666, 0x103) != 0) device = "/dev/null";
  const int entries = folder.count();
  const std::pair<std::string, int> rows[] = {
      {"", ENOENT},
      {directory, EISDIR},
      {folder / "new/", EISDIR},
      {file + "/", ENOTDIR},
      {folder / std::string(300, 'n'), ENAMETOOLONG},
      {loop, ELOOP},
      {pipe, EPERM},
      {device, EPERM},
  };
  for (const auto& [path, error] : rows) {
    EXPECT_EQ(failure(4, path, error),
              thrownBy([name = path.c_str()] { UTF8File::saveAtomic(name, "x", 1); }));
  }
  EXPECT_EQ(failure(4, "", EFAULT), thrownBy([] { UTF8File::saveAtomic(nullptr, "x", 1); }));
  EXPECT_TRUE(S_ISCHR(statusOf(device).st_mode));
  EXPECT_TRUE(S_ISFIFO(statusOf(pipe).st_mode));
  EXPECT_EQ("old", fileBytes(file));
  EXPECT_EQ(entries, folder.count());
}

TEST(SaveAtomic, FailedAllocationLeavesTheOldFileAlone) {
  const TempFolder folder;
  // A long path, so that its copies do not fit into strings without an allocation.
  const std::string path = putFile(folder / "a-name-of-some-length", "old");
  const int descriptors = cc::test::openDescriptors();
  cc::test::sweepAllocations([&](cc::test::AllocSweep& sweep) {
    putFile(path, "old");
    const bool done = sweep.attempt([&] { UTF8File::saveAtomic(path.c_str(), "new", 3); });
    EXPECT_EQ(done ? "new" : "old", fileBytes(path));
    EXPECT_EQ(1, folder.count());
  });
  EXPECT_EQ(descriptors, cc::test::openDescriptors());
}

}  // namespace
