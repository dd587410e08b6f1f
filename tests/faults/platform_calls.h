/// @file
/// The functions of the platform layer that fail, and the point that each call passes.
#pragma once

#include <cerrno>

#include "tests/faults/fault_sweep.h"

// The ways in which each function fails, those that cannot left out. `errorText` knows no number,
// and the functions that set a locale do nothing.
#define CC_PLATFORM_CALLS(CALL)                                        \
  /* streams */                                                        \
  CALL(openStream, ENOENT, EACCES, EMFILE, ENFILE, ENOSPC, EROFS)      \
  CALL(closeStream, EIO, ENOSPC, EDQUOT, EINTR)                        \
  CALL(readStream, EIO, EISDIR, Ended)                                 \
  CALL(readStreamLine, EIO, EBADF)                                     \
  CALL(readStreamByte, EIO)                                            \
  CALL(writeStream, EIO, ENOSPC, EDQUOT, EFBIG, EPIPE, EINTR, Ended)   \
  CALL(writeStreamText, EIO, ENOSPC, EPIPE, EINTR)                     \
  CALL(flushStream, EIO, ENOSPC, EDQUOT, EINTR)                        \
  CALL(seekStream, ESPIPE, EINVAL, EOVERFLOW, EIO, EINTR)              \
  CALL(tellStream, ESPIPE, EOVERFLOW)                                  \
  /* paths */                                                          \
  CALL(statPath, ENOENT, EACCES, ELOOP, EOVERFLOW, EIO)                \
  CALL(pathStatus, ENOENT, EACCES, ENOTDIR, EIO)                       \
  CALL(makeDirectory, EEXIST, EACCES, ENOENT, ENOSPC, EMLINK, EROFS)   \
  CALL(removeDirectory, ENOENT, ENOTEMPTY, EACCES, EBUSY)              \
  CALL(removePath, ENOENT, EACCES, EBUSY, EROFS)                       \
  CALL(unlinkPath, ENOENT, EACCES, EIO)                                \
  CALL(renamePath, EACCES, ENOSPC, EXDEV, EDQUOT, EIO)                 \
  CALL(readLink, EACCES, EINVAL, ENOENT, EIO)                          \
  /* descriptors */                                                    \
  CALL(openFile, ENOENT, EACCES, EMFILE, ENFILE, EEXIST, ENOSPC, EIO)  \
  CALL(closeFile, EIO, ENOSPC, EDQUOT)                                 \
  CALL(readFile, EIO, EISDIR, Short, Ended)                            \
  CALL(writeFile, EIO, ENOSPC, EDQUOT, EFBIG, Short, Ended)            \
  CALL(seekFile, ESPIPE, EINVAL, EOVERFLOW)                            \
  CALL(truncateFile, EIO, EPERM, EFBIG)                                \
  CALL(fileStatus, EIO, EOVERFLOW)                                     \
  CALL(syncFile, EIO, ENOSPC, EDQUOT, EROFS)                           \
  CALL(changePermissions, EPERM, EIO, EROFS)                           \
  CALL(changeOwner, EPERM, EIO, EROFS)                                 \
  CALL(tryLockFile, EWOULDBLOCK, ENOLCK)                               \
  CALL(unlockFile, EINTR, ENOLCK)                                      \
  /* directories */                                                    \
  CALL(openDirectory, ENOENT, EACCES, EMFILE, ENFILE, ENOTDIR, ENOMEM) \
  CALL(readDirectory, EIO, ENOENT)                                     \
  CALL(closeDirectory, EIO, EINTR)                                     \
  /* processes and the rest */                                         \
  CALL(signalProcess, ESRCH, EPERM)                                    \
  CALL(randomBytes, ENOSYS, EFAULT)                                    \
  CALL(errorText, Ended)                                               \
  /* locales and times */                                              \
  CALL(characterType, Ended)                                           \
  CALL(setCharacterTypeFromEnvironment, ENOENT)                        \
  CALL(setNumericToC, ENOENT)                                          \
  CALL(requireNumericC, ENOENT)                                        \
  CALL(localTime, EOVERFLOW)                                           \
  CALL(formatTime, Ended)

namespace cc::test {

namespace calls {
#define CC_NUMBER(name, ...) name,
enum Call : int { CC_PLATFORM_CALLS(CC_NUMBER) Count };
#undef CC_NUMBER
}  // namespace calls

/// One call on its way through the faulty platform.
class Passage {
 public:
  /// Begins the call that the library makes at `site`.
  Passage(calls::Call call, const void* site);

  /// Whether it is to fail, and in which way.
  bool fails = false;
  int error = Ended;

  /// The result of a failing call, with errno as such a call leaves it.
  template <class Result>
  Result failing(Result result) const {
    if (error > 0) errno = error;
    return result;
  }
};

}  // namespace cc::test
