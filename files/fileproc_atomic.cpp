// saveAtomic: the content goes into a new file with an unpredictable name in the target's folder,
// which takes the target's place by renaming only after everything else succeeded. Until then its
// destructor removes it, whatever goes wrong. Symbolic links are followed by hand first, since
// renaming would replace the link itself. Each step returns 0 or the error number of its call.

#include <fcntl.h>

#include <cerrno>
#include <string>
#include <string_view>

#include "fileproc.h"
#include "loc/message_numbers.h"
#include "platform/platform.h"

namespace {

using namespace cc;

constexpr int stoppedShort = -1;  // a failure to write without an error number
constexpr int mostLinks = 40;     // as many as the system itself follows
constexpr int mostNames = 100;
constexpr std::size_t longestPath = 4096;
constexpr std::size_t longestTransfer = std::size_t{1} << 30;

/// The part of a path before the file's own name: empty, or with its final "/".
std::string folderOf(const std::string& path) { return path.substr(0, path.rfind('/') + 1); }

/// Where the content is to go.
struct Target {
  std::string path;  // no symbolic link
  bool exists = false;
  platform::FileStatus status;  // when it exists

  /// Goes from the client's path to a regular file, or a place where none is yet.
  int resolve(const char* given);

 private:
  int followLink();
};

int Target::resolve(const char* given) {
  if (!given) return EFAULT;
  path = given;
  for (int links = 0; links <= mostLinks; ++links) {
    if (path.empty()) return ENOENT;
    if (platform::pathStatus(path.c_str(), status) != 0) {
      if (errno != ENOENT) return errno;
      return path.back() == '/' ? EISDIR : 0;
    }
    if (!status.link) {
      exists = true;
      if (status.directory) return EISDIR;
      return status.regular ? 0 : EPERM;
    }
    const int error = followLink();
    if (error != 0) return error;
  }
  return ELOOP;
}

int Target::followLink() {
  char text[longestPath];
  const long length = platform::readLink(path.c_str(), text, sizeof(text));
  if (length < 0) return errno;
  const auto n = static_cast<std::size_t>(length);
  if (n == sizeof(text)) return ENAMETOOLONG;
  const std::string_view link(text, n);
  path = link.starts_with('/') ? std::string() : folderOf(path);
  path += link;
  return 0;
}

/// The file that is to become the target; it vanishes with the object unless it did.
class NewFile {
 public:
  NewFile() = default;
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;
  ~NewFile() {
    close();
    if (!path.empty()) platform::unlinkPath(path.c_str());
  }

  int create(const std::string& folder, unsigned int permissions);
  int write(const char* data, std::size_t n);
  int takeOwnerAndPermissions(const platform::FileStatus& status);
  int sync() { return platform::syncFile(fd) == 0 ? 0 : errno; }
  int close();
  int replace(const Target& target);

 private:
  int fd = -1;
  std::string path;  // empty while there is no file
};

int NewFile::create(const std::string& folder, unsigned int permissions) {
  for (int tries = 0; tries < mostNames; ++tries) {
    unsigned char bytes[16];
    if (platform::randomBytes(bytes, sizeof(bytes)) != 0) return errno;
    std::string name = folder + ".save-";
    for (const unsigned char byte : bytes) {
      name += "0123456789abcdef"[byte >> 4];
      name += "0123456789abcdef"[byte & 15];
    }
    fd = platform::openFile(name.c_str(), O_WRONLY | O_CREAT | O_EXCL, permissions);
    if (fd >= 0) {
      path.swap(name);
      return 0;
    }
    if (errno != EEXIST) return errno;
  }
  return EEXIST;
}

int NewFile::write(const char* data, std::size_t n) {
  while (n != 0) {
    const long written = platform::writeFile(fd, data, n < longestTransfer ? n : longestTransfer);
    if (written < 0) return errno;
    if (written == 0) return stoppedShort;
    data += written;
    n -= static_cast<std::size_t>(written);
  }
  return 0;
}

int NewFile::takeOwnerAndPermissions(const platform::FileStatus& status) {
  // Owner and group as far as this process may give files away; before the permissions, since
  // giving a file away takes some of them.
  constexpr unsigned int unchanged = ~0U;
  if (platform::changeOwner(fd, status.owner, status.group) != 0) {
    platform::changeOwner(fd, unchanged, status.group);
  }
  return platform::changePermissions(fd, status.permissions) == 0 ? 0 : errno;
}

int NewFile::close() {
  if (fd < 0) return 0;
  const int closing = fd;
  fd = -1;
  return platform::closeFile(closing) == 0 ? 0 : errno;
}

int NewFile::replace(const Target& target) {
  if (platform::renamePath(path.c_str(), target.path.c_str()) != 0) return errno;
  path.clear();
  return 0;
}

/// Makes the renaming itself lasting. A failure is none of the save's: whichever file the folder
/// names after a crash is whole.
void syncFolder(const std::string& folder) {
  const int fd =
      platform::openFile(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY, 0);
  if (fd < 0) return;
  platform::syncFile(fd);
  platform::closeFile(fd);
}

void replaceWhole(const char* path, const char* data, std::size_t size) {
  UTF8File reporter(true);
  const auto check = [&](MessageNumber message, int error) {
    if (error != 0) reporter.erro(LocDictionaryCommonCore, message, path, error);
  };
  Target target;
  check(MsgOpenFailed, target.resolve(path));
  const std::string folder = folderOf(target.path);  // after the renaming nothing may throw
  NewFile file;
  check(MsgOpenFailed, file.create(folder, target.exists ? 0600 : 0666));
  const int written = file.write(data, size);
  check(written == stoppedShort ? MsgWriteStopped : MsgWriteFailed, written);
  if (target.exists) check(MsgOpenFailed, file.takeOwnerAndPermissions(target.status));
  check(MsgFlushFailed, file.sync());
  check(MsgCloseFailed, file.close());
  check(MsgWriteFailed, file.replace(target));
  syncFolder(folder);
}

}  // namespace

void UTF8File::saveAtomic(const char* path, const void* data, unsigned int size) {
  replaceWhole(path, static_cast<const char*>(data), size);
}

void UTF8File::saveAtomic(const char* path, const Bag& content) {
  replaceWhole(path, content.getBuffer(), static_cast<std::size_t>(content.getSize()));
}

void UTF8File::saveAtomic(const char* path, const std::string& content) {
  replaceWhole(path, content.data(), content.size());
}
