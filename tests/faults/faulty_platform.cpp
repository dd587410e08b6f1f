// The platform layer that fails on demand. The library's own sources are compiled here a second
// time, in a namespace inside their own, and do the work of the calls that do not fail.

#include <cctype>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <cwctype>

#include "platform/locale.h"
#include "platform/platform.h"
#include "tests/faults/platform_calls.h"

#define platform platform::real
#include "platform/linux.cpp"  // NOLINT(bugprone-suspicious-include)
#undef platform

#define locale locale::real
#include "platform/locale.cpp"  // NOLINT(bugprone-suspicious-include)
#undef locale

// Starts the function `name`; what follows is the call itself, or its failure.
#define CC_PASS(name) \
  const cc::test::Passage pass(cc::test::calls::name, __builtin_return_address(0))

// Functions that make the call, or return `failure` instead.
#define CC_EITHER(Result, failure, name, parameters, arguments)                            \
  Result name parameters {                                                                 \
    CC_PASS(name);                                                                         \
    return pass.fails ? pass.failing(static_cast<Result>(failure)) : real::name arguments; \
  }
// Functions that make the call, which has its effect also when it fails: what is to be closed is
// gone.
#define CC_ALWAYS(Result, failure, name, parameters, arguments)              \
  Result name parameters {                                                   \
    CC_PASS(name);                                                           \
    const Result result = real::name arguments;                              \
    return pass.fails ? pass.failing(static_cast<Result>(failure)) : result; \
  }
// Functions without a result, which have no effect when they fail.
#define CC_OR_NOTHING(name)        \
  void name() {                    \
    CC_PASS(name);                 \
    if (!pass.fails) real::name(); \
  }
// Functions that cannot fail, or that only look at their arguments.
#define CC_ONLY(Result, name, parameters, arguments) \
  Result name parameters { return real::name arguments; }

