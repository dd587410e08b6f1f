// The stream operations of UTF8File, its operations on paths and its reporting. Every failure is
// taken from errno right behind the call that failed and goes through `erro`, which alone looks at
// `exceptions`. Where success and failure are told apart by errno too (a short read or write), it
// is cleared before the call and put back after a success, so that nothing an earlier call left
// behind is reported, and nothing the client keeps there is lost.

#include "fileproc.h"

#include <cerrno>
#include <climits>
#include <cstring>
#include <utility>

#include "loc/message_numbers.h"
#include "platform/platform.h"

namespace {

using namespace cc;

constexpr const char* modeStrings[] = {"rb", "wb", "rb+"};

/// 0 when the stream is open and may be used, else the error that forbids it: the C library opens
/// a directory for reading without complaint.
int refusal(FILE* stream) {
  platform::FileStatus status;
  if (platform::fileStatus(platform::streamDescriptor(stream), status) != 0) return errno;
  return status.directory ? EISDIR : 0;
}

/// Writes all bytes; 0 on success, else what errno says, or -1 when it says nothing.
int writeBytes(FILE* stream, const void* data, std::size_t n) {
  const int before = errno;
  errno = 0;
  if (platform::writeStream(stream, data, n) != n) return errno ? errno : -1;
  errno = before;
  return 0;
}

bool isPath(const char* path) { return path && *path; }

/// Takes what ends a line that filled its buffer: carriage returns and a line feed. Any other byte
/// is left for the next piece. False at the end of the file or on an error.
bool takeLineEnd(FILE* stream) {
  int byte = platform::readStreamByte(stream);
  while (byte == '\r') byte = platform::readStreamByte(stream);
  if (byte != EOF && byte != '\n') platform::unreadStreamByte(stream, byte);
  return byte != EOF;
}

}  // namespace

UTF8File::~UTF8File() {
  exceptions = false;
  close();
}

// ---------------------------------------------------------------------- the open file

bool UTF8File::open(const char* path, Mode mode) {
  ChArr newName(path);
  errno = 0;
  stream = platform::openStream(path, modeStrings[mode]);
  int error = errno;
  if (stream) {
    error = refusal(stream);
    if (error) {
      platform::closeStream(stream);
      stream = nullptr;
    }
  }
  if (!stream) {
    erro(LocDictionaryCommonCore, MsgOpenFailed, path, error);
    return false;
  }
  name = std::move(newName);
  return true;
}

bool UTF8File::close() {
  if (!stream) return true;
  FILE* closing = std::exchange(stream, nullptr);
  if (platform::closeStream(closing) == 0) return true;
  erro(LocDictionaryCommonCore, MsgCloseFailed, name.get(), errno);
  return false;
}

bool UTF8File::read(void* buffer, int n) {
  if (n <= 0) return true;
  const int before = errno;
  errno = 0;
  const auto count = static_cast<std::size_t>(n);
  if (platform::readStream(stream, buffer, count) == count) {
    errno = before;
    return true;
  }
  const int error = errno;
  if (error == 0 || platform::streamEnded(stream)) {
    erro(LocDictionaryCommonCore, MsgFileEnded, name.get(), -1);
  } else {
    erro(LocDictionaryCommonCore, MsgReadFailed, name.get(), error);
  }
  return false;
}

bool UTF8File::write(const void* buffer, int n) {
  return n <= 0 ||
         write(ChPair(static_cast<const char*>(buffer), static_cast<const char*>(buffer) + n));
}

bool UTF8File::write(const char* text) { return write(ChPair(text)); }

bool UTF8File::write(const ChPair& slice) {
  const auto n = static_cast<std::size_t>(slice.end - slice.begin);
  if (n == 0) return true;
  const int error = writeBytes(stream, slice.begin, n);
  if (error == 0) return true;
  erro(LocDictionaryCommonCore, error > 0 ? MsgWriteFailed : MsgWriteStopped, name.get(), error);
  return false;
}

