// The functions of the platform layer that do more than make one call.

#include "platform/platform.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstring>
#include <string>

#include "tests/support/temp_folder.h"

namespace {

using namespace cc;
using test::putFile;
using test::TempFolder;

/// Interrupts system calls every few milliseconds while it exists.
class Interruptions {
 public:
  Interruptions() {
    struct sigaction action {};
    action.sa_handler = [](int) { count = count + 1; };
    ::sigaction(SIGALRM, &action, &before);  // without SA_RESTART
    setInterval(3000);
  }
  Interruptions(const Interruptions&) = delete;
  Interruptions& operator=(const Interruptions&) = delete;
  ~Interruptions() {
    setInterval(0);
    ::sigaction(SIGALRM, &before, nullptr);
  }
  static inline volatile sig_atomic_t count = 0;

 private:
  static void setInterval(long microseconds) {
    const itimerval timer = {{0, microseconds}, {0, microseconds}};
    ::setitimer(ITIMER_REAL, &timer, nullptr);
  }
  struct sigaction before {};
};

TEST(Platform, InterruptedCallsAreMadeAgain) {
  const TempFolder folder;
  const std::string path = folder / "pipe";
  ASSERT_EQ(0, ::mkfifo(path.c_str(), 0600));
  const std::string text = "abc\ndef\nghijkl";
  const pid_t writer = ::fork();
  if (writer == 0) {
    for (int part = 0; part < 2; ++part) {
      ::usleep(50000);
      const int fd = ::open(path.c_str(), O_WRONLY);
      for (const char c : text) {
        ::usleep(10000);
        if (::write(fd, &c, 1) != 1) ::_exit(1);
      }
      ::close(fd);
    }
    ::_exit(0);
  }
  const Interruptions interruptions;
  FILE* stream = platform::openStream(path.c_str(), "rb");
  ASSERT_NE(nullptr, stream);
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

  const int fd = platform::openFile(path.c_str(), O_RDONLY, 0);
  ASSERT_GE(fd, 0);
  std::string read;
  for (long n = 0; (n = platform::readFile(fd, buffer, sizeof(buffer))) > 0;) {
    read.append(buffer, static_cast<std::size_t>(n));
  }
  EXPECT_EQ(text, read);
  EXPECT_EQ(0, platform::closeFile(fd));
  EXPECT_GT(Interruptions::count, 20);
  int status = -1;
  while (::waitpid(writer, &status, 0) < 0 && errno == EINTR) {
  }
  EXPECT_EQ(0, status);
}

TEST(Platform, DirectoryEntriesAreThoseOfTheSystem) {
  const TempFolder folder;
  for (int i = 1; i < 100; ++i) putFile(folder / std::string(static_cast<std::size_t>(i), 'n'), "");
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
  EXPECT_EQ(99 + 2, entries);
  EXPECT_EQ(0, platform::closeDirectory(directory));
}

TEST(Platform, StatusTellsWhatStandsThere) {
  const TempFolder folder;
  const std::string file = putFile(folder / "file", "");
  const std::string link = folder / "link";
  ASSERT_EQ(0, ::symlink("file", link.c_str()));
  ASSERT_EQ(0, ::chmod(file.c_str(), 04640));
  platform::FileStatus ofFile;
  platform::FileStatus ofLink;
  platform::FileStatus ofDescriptor;
  ASSERT_EQ(0, platform::pathStatus(file.c_str(), ofFile));
  ASSERT_EQ(0, platform::pathStatus(link.c_str(), ofLink));
  const int fd = platform::openFile(link.c_str(), O_RDONLY, 0);
  ASSERT_EQ(0, platform::fileStatus(fd, ofDescriptor));
  platform::closeFile(fd);
  EXPECT_TRUE(ofFile.regular && !ofFile.link && !ofFile.directory);
  EXPECT_TRUE(ofLink.link && !ofLink.regular);
  EXPECT_EQ(04640U, ofFile.permissions);
  EXPECT_TRUE(ofFile.isSameFile(ofDescriptor));
  EXPECT_FALSE(ofFile.isSameFile(ofLink));
  EXPECT_EQ(-1, platform::pathStatus((folder / "none").c_str(), ofFile));
  EXPECT_EQ(-1, platform::fileStatus(-1, ofFile));
}

TEST(Platform, ErrorTextsAreUntranslatedAndComplete) {
  EXPECT_STREQ("No such file or directory", platform::errorText(ENOENT));
  EXPECT_STREQ("No space left on device", platform::errorText(ENOSPC));
  for (const int error : {-1, 41, 58, 134, 9999, INT_MAX, INT_MIN}) {
    EXPECT_EQ(nullptr, platform::errorText(error)) << error;
  }
}

TEST(Platform, RandomBytesDiffer) {
  unsigned char first[16] = {};
  unsigned char second[16] = {};
  EXPECT_EQ(0, platform::randomBytes(first, sizeof(first)));
  EXPECT_EQ(0, platform::randomBytes(second, sizeof(second)));
  EXPECT_NE(0, std::memcmp(first, second, sizeof(first)));
}

}  // namespace
