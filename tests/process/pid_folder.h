/// @file
/// A data directory for pid files, child processes that run a function, and gates between them.
#pragma once

#include <fcntl.h>
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
  const TempFolder folder;
  const std::string link = "/proc/" + std::to_string(::getpid()) + "/exe";
  inChild([&] {
    putFile(folder / "name", std::filesystem::read_symlink(link).filename());
    return 0;
  });
  return fileBytes(folder / "name");
}

/// A pipe whose readers go on when every process has closed the writing end, as starting another
/// program does.
class Gate {
 public:
  Gate() {
    if (::pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  }
  Gate(const Gate&) = delete;
  Gate& operator=(const Gate&) = delete;
  ~Gate() {
    open();
    ::close(ends[0]);
  }
  /// Lets those through who wait now or later, as far as this process keeps them.
  void open() {
    if (ends[1] >= 0) ::close(ends[1]);
    ends[1] = -1;
  }
  /// Waits until all others have opened it.
  void wait() {
    open();
    char byte;
    while (::read(ends[0], &byte, 1) > 0) {
    }
  }

 private:
  int ends[2] = {-1, -1};
};

}  // namespace cc::test