namespace cc::platform {

namespace {

// The stream whose last read was made to end early.
FILE* endedStream = nullptr;

}  // namespace

CC_EITHER(FILE*, nullptr, openStream, (const char* path, const char* mode), (path, mode))
CC_ALWAYS(int, EOF, closeStream, (FILE * stream), (stream))

std::size_t readStream(FILE* stream, void* buffer, std::size_t n) {
  CC_PASS(readStream);
  endedStream = pass.fails && pass.error == test::Ended ? stream : nullptr;
  const std::size_t got = real::readStream(stream, buffer, pass.fails ? n / 2 : n);
  return pass.fails ? pass.failing(got) : got;
}

std::size_t readStreamLine(FILE* stream, char* buffer, std::size_t n) {
  CC_PASS(readStreamLine);
  const std::size_t got = real::readStreamLine(stream, buffer, pass.fails ? 1 : n);
  return pass.fails ? pass.failing(got) : got;
}

std::size_t writeStream(FILE* stream, const void* data, std::size_t n) {
  CC_PASS(writeStream);
  const std::size_t taken = real::writeStream(stream, data, pass.fails ? n / 2 : n);
  return pass.fails ? pass.failing(taken) : taken;
}

bool streamEnded(FILE* stream) { return stream == endedStream || real::streamEnded(stream); }

CC_EITHER(int, EOF, readStreamByte, (FILE * stream), (stream))
CC_EITHER(int, EOF, writeStreamText, (FILE * stream, const char* text), (stream, text))
CC_EITHER(int, EOF, flushStream, (FILE * stream), (stream))
CC_EITHER(int, -1, seekStream, (FILE * stream, long long offset, int whence),
          (stream, offset, whence))
CC_EITHER(long long, -1, tellStream, (FILE * stream), (stream))
CC_ONLY(int, unreadStreamByte, (FILE * stream, int byte), (stream, byte))
CC_ONLY(void, clearStream, (FILE * stream), (stream))
CC_ONLY(int, streamDescriptor, (FILE * stream), (stream))

CC_EITHER(int, -1, statPath, (const char* path, struct stat& info), (path, info))
CC_EITHER(int, -1, pathStatus, (const char* path, FileStatus& status), (path, status))
CC_EITHER(int, -1, makeDirectory, (const char* path, unsigned int permissions), (path, permissions))
CC_EITHER(int, -1, removeDirectory, (const char* path), (path))
CC_EITHER(int, -1, removePath, (const char* path), (path))
CC_EITHER(int, -1, unlinkPath, (const char* path), (path))
CC_EITHER(int, -1, renamePath, (const char* from, const char* to), (from, to))
CC_EITHER(long, -1, readLink, (const char* path, char* buffer, std::size_t n), (path, buffer, n))

CC_EITHER(int, -1, openFile, (const char* path, int flags, unsigned int permissions),
          (path, flags, permissions))
CC_ALWAYS(int, -1, closeFile, (int fd), (fd))

long readFile(int fd, void* buffer, std::size_t n) {
  CC_PASS(readFile);
  if (!pass.fails) return real::readFile(fd, buffer, n);
  if (pass.error == test::Short) return real::readFile(fd, buffer, (n + 1) / 2);
  return pass.error == test::Ended ? 0 : pass.failing(-1L);
}

long writeFile(int fd, const void* data, std::size_t n) {
  CC_PASS(writeFile);
  if (!pass.fails) return real::writeFile(fd, data, n);
  if (pass.error == test::Short) return real::writeFile(fd, data, (n + 1) / 2);
  return pass.error == test::Ended ? 0 : pass.failing(-1L);
}

CC_EITHER(long long, -1, seekFile, (int fd, long long offset, int whence), (fd, offset, whence))
CC_EITHER(int, -1, truncateFile, (int fd, long size), (fd, size))
CC_EITHER(int, -1, fileStatus, (int fd, FileStatus& status), (fd, status))
CC_EITHER(int, -1, syncFile, (int fd), (fd))
CC_EITHER(int, -1, changePermissions, (int fd, unsigned int permissions), (fd, permissions))
CC_EITHER(int, -1, changeOwner, (int fd, unsigned int owner, unsigned int group),
          (fd, owner, group))
CC_EITHER(int, -1, tryLockFile, (int fd), (fd))
CC_EITHER(int, -1, unlockFile, (int fd), (fd))

CC_EITHER(DIR*, nullptr, openDirectory, (const char* path), (path))
CC_EITHER(dirent*, nullptr, readDirectory, (DIR * directory), (directory))
CC_ALWAYS(int, -1, closeDirectory, (DIR * directory), (directory))

CC_ONLY(int, processId, (), ())
CC_ONLY(void, preferLargePages, (void* memory, std::size_t n), (memory, n))
CC_EITHER(int, -1, signalProcess, (int pid, int signal), (pid, signal))
CC_EITHER(int, -1, randomBytes, (void* buffer, std::size_t n), (buffer, n))
CC_EITHER(const char*, nullptr, errorText, (int error), (error))

// Nobody waits here for a lock that will not come.
void sleepFor(unsigned int /*milliseconds*/) {}

}  // namespace cc::platform

namespace cc::locale {

CC_EITHER(const char*, nullptr, characterType, (), ())
CC_OR_NOTHING(setCharacterTypeFromEnvironment)
CC_OR_NOTHING(setNumericToC)
CC_OR_NOTHING(requireNumericC)
CC_ONLY(int, lower, (int byte), (byte))
CC_ONLY(int, upper, (int byte), (byte))
CC_ONLY(bool, isLower, (int byte), (byte))
CC_ONLY(bool, isUpper, (int byte), (byte))
CC_ONLY(unsigned int, lowerWide, (unsigned int character), (character))
CC_ONLY(unsigned int, upperWide, (unsigned int character), (character))
CC_ONLY(long long, parseSigned, (const char* s, char** end), (s, end))
CC_ONLY(unsigned long long, parseUnsigned, (const char* s, char** end), (s, end))
CC_ONLY(double, parseDouble, (const char* s, char** end), (s, end))
CC_ONLY(int, formatText, (char* buf, std::size_t size, const char* format, va_list args),
        (buf, size, format, args))
CC_EITHER(bool, false, localTime, (std::time_t t, std::tm& out), (t, out))
CC_EITHER(std::size_t, 0, formatTime,
          (char* buf, std::size_t size, const char* format, const std::tm& time),
          (buf, size, format, time))

}  // namespace cc::locale
