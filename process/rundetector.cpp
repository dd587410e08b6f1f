// The pid-file protocol. A file is taken over or removed only under an advisory lock on it, and
// only while the path still names the very file that was locked: whoever waited for the lock while
// another copy removed the file starts over with the file that is there now. Looking needs no lock.
// So of any number of copies, those that get the lock late find the first one's id in the file, and
// a copy that leaves removes no file but its own. The lock is waited for in short naps, and not for
// ever, because everybody who may open the file could hold it.

#include "rundetector.h"

#include <fcntl.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <string_view>

#include "libpaths.h"
#include "platform/platform.h"

namespace {

using namespace cc;

constexpr unsigned int napMilliseconds = 1;
constexpr int mostNaps = 2000;
constexpr int mostTries = 100;
constexpr std::string_view deletedMark = " (deleted)";

bool isSpace(int byte) { return byte == ' ' || (byte >= '\t' && byte <= '\r'); }
bool isDigit(int byte) { return byte >= '0' && byte <= '9'; }

/// The bytes of a file, one after another.
class ByteReader {
 public:
  explicit ByteReader(int file) : fd(file) {}

  /// The next byte, or -1 at the end or when it cannot be read, which `failed` tells apart.
  int next() {
    if (at == count) {
      at = 0;
      count = platform::readFile(fd, block, sizeof(block));
    }
    return at < count ? static_cast<unsigned char>(block[at++]) : -1;
  }
  bool failed() const { return count < 0; }

 private:
  int fd;
  long at = 0;
  long count = 0;
  char block[64];
};

// ---------------------------------------------------------------------- the pid file

/// The regular file at the path. Nothing else is followed, waited for or kept open.
class PidFile {
 public:
  explicit PidFile(const std::string& place) : path(place) {}
  PidFile(const PidFile&) = delete;
  PidFile& operator=(const PidFile&) = delete;
  ~PidFile() { close(); }

  bool open(int flags);
  /// Closes and releases the lock; false when the system reports a failure of what was written.
  bool close();
  /// Waits for the lock for as long as naps are left.
  bool lock(int& naps);
  /// True while the path names this file.
  bool isAtPath() const;
  /// The process id that the file holds, 0 when its content is none, -1 when it cannot be read.
  int readId() const;
  /// Replaces the content; after a failure the file is empty or as it was.
  bool writeId(int id);

 private:
  const std::string& path;
  int fd = -1;
};

bool PidFile::open(int flags) {
  fd = platform::openFile(path.c_str(), flags | O_NOFOLLOW | O_NONBLOCK, 0666);
  if (fd < 0) return false;
  platform::FileStatus status;
  if (platform::fileStatus(fd, status) == 0 && status.regular) return true;
  close();
  return false;
}

bool PidFile::close() {
  if (fd < 0) return true;
  // By hand, since a child that another thread forked meanwhile holds the descriptor too.
  platform::unlockFile(fd);
  const bool closed = platform::closeFile(fd) == 0;
  fd = -1;
  return closed;
}

bool PidFile::lock(int& naps) {
  while (platform::tryLockFile(fd) != 0) {
    if (errno != EWOULDBLOCK || naps == 0) return false;
    --naps;
    platform::sleepFor(napMilliseconds);
  }
  return true;
}

bool PidFile::isAtPath() const {
  platform::FileStatus here;
  platform::FileStatus there;
  return platform::fileStatus(fd, here) == 0 && platform::pathStatus(path.c_str(), there) == 0 &&
         here.isSameFile(there);
}

int PidFile::readId() const {
  ByteReader reader(fd);
  int byte = reader.next();
  while (isSpace(byte)) byte = reader.next();
  const bool negative = byte == '-';
  if (negative || byte == '+') byte = reader.next();
  long long id = 0;
  for (; isDigit(byte); byte = reader.next()) {
    if (id <= INT_MAX) id = id * 10 + (byte - '0');
  }
  if (reader.failed()) return -1;
  return negative || id > INT_MAX ? 0 : static_cast<int>(id);
}

bool PidFile::writeId(int id) {
  char text[16];
  const int n = std::snprintf(text, sizeof(text), "%d", id);
  if (platform::seekFile(fd, 0, SEEK_SET) != 0 || platform::truncateFile(fd, 0) != 0) return false;
  if (platform::writeFile(fd, text, static_cast<std::size_t>(n)) == n) return true;
  platform::truncateFile(fd, 0);  // a cut number would be the id of another process
  return false;
}

// ---------------------------------------------------------------------- processes

/// The file name of a process's executable, or null data when it cannot be read. Lies in `buffer`.
std::string_view executableName(int id, char (&buffer)[4096]) {
  char link[32];
  std::snprintf(link, sizeof(link), "/proc/%d/exe", id);
  const long length = platform::readLink(link, buffer, sizeof(buffer) - 1);
  if (length < 0) return {};
  const std::string_view target(buffer, static_cast<std::size_t>(length));
  return target.substr(target.rfind('/') + 1);
}

/// The name without the kernel's mark of an executable that was replaced or removed.
std::string_view unmarked(std::string_view name) {
  if (name.ends_with(deletedMark)) name.remove_suffix(deletedMark.size());
  return name;
}

/// True when the process lives and is not known to be another program than `expected`.
bool isCopy(int id, std::string_view expected) {
  if (id <= 0) return false;
  if (platform::signalProcess(id, 0) != 0 && errno == ESRCH) return false;
  char buffer[4096];
  const std::string_view name = executableName(id, buffer);
  return !name.data() || expected.empty() || name == expected || unmarked(name) == expected;
}

}  // namespace

RunDetector::RunDetector(const char* appName, const char* expectedName)
    : pidPath(userDataCommonDirForWrite_utf8()) {
  pidPath += appName;
  pidPath += ".pid";
  if (expectedName) {
    processName = expectedName;
  } else {
    char buffer[4096];
    processName = unmarked(executableName(platform::processId(), buffer));
  }
}

int RunDetector::getState() const {
  PidFile file(pidPath);
  if (!file.open(O_RDONLY)) return NoPidFile;
  return isCopy(file.readId(), processName) ? Running : StalePidFile;
}

bool RunDetector::lock() {
  if (getState() == Running) return false;
  int naps = mostNaps;
  for (int tries = 0; tries < mostTries; ++tries) {
    PidFile file(pidPath);
    if (!file.open(O_RDWR | O_CREAT) || !file.lock(naps)) return false;
    if (!file.isAtPath()) continue;
    // What cannot be read may name a live copy.
    const int id = file.readId();
    if (id < 0 || isCopy(id, processName) || !file.writeId(platform::processId())) return false;
    locked = true;
    return file.close();
  }
  return false;
}

void RunDetector::unlock() {
  if (!locked) return;
  locked = false;
  int naps = mostNaps;
  PidFile file(pidPath);
  if (file.open(O_RDWR) && file.lock(naps) && file.isAtPath() &&
      file.readId() == platform::processId()) {
    platform::unlinkPath(pidPath.c_str());
  }
}
