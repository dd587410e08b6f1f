// ZFindFile over a folder that holds one entry of each type.

#include "ffproc.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <set>

#include "tests/support/temp_folder.h"

namespace {

using cc::test::putFile;
using cc::test::TempFolder;

using Names = std::multiset<std::string>;

Names namesOf(ZFindFile& find) {
  Names names;
  while (find.next()) {
    names.insert(find.entry->d_name);
    EXPECT_EQ(find.entry->d_type, find.type);
  }
  EXPECT_EQ(nullptr, find.dir);
  EXPECT_EQ(nullptr, find.entry);
  EXPECT_FALSE(find.next());
  return names;
}

/// A folder with a file, a link to it, a directory, a pipe and a socket.
struct Populated {
  Populated() {
    putFile(folder / "file", "");
    putFile(folder / "directory.txt", "");
    EXPECT_EQ(0, ::symlink("file", (folder / "link").c_str()));
    EXPECT_EQ(0, ::mkdir((folder / "directory").c_str(), 0755));
    EXPECT_EQ(0, ::mkfifo((folder / "pipe").c_str(), 0600));
    const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strcpy(address.sun_path, (folder / "socket").c_str());
    EXPECT_EQ(0, ::bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof(address)));
    ::close(fd);
  }
  TempFolder folder;
};

TEST(ZFindFile, MasksChooseTypes) {
  const Populated populated;
  struct Row {
    int include;
    int exclude;
    Names names;
  };
  const Row rows[] = {
      {12, 4, {"file", "directory.txt", "link"}},
      {4, 0, {"directory", "socket"}},
      {12, 0, {"file", "directory.txt", "link", "directory", "socket"}},
      {2, 8, {}},
      {2, 0, {"link"}},
      {1, 0, {"pipe"}},
  };
  for (const Row& row : rows) {
    ZFindFile find((populated.folder / "").c_str());
    if (row.include != 12) find.includeMask = row.include;
    if (row.exclude != 4) find.excludeMask = row.exclude;
    EXPECT_EQ(row.names, namesOf(find)) << row.include << ", " << row.exclude;
  }
}

TEST(ZFindFile, NullMeansTheCurrentDirectory) {
  const Populated populated;
  ASSERT_EQ(0, ::chdir((populated.folder / "").c_str()));
  ZFindFile find(nullptr);
  ASSERT_EQ(0, ::chdir("/"));
  EXPECT_EQ((Names{"file", "directory.txt", "link"}), namesOf(find));
}

TEST(ZFindFile, ClosesTheDirectoryEachWay) {
  const Populated populated;
  const int descriptors = cc::test::openDescriptors();
  {
    ZFindFile stopped((populated.folder / "").c_str());
    EXPECT_TRUE(stopped.next());
    stopped.release();
    EXPECT_EQ(descriptors, cc::test::openDescriptors());
    stopped.release();
    EXPECT_FALSE(stopped.next());
    const ZFindFile dropped((populated.folder / "").c_str());
  }
  EXPECT_EQ(descriptors, cc::test::openDescriptors());
}

}  // namespace
