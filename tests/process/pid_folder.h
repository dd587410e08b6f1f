/// @file
/// A data directory for pid files, and child processes that run a function.
#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "tests/support/temp_folder.h"

namespace cc::test {

/// A temporary folder that is the data directory while it exists.
class PidFolder : public TempFolder {
 public:
  PidFolder() { ::setenv("COMMON_CORE_DATA_DIR", (*this / "").c_str(), 1); }
  ~PidFolder() { ::unsetenv("COMMON_CORE_DATA_DIR"); }
};

/// Starts a child process that ends with what `action` returns.
template <class Action>
pid_t startChild(Action&& action) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(action());
  return child;
}

/// The exit code of a child process, or -1 when it was killed.
inline int exitCode(pid_t child) {
  int status = -1;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

template <class Action>
int inChild(Action&& action) {
  return exitCode(startChild(action));
}

/// The name of this program's executable as another process sees it, which is the emulator's where
/// the tests run in one.
inline std::string nameSeenByOthers() {
  const pid_t self = ::getpid();
  int ends[2];
  if (::pipe(ends) != 0) return {};
  inChild([&] {
    const std::string link = "/proc/" + std::to_string(self) + "/exe";
    char target[4096];
    const ssize_t n = ::readlink(link.c_str(), target, sizeof(target));
    return n > 0 && ::write(ends[1], target, static_cast<std::size_t>(n)) == n ? 0 : 1;
  });
  ::close(ends[1]);
  char target[4096];
  const ssize_t n = ::read(ends[0], target, sizeof(target));
  ::close(ends[0]);
  const std::string path(target, n > 0 ? static_cast<std::size_t>(n) : 0);
  return path.substr(path.rfind('/') + 1);
}

}  // namespace cc::test
