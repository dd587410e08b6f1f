/// @file
/// The library's only door to the system: one thin function per system or stream call it makes.
///
/// Failure style: that of the call wrapped (-1, null or a short count) with `errno` set; nothing
/// throws or allocates by itself. A call that a signal interrupts before it did anything is made
/// again, so EINTR appears only where repeating could lose or double data. Locale and time calls
/// stand in locale.h.
///
/// Tests link a platform whose calls fail on demand in place of this one: no other source makes a
/// system or stream call.
#pragma once

#include <dirent.h>
#include <sys/stat.h>
#include <sys/types.h>

#include <cstddef>
#include <cstdio>

namespace cc::platform {

// -------------------------------------------------------------------- streams

/// fopen.
FILE* openStream(const char* path, const char* mode);
/// fclose. The stream is gone in every case.
int closeStream(FILE* stream);
/// fread of `n` bytes. Fewer come back only at the end of the file or on an error, which
/// `streamEnded` tells apart.
std::size_t readStream(FILE* stream, void* buffer, std::size_t n);
/// Reads up to and including the next line feed, at most `n` bytes, zero bytes included and
/// carriage returns left out and not counted; returns how many. Fewer without a line feed come back
/// only at the end of the file or on an error. What lies behind them in the buffer is undefined.
std::size_t readStreamLine(FILE* stream, char* buffer, std::size_t n);
/// getc: the next byte, or EOF.
int readStreamByte(FILE* stream);
/// ungetc of the byte just read.
int unreadStreamByte(FILE* stream, int byte);
/// fwrite of `n` bytes.
std::size_t writeStream(FILE* stream, const void* data, std::size_t n);
/// fputs: the text without its terminator.
int writeStreamText(FILE* stream, const char* text);
/// fflush.
int flushStream(FILE* stream);
/// fseek; an offset that the platform's `long` cannot hold fails with EOVERFLOW.
int seekStream(FILE* stream, long long offset, int whence);
/// ftell.
long long tellStream(FILE* stream);
/// feof.
bool streamEnded(FILE* stream);
/// clearerr.
void clearStream(FILE* stream);
/// fileno.
int streamDescriptor(FILE* stream);

// -------------------------------------------------------------------- paths

/// What stands behind a descriptor or at a path, in 64 bits on every target.
struct FileStatus {
  bool regular = false;
  bool directory = false;
  bool link = false;
  long long size = 0;            ///< bytes
  unsigned int permissions = 0;  ///< the low 12 bits of the mode
  unsigned int owner = 0;
  unsigned int group = 0;
  unsigned long long device = 0;
  unsigned long long number = 0;  ///< the inode: with the device it names the file

  bool isSameFile(const FileStatus& other) const {
    return device == other.device && number == other.number;
  }
};

/// stat into the platform's plain record.
int statPath(const char* path, struct stat& info);
/// lstat: a symbolic link is described itself.
int pathStatus(const char* path, FileStatus& status);
/// mkdir.
int makeDirectory(const char* path, unsigned int permissions);
/// rmdir.
int removeDirectory(const char* path);
/// remove: a file or an empty directory.
int removePath(const char* path);
/// unlink.
int unlinkPath(const char* path);
/// rename.
int renamePath(const char* from, const char* to);
/// readlink: the number of bytes of the target put into `buffer`, no terminator; -1 on failure.
long readLink(const char* path, char* buffer, std::size_t n);

// -------------------------------------------------------------------- descriptors

/// open, always with O_CLOEXEC and O_NOCTTY.
int openFile(const char* path, int flags, unsigned int permissions);
/// close. The descriptor is gone in every case.
int closeFile(int fd);
/// read.
long readFile(int fd, void* buffer, std::size_t n);
/// write.
long writeFile(int fd, const void* data, std::size_t n);
/// lseek; an offset that the platform's `long` cannot hold fails with EOVERFLOW.
long long seekFile(int fd, long long offset, int whence);
/// ftruncate.
int truncateFile(int fd, long size);
/// fstat.
int fileStatus(int fd, FileStatus& status);
/// fsync.
int syncFile(int fd);
/// fchmod.
int changePermissions(int fd, unsigned int permissions);
/// fchown.
int changeOwner(int fd, unsigned int owner, unsigned int group);
/// flock, exclusive and without waiting: EWOULDBLOCK when another descriptor holds the lock.
int tryLockFile(int fd);
/// flock, release.
int unlockFile(int fd);

// -------------------------------------------------------------------- directories

/// opendir.
DIR* openDirectory(const char* path);
/// readdir. An entry whose numbers do not fit the plain record is not lost: they are cut.
dirent* readDirectory(DIR* directory);
/// closedir.
int closeDirectory(DIR* directory);

// -------------------------------------------------------------------- processes and the rest

/// getpid.
int processId();
/// kill.
int signalProcess(int pid, int signal);
/// Sleeps for `milliseconds`, or shorter when a signal comes.
void sleepFor(unsigned int milliseconds);
/// getrandom: fills `buffer` with at most 256 unpredictable bytes.
int randomBytes(void* buffer, std::size_t n);
/// madvise: the `n` bytes at `memory` are about to be written, all of them. Where they hold whole
/// large pages, the system is asked for these; a buffer of many megabytes is then there in a part
/// of the time. A hint: nothing depends on whether it is followed.
void preferLargePages(void* memory, std::size_t n);
/// The C library's untranslated text of a system error, or null when it has none. Lives forever.
const char* errorText(int error);

}  // namespace cc::platform
