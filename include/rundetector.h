/// @file
/// `RunDetector`: is another copy of this program running?
///
/// Failure style: `lock` answers false; `getState` folds every reading problem into a state. Only
/// the construction can throw, `std::bad_alloc`.
#pragma once

#include <string>

#include "common_core_api.h"

/// Finds and marks the running copy of a program through a pid file in the shared data directory.
///
/// The file holds the decimal process id of the running copy. An id counts only while a process
/// with that id lives and its executable has the expected name, so the file of a copy that crashed
/// is recognised as stale. Only a regular file is a pid file: nothing else at the path is ever
/// followed, waited for or written. Used by one thread.
class COMMON_CORE_API RunDetector {
 public:
  /// What the pid file says.
  enum State {
    Running = 0,       ///< a copy holds it: another one, or this one after `lock`
    NoPidFile = 1,     ///< there is none, or it cannot be opened
    StalePidFile = 2,  ///< there is one, but it names no live copy
  };

  /// `appName`, not null, names the pid file: the data directory, the name and ".pid". A live
  /// process counts as a copy when its executable is called `expectedName`; null means the name of
  /// this process's own executable, which is taken now. Empty, or an own name that cannot be read,
  /// makes every live process count. An executable that was replaced on disk keeps its name.
  RunDetector(const char* appName, const char* expectedName);

  /// One of `State`. Reads the pid file and changes nothing.
  int getState() const;
  /// Makes this process the running copy: true when the pid file now holds its id. False when a
  /// copy is running, this one included, or the file cannot be read, written or locked. Of several
  /// copies that start at the same moment exactly one succeeds. Waits for another one's `lock` or
  /// `unlock` of the same file, for two seconds at the most.
  bool lock();
  /// Removes the pid file if this object wrote it and it still holds this process's id, which is
  /// not so in a child of the process that wrote it. Waits as `lock` does, and leaves the file when
  /// that does not help. Destruction does not unlock: a program that ends without it leaves a stale
  /// file.
  void unlock();

 private:
  std::string processName;
  std::string pidPath;
  bool locked = false;
};

#if defined(__i386__)
static_assert(sizeof(RunDetector) == 52);
#endif
