// Directory listing: the platform's entries, filtered by two masks over the entry's type.

#include "ffproc.h"

#include <cstring>

#include "platform/platform.h"

namespace {

constexpr int directoryBit = DT_DIR;

bool isDots(const char* name) {
  return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
}

}  // namespace

ZFindFile::ZFindFile(const char* path) : dir(cc::platform::openDirectory(path ? path : ".")) {}

ZFindFile::~ZFindFile() { release(); }

bool ZFindFile::next() {
  while (dir) {
    entry = cc::platform::readDirectory(dir);
    if (!entry) {
      release();
      break;
    }
    type = entry->d_type;
    if ((type & directoryBit) != 0 && isDots(entry->d_name)) continue;
    if ((type & includeMask) != 0 && (type & excludeMask) == 0) return true;
  }
  return false;
}

void ZFindFile::release() {
  if (dir) cc::platform::closeDirectory(dir);
  dir = nullptr;
  entry = nullptr;
}
