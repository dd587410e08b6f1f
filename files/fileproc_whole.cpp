// Whole files and records. A load measures, allocates and reads in as few calls as it takes, on a
// descriptor of its own: a stream's buffer would only be in the way. Targets that promise to stay
// untouched are filled last, by an operation that cannot fail.

#include <fcntl.h>

#include <cerrno>
#include <climits>
#include <cstdint>
#include <exception>
#include <new>

#include "fileproc.h"
#include "loc/message_numbers.h"
#include "platform/platform.h"

namespace {

using namespace cc;

constexpr std::size_t longestTransfer = std::size_t{1} << 30;

/// A file that is read from its start to its end; failures are thrown in the name of its path.
class WholeFile {
 public:
  explicit WholeFile(const char* place) : path(place) {}
  WholeFile(const WholeFile&) = delete;
  WholeFile& operator=(const WholeFile&) = delete;
  ~WholeFile() {
    if (fd >= 0) platform::closeFile(fd);
  }

  /// Opens the file and returns its size.
  std::size_t open(unsigned int maxSize);
  void read(char* to, std::size_t n);
  void close();
  void fail(MessageNumber message, int error) {
    UTF8File(true).erro(LocDictionaryCommonCore, message, path, error);
  }

 private:
  long long measure(const platform::FileStatus& status);

  const char* path;
  int fd = -1;
};

std::size_t WholeFile::open(unsigned int maxSize) {
  if (!path) fail(MsgOpenFailed, EFAULT);
  fd = platform::openFile(path, O_RDONLY, 0);
  platform::FileStatus status;
  if (fd < 0 || platform::fileStatus(fd, status) != 0) fail(MsgOpenFailed, errno);
  if (status.directory) fail(MsgOpenFailed, EISDIR);
  const long long size = measure(status);
  if (size > maxSize) fail(MsgTooLarge, -1);
  return static_cast<std::size_t>(size);
}

long long WholeFile::measure(const platform::FileStatus& status) {
  if (status.regular) return status.size;
  const long long size = platform::seekFile(fd, 0, SEEK_END);
  if (size < 0 || platform::seekFile(fd, 0, SEEK_SET) != 0) fail(MsgSeekFailed, errno);
  return size;
}

void WholeFile::read(char* to, std::size_t n) {
  while (n != 0) {
    const long got = platform::readFile(fd, to, n < longestTransfer ? n : longestTransfer);
    if (got < 0) fail(MsgReadFailed, errno);
    if (got == 0) fail(MsgFileEnded, -1);
    to += got;
    n -= static_cast<std::size_t>(got);
  }
}

void WholeFile::close() {
  const int closing = fd;
  fd = -1;
  if (platform::closeFile(closing) != 0) fail(MsgCloseFailed, errno);
}

/// The worker of all loads into arrays; files above `most` bytes do not fit the target.
std::size_t loadArray(const char* path, ArrayHolder<char>& content, unsigned int maxSize,
                      bool addTerminator, std::size_t most) {
  WholeFile file(path);
  const std::size_t size = file.open(maxSize);
  if (size > most) file.fail(MsgNoMemory, -1);
  if (size != 0 || addTerminator) {
    content.reset(new (std::nothrow) char[size + (addTerminator ? 1U : 0U)]);
    if (!content.get()) file.fail(MsgNoMemory, -1);
    platform::preferLargePages(content.get(), size);
    file.read(content.get(), size);
    if (addTerminator) content.get()[size] = 0;
  }
  file.close();
  return size;
}

void saveInPlace(const char* path, const char* data, std::size_t size) {
  UTF8File file(true);
  file.open(path, UTF8File::ModeWrite);
  file.write(ChPair(data, data + size));
  file.close();
}

}  // namespace

unsigned int UTF8File::load(const char* path, ArrayHolder<char>& content, unsigned int maxSize,
                            bool addTerminator) {
  const ChArr ownPath(path);  // the old content may hold the path
  content.reset();
  return static_cast<unsigned int>(
      loadArray(ownPath.get(), content, maxSize, addTerminator, SIZE_MAX - 1));
}

unsigned int UTF8File::load(const char* path, std::string& content, unsigned int maxSize) {
  const ChArr ownPath(path);
  content.clear();
  WholeFile file(ownPath.get());
  const std::size_t size = file.open(maxSize);
  try {
    content.reserve(size);
    platform::preferLargePages(content.data(), size);
    content.resize(size);
  } catch (const std::exception&) {  // no memory, or more than a string takes in 32 bits
    file.fail(MsgNoMemory, -1);
  }
  file.read(content.data(), size);
  file.close();
  return static_cast<unsigned int>(size);
}

unsigned int UTF8File::load(const char* path, Bag& content, unsigned int maxSize,
                            bool addTerminator) {
  ArrayHolder<char> loaded;
  const auto size = static_cast<int>(loadArray(path, loaded, maxSize, addTerminator, INT_MAX));
  content.setBuffer(loaded.steal(), size, -1);
  return static_cast<unsigned int>(size);
}

unsigned int UTF8File::load(const char* path, ChArr& content, unsigned int maxSize,
                            bool addTerminator) {
  ArrayHolder<char> loaded;
  const std::size_t size = loadArray(path, loaded, maxSize, addTerminator, SIZE_MAX - 1);
  content.adopt(loaded.steal());
  return static_cast<unsigned int>(size);
}

void UTF8File::save(const char* path, const void* data, unsigned int size) {
  saveInPlace(path, static_cast<const char*>(data), size);
}

void UTF8File::save(const char* path, const Bag& content) {
  saveInPlace(path, content.getBuffer(), static_cast<std::size_t>(content.getSize()));
}

void UTF8File::save(const char* path, const std::string& content) {
  saveInPlace(path, content.data(), content.size());
}

bool UTF8File::push(Bag& content) {
  const auto length = static_cast<std::uint32_t>(content.getSize());
  return write(&length, sizeof(length)) && write(content.getBuffer(), content.getSize());
}

bool UTF8File::pop(Bag& content) {
  std::uint32_t length = 0;
  if (!read(&length, sizeof(length))) return false;
  if (length == 0) {
    content.clear();
    return true;
  }
  ArrayHolder<char> record;
  if (length <= INT_MAX) record.reset(new (std::nothrow) char[length]);
  if (!record.get()) {
    erro(LocDictionaryCommonCore, MsgNoMemory, nullptr, -1);
    return false;
  }
  const auto size = static_cast<int>(length);
  if (!read(record.get(), size)) return false;
  content.setBuffer(record.steal(), size, -1);
  return true;
}
