// The functions of the platform layer that do more than make one call.

#include "platform/platform.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <string>
#include <string_view>

#include "tests/support/temp_folder.h"

namespace {

using namespace cc;
using test::putFile;
using test::TempFolder;

TEST(Platform, InterruptedReadsOfStreamsAreMadeAgain) {
  struct Source {
    std::string_view left = "abc\ndef\nghijkl";
    int reads = 0;
  } source;
  cookie_io_functions_t functions{};
  functions.read = [](void* cookie, char* to, std::size_t) -> ssize_t {  // byte by byte
    Source& from = *static_cast<Source*>(cookie);
    if (from.reads++ % 3 != 2) return errno = EINTR, -1;
    const std::size_t n = from.left.copy(to, 1);
    from.left.remove_prefix(n);
    return static_cast<ssize_t>(n);
  };
  FILE* stream = ::fopencookie(&source, "r", functions);
  char buffer[100] = {};
  EXPECT_EQ(4U, platform::readStreamLine(stream, buffer, sizeof(buffer)));
  EXPECT_EQ('d', platform::readStreamByte(stream));
  EXPECT_EQ('d', platform::unreadStreamByte(stream, 'd'));
  EXPECT_EQ(3U, platform::readStreamLine(stream, buffer, 3));
  EXPECT_EQ('\n', platform::readStreamByte(stream));
  EXPECT_FALSE(platform::streamEnded(stream));
  EXPECT_EQ(6U, platform::readStream(stream, buffer, sizeof(buffer)));
  EXPECT_EQ("ghijkl", std::string(buffer, 6));
  EXPECT_TRUE(platform::streamEnded(stream));
  EXPECT_EQ(0U, platform::readStreamLine(stream, buffer, sizeof(buffer)));
  EXPECT_EQ(0, platform::closeStream(stream));
}

TEST(Platform, DirectoryEntriesAreThoseOfTheSystem) {
  const TempFolder folder;
  const std::string longest(255, 'n');
  for (std::size_t i = 1; i <= longest.size(); ++i) putFile(folder / longest.substr(0, i), "");
  DIR* directory = platform::openDirectory((folder / "").c_str());
  ASSERT_NE(nullptr, directory);
  int entries = 0;
  while (const dirent* entry = platform::readDirectory(directory)) {
    ++entries;
    platform::FileStatus status;
    const std::string path = folder / entry->d_name;
    ASSERT_EQ(0, platform::pathStatus(path.c_str(), status)) << path;
    EXPECT_EQ(status.directory ? DT_DIR : DT_REG, entry->d_type);
    if (std::string(entry->d_name) != "..") {
      EXPECT_EQ(static_cast<decltype(entry->d_ino)>(status.number), entry->d_ino);
    }
    EXPECT_GT(entry->d_reclen, offsetof(dirent, d_name) + std::string(entry->d_name).size());
  }
  EXPECT_EQ(255 + 2, entries);
  EXPECT_EQ(0, platform::closeDirectory(directory));
}

TEST(Platform, FailedCallsAreNotMadeAgain) {
  FILE* stream = platform::openStream("/", "rb");
  ASSERT_NE(nullptr, stream);
  EXPECT_EQ(EOF, platform::readStreamByte(stream));
  EXPECT_EQ(EISDIR, errno);
  EXPECT_EQ(0, platform::closeStream(stream));
  platform::FileStatus status;
  EXPECT_EQ(-1, platform::fileStatus(-1, status));
  EXPECT_EQ(-1, platform::randomBytes(nullptr, 16));
}

TEST(Platform, ErrorTextsAreUntranslatedAndComplete) {
  EXPECT_STREQ("No such file or directory", platform::errorText(ENOENT));
  for (const int error : {-1, 41, 9999}) EXPECT_EQ(nullptr, platform::errorText(error)) << error;
}

TEST(Platform, RandomBytesDiffer) {
  unsigned char bytes[2][16] = {};
  for (unsigned char* random : bytes) EXPECT_EQ(0, platform::randomBytes(random, 16));
  EXPECT_NE(0, std::memcmp(bytes[0], bytes[1], 16));
}

}  // namespace
