// The platform layer over Linux and the GNU C library. Nearly every function is the call it is
// named after. The two that are more: readStreamLine works on the bytes in the stream's own
// buffer, in the way the C library's inline getc_unlocked does, because neither fgets (zero bytes)
// nor getdelim (a buffer of its own) fits; readDirectory reads the 64-bit record and narrows it in
// place, because the 32-bit call gives up the whole listing at the first large inode number.

#include <fcntl.h>
#include <signal.h>
#include <stdio_ext.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/random.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "platform/blocks.h"
#include "platform/platform.h"

namespace cc::platform {

namespace {

/// Makes the call again for as long as a signal interrupts it.
template <class Call>
auto retried(Call call) {
  for (;;) {
    const auto result = call();
    if (result != -1 || errno != EINTR) return result;
  }
}

/// True when a read came back short only because of a signal; the stream is then ready to go on.
bool wasInterrupted(FILE* stream) {
  if (feof_unlocked(stream) || errno != EINTR) return false;
  clearerr_unlocked(stream);
  return true;
}

/// Copies bytes until a line feed or a carriage return was copied, or `n` bytes were; returns how
/// many.
std::size_t copyToLineEnd(char* to, const char* from, std::size_t n) {
  using Block = kernels::NativeBlock;
  std::size_t i = 0;
  for (; n - i >= Block::size; i += Block::size) {
    const Block::Bytes bytes = Block::load(from + i);
    Block::store(to + i, bytes);
    const Block::Mask ends = Block::mask(Block::either(Block::equal(bytes, Block::all('\n')),
                                                       Block::equal(bytes, Block::all('\r'))));
    if (ends != 0) return i + Block::first(ends) + 1;
  }
  while (i != n) {
    const char byte = from[i];
    to[i++] = byte;
    if (byte == '\n' || byte == '\r') break;
  }
  return i;
}

bool fitsLong(long long offset) {
  if (offset >= LONG_MIN && offset <= LONG_MAX) return true;
  errno = EOVERFLOW;
  return false;
}

void fill(FileStatus& status, const struct stat64& info) {
  status.regular = S_ISREG(info.st_mode);
  status.directory = S_ISDIR(info.st_mode);
  status.link = S_ISLNK(info.st_mode);
  status.size = info.st_size;
  status.permissions = info.st_mode & 07777U;
  status.owner = info.st_uid;
  status.group = info.st_gid;
  status.device = info.st_dev;
  status.number = info.st_ino;
}

}  // namespace

FILE* openStream(const char* path, const char* mode) {
  for (;;) {
    FILE* stream = std::fopen(path, mode);
    if (stream || errno != EINTR) return stream;
  }
}

int closeStream(FILE* stream) { return std::fclose(stream); }

std::size_t readStream(FILE* stream, void* buffer, std::size_t n) {
  std::size_t got = 0;
  for (;;) {
    got += std::fread(static_cast<char*>(buffer) + got, 1, n - got, stream);
    if (got == n || !wasInterrupted(stream)) return got;
  }
}

#if defined(__GLIBC__)
std::size_t readStreamLine(FILE* stream, char* buffer, std::size_t n) {
  std::size_t got = 0;
  while (got != n) {
    if (stream->_IO_read_ptr == stream->_IO_read_end) {
      if (__uflow(stream) == EOF) {
        if (wasInterrupted(stream)) continue;
        break;
      }
      --stream->_IO_read_ptr;
    }
    const auto ready = static_cast<std::size_t>(stream->_IO_read_end - stream->_IO_read_ptr);
    const std::size_t copied =
        copyToLineEnd(buffer + got, stream->_IO_read_ptr, ready < n - got ? ready : n - got);
    stream->_IO_read_ptr += copied;
    got += copied;
    if (buffer[got - 1] == '\n') break;
    if (buffer[got - 1] == '\r') --got;
  }
  return got;
}
#else
std::size_t readStreamLine(FILE* stream, char* buffer, std::size_t n) {
  std::size_t got = 0;
  while (got != n) {
    const int byte = readStreamByte(stream);
    if (byte == EOF) break;
    if (byte == '\r') continue;
    buffer[got++] = static_cast<char>(byte);
    if (byte == '\n') break;
  }
  return got;
}
#endif

int readStreamByte(FILE* stream) {
  for (;;) {
    const int byte = getc_unlocked(stream);
    if (byte != EOF || !wasInterrupted(stream)) return byte;
  }
}

int unreadStreamByte(FILE* stream, int byte) { return std::ungetc(byte, stream); }

std::size_t writeStream(FILE* stream, const void* data, std::size_t n) {
  return std::fwrite(data, 1, n, stream);
}

int writeStreamText(FILE* stream, const char* text) { return std::fputs(text, stream); }

int flushStream(FILE* stream) { return std::fflush(stream); }

int seekStream(FILE* stream, long long offset, int whence) {
  if (!fitsLong(offset)) return -1;
  return std::fseek(stream, static_cast<long>(offset), whence);
}

long long tellStream(FILE* stream) { return std::ftell(stream); }

bool streamEnded(FILE* stream) { return feof_unlocked(stream) != 0; }

void clearStream(FILE* stream) { clearerr_unlocked(stream); }

int streamDescriptor(FILE* stream) { return fileno_unlocked(stream); }

int statPath(const char* path, struct stat& info) { return ::stat(path, &info); }

int pathStatus(const char* path, FileStatus& status) {
  struct stat64 info;
  if (::lstat64(path, &info) != 0) return -1;
  fill(status, info);
  return 0;
}

int makeDirectory(const char* path, unsigned int permissions) { return ::mkdir(path, permissions); }

int removeDirectory(const char* path) { return ::rmdir(path); }

int removePath(const char* path) { return std::remove(path); }

int unlinkPath(const char* path) { return ::unlink(path); }

int renamePath(const char* from, const char* to) { return std::rename(from, to); }

long readLink(const char* path, char* buffer, std::size_t n) { return ::readlink(path, buffer, n); }

int openFile(const char* path, int flags, unsigned int permissions) {
  return retried([&] { return ::open(path, flags | O_CLOEXEC | O_NOCTTY, permissions); });
}

int closeFile(int fd) {
  // An interrupted close has released the descriptor; a second one could hit another thread's.
  if (::close(fd) == 0 || errno == EINTR) return 0;
  return -1;
}

long readFile(int fd, void* buffer, std::size_t n) {
  return retried([&] { return ::read(fd, buffer, n); });
}

long writeFile(int fd, const void* data, std::size_t n) {
  return retried([&] { return ::write(fd, data, n); });
}

long long seekFile(int fd, long long offset, int whence) {
  if (!fitsLong(offset)) return -1;
  return ::lseek(fd, static_cast<off_t>(offset), whence);
}

int truncateFile(int fd, long size) {
  return retried([&] { return ::ftruncate(fd, size); });
}

int fileStatus(int fd, FileStatus& status) {
  struct stat64 info;
  if (::fstat64(fd, &info) != 0) return -1;
  fill(status, info);
  return 0;
}

int syncFile(int fd) {
  return retried([&] { return ::fsync(fd); });
}

int changePermissions(int fd, unsigned int permissions) {
  return retried([&] { return ::fchmod(fd, permissions); });
}

int changeOwner(int fd, unsigned int owner, unsigned int group) {
  return retried([&] { return ::fchown(fd, owner, group); });
}

int tryLockFile(int fd) {
  return retried([&] { return ::flock(fd, LOCK_EX | LOCK_NB); });
}

int unlockFile(int fd) { return ::flock(fd, LOCK_UN); }

DIR* openDirectory(const char* path) { return ::opendir(path); }

dirent* readDirectory(DIR* directory) {
  struct dirent64* wide = ::readdir64(directory);
  if (!wide) return nullptr;
  constexpr std::size_t shift = offsetof(dirent64, d_name) - offsetof(dirent, d_name);
  if constexpr (shift == 0) {
    return reinterpret_cast<dirent*>(wide);
  } else {
    // The record's tail, from its length on, has the same shape in both: it stays where it is.
    static_assert(offsetof(dirent64, d_reclen) - offsetof(dirent, d_reclen) == shift);
    static_assert(offsetof(dirent64, d_type) - offsetof(dirent, d_type) == shift);
    const auto number = static_cast<decltype(dirent::d_ino)>(wide->d_ino);
    const auto offset = static_cast<decltype(dirent::d_off)>(wide->d_off);
    auto* plain = reinterpret_cast<dirent*>(reinterpret_cast<char*>(wide) + shift);
    plain->d_ino = number;
    plain->d_off = offset;
    plain->d_reclen = static_cast<unsigned short>(plain->d_reclen - shift);
    return plain;
  }
}

int closeDirectory(DIR* directory) { return ::closedir(directory); }

int processId() { return ::getpid(); }

int signalProcess(int pid, int signal) { return ::kill(pid, signal); }

void sleepFor(unsigned int milliseconds) {
  const timespec time = {static_cast<time_t>(milliseconds / 1000),
                         static_cast<long>(milliseconds % 1000) * 1000000};
  ::nanosleep(&time, nullptr);
}

int randomBytes(void* buffer, std::size_t n) {
  return retried([&] { return ::getrandom(buffer, n, 0); }) < 0 ? -1 : 0;
}

void preferLargePages(void* memory, std::size_t n) {
  constexpr std::size_t least = std::size_t{4} << 20;
  constexpr std::size_t large = std::size_t{2} << 20;
  if (n < least) return;
  const std::size_t before = (0 - reinterpret_cast<std::uintptr_t>(memory)) % large;
  ::madvise(static_cast<char*>(memory) + before, (n - before) / large * large, MADV_HUGEPAGE);
}

const char* errorText(int error) { return ::strerrordesc_np(error); }

}  // namespace cc::platform
