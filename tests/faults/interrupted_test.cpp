// The calls that the platform layer makes again when a signal interrupts them. The linker leads
// the program's calls of the C library through here, so that they are interrupted at will.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/random.h>
#include <unistd.h>

#include <cerrno>
#include <functional>

#include "platform/platform.h"
#include "tests/support/temp_folder.h"

namespace {

int interruptions = 0;

bool isInterrupted() {
  if (interruptions == 0) return false;
  --interruptions;
  errno = EINTR;
  return true;
}

}  // namespace

// NOLINTBEGIN(readability-identifier-naming)
#define CC_INTERRUPTIBLE(Result, name, parameters, arguments)      \
  extern "C" Result __real_##name parameters;                      \
  extern "C" Result __wrap_##name parameters;                      \
  extern "C" Result __wrap_##name parameters {                     \
    return isInterrupted() ? Result(-1) : __real_##name arguments; \
  }

CC_INTERRUPTIBLE(int, open, (const char* path, int flags, unsigned int mode), (path, flags, mode))
CC_INTERRUPTIBLE(ssize_t, read, (int fd, void* to, std::size_t n), (fd, to, n))
CC_INTERRUPTIBLE(ssize_t, write, (int fd, const void* from, std::size_t n), (fd, from, n))
CC_INTERRUPTIBLE(int, ftruncate, (int fd, off_t size), (fd, size))
CC_INTERRUPTIBLE(int, fsync, (int fd), (fd))
CC_INTERRUPTIBLE(int, fchmod, (int fd, mode_t mode), (fd, mode))
CC_INTERRUPTIBLE(int, fchown, (int fd, uid_t owner, gid_t group), (fd, owner, group))
CC_INTERRUPTIBLE(int, flock, (int fd, int operation), (fd, operation))
CC_INTERRUPTIBLE(ssize_t, getrandom, (void* to, std::size_t n, unsigned int flags), (to, n, flags))
// NOLINTEND(readability-identifier-naming)

extern "C" FILE* __real_fopen(const char* path, const char* mode);
extern "C" FILE* __wrap_fopen(const char* path, const char* mode);
extern "C" FILE* __wrap_fopen(const char* path, const char* mode) {
  return isInterrupted() ? nullptr : __real_fopen(path, mode);
}

// An interrupted close has closed.
extern "C" int __real_close(int fd);
extern "C" int __wrap_close(int fd);
extern "C" int __wrap_close(int fd) {
  const int result = __real_close(fd);
  return isInterrupted() ? -1 : result;
}

namespace {

using namespace cc;            // NOLINT(google-build-using-namespace)
using namespace cc::platform;  // NOLINT(google-build-using-namespace)

TEST(Interrupted, CallsAreMadeAgain) {
  const test::TempFolder folder;
  const std::string path = folder / "a";
  char buffer[8] = {};
  int fd = -1;
  FILE* stream = nullptr;
  struct Row {
    const char* name;
    std::function<bool()> action;
    int left = 0;  // of three interruptions
  };
  const Row rows[] = {
      {"open", [&] { return (fd = openFile(path.c_str(), O_RDWR | O_CREAT, 0600)) >= 0; }},
      {"write", [&] { return writeFile(fd, "abc", 3) == 3; }},
      {"fsync", [&] { return syncFile(fd) == 0; }},
      {"fchmod", [&] { return changePermissions(fd, 0640) == 0; }},
      {"fchown", [&] { return changeOwner(fd, ~0U, ~0U) == 0; }},
      {"flock", [&] { return tryLockFile(fd) == 0; }},
      {"ftruncate", [&] { return truncateFile(fd, 2) == 0; }},
      {"getrandom", [&] { return randomBytes(buffer, sizeof buffer) == 0; }},
      {"read", [&] { return seekFile(fd, 0, SEEK_SET) == 0 && readFile(fd, buffer, 8) == 2; }},
      {"close, which is not", [&] { return closeFile(fd) == 0; }, 2},
      {"fopen", [&] { return (stream = openStream(path.c_str(), "rb")) != nullptr; }},
      {"fread", [&] { return readStream(stream, buffer, 2) == 2; }, 3},
  };
  const int descriptors = test::openDescriptors();
  for (const Row& row : rows) {
    interruptions = 3;
    const bool done = row.action();
    const int left = std::exchange(interruptions, 0);
    EXPECT_TRUE(done) << row.name;
    EXPECT_EQ(row.left, left) << row.name;
  }
  EXPECT_EQ(0, closeStream(stream));
  EXPECT_EQ(-1, closeFile(-1)) << "another failure is one";
  EXPECT_EQ("ab", test::fileBytes(path));
  EXPECT_EQ(descriptors, test::openDescriptors());
}

}  // namespace