bool UTF8File::flush() {
  if (platform::flushStream(stream) == 0) return true;
  erro(LocDictionaryCommonCore, MsgFlushFailed, name.get(), -1);
  return false;
}

long long UTF8File::pos() { return platform::tellStream(stream); }

bool UTF8File::seek(long long offset, int whence) {
  if (platform::seekStream(stream, offset, whence) == 0) return true;
  erro(LocDictionaryCommonCore, MsgSeekFailed, name.get(), errno);
  return false;
}

long long UTF8File::size() {
  const long long place = pos();
  if (place < 0) {
    erro(LocDictionaryCommonCore, MsgSeekFailed, name.get(), errno);
    return -1;
  }
  if (!seek(0, SEEK_END)) return -1;
  const long long end = pos();
  if (end < 0) {
    const int error = errno;
    platform::seekStream(stream, place, SEEK_SET);
    erro(LocDictionaryCommonCore, MsgSeekFailed, name.get(), error);
    return -1;
  }
  return seek(place, SEEK_SET) ? end : -1;
}

long long UTF8File::checkSize(long long maxSize) {
  const long long bytes = size();
  if (bytes <= maxSize) return bytes;
  erro(LocDictionaryCommonCore, MsgTooLarge, name.get(), -1);
  return -1;
}

bool UTF8File::readLine(char* buffer, int size, bool* eof) {
  const std::size_t room = static_cast<std::size_t>(size) - 1;
  std::size_t length = platform::readStreamLine(stream, buffer, room);
  bool stopped = false;
  if (length != 0 && buffer[length - 1] == '\n') {
    --length;
  } else {
    stopped = length != room || !takeLineEnd(stream);
  }
  buffer[length] = 0;
  if (stopped) {
    if (!platform::streamEnded(stream)) {
      erro(LocDictionaryCommonCore, MsgReadFailed, name.get(), errno);
      return false;
    }
    platform::clearStream(stream);
    if (eof) *eof = true;
  }
  return true;
}

// ---------------------------------------------------------------------- paths

bool UTF8File::mkdir(const char* path) {
  if (platform::makeDirectory(path, 0755) == 0 || errno == EEXIST) return true;
  erro(LocDictionaryCommonCore, MsgMakeDirectoryFailed, path, errno);
  return false;
}

bool UTF8File::rmdir(const char* path) {
  if (platform::removeDirectory(path) == 0 || errno == ENOENT) return true;
  erro(LocDictionaryCommonCore, MsgRemoveDirectoryFailed, path, errno);
  return false;
}

bool UTF8File::remove(const char* path) {
  if (platform::removePath(path) == 0 || errno == ENOENT) return true;
  erro(LocDictionaryCommonCore, MsgRemoveFileFailed, path, errno);
  return false;
}

bool UTF8File::rename(const char* from, const char* to) {
  return platform::renamePath(from, to) == 0;
}

bool UTF8File::exist(const char* path) {
  Info ignored;
  return info(path, ignored);
}

bool UTF8File::info(const char* path, Info& info) {
  return isPath(path) && platform::statPath(path, info) == 0;
}

// ---------------------------------------------------------------------- reporting

void UTF8File::erro(const TTT& message, const char* fileName, int err) {
  if (!exceptions) return;
  if (!fileName) fileName = name.c_str();
  TTT failure(message);
  if (*fileName) {
    failure <= TTT(LocDictionaryCommonCore, MsgFileName);
    failure << fileName;
  }
  if (err > 0) {
    const char* text = platform::errorText(err);
    if (text) {
      failure <= TTT(LocDictionaryCommonCore, MsgSystemErrorText);
      failure << text;
    } else {
      failure <= TTT(LocDictionaryCommonCore, MsgSystemErrorNumber);
      failure << err;
    }
  }
  throw failure;
}

void UTF8File::erro(LocDictionaryId dictionary, int code, const char* fileName, int err) {
  if (!exceptions) return;
  erro(TTT(dictionary, code), fileName, err);
}
