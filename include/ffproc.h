/// @file
/// `ZFindFile`: the entries of one directory.
///
/// Failure style: a directory that cannot be opened or read looks empty or ended.
#pragma once

#include <dirent.h>

#include "common_core_api.h"

/// Lists a directory, one entry a call, in the order in which the system returns them.
///
/// The `d_type` of an entry is tested bit by bit against two masks. With the masks it starts with
/// it yields regular files and symbolic links; with 4 and 0, directories, block devices and
/// sockets. "." and ".." never come. One thread uses an object at a time.
class COMMON_CORE_API ZFindFile {
 public:
  /// Opens the directory; null means the current one. When that fails there are no entries.
  explicit ZFindFile(const char* path);
  ZFindFile(const ZFindFile&) = delete;
  ZFindFile& operator=(const ZFindFile&) = delete;
  /// Closes the directory.
  ~ZFindFile();

  /// Takes the next entry that passes the masks: true, and `entry` and `type` describe it. False at
  /// the end, where the directory is closed, and ever after.
  bool next();
  /// Closes the directory, if it is open; `entry` is null then.
  void release();

  int includeMask = 12;     ///< an entry comes only if its type shares a bit with this
  int excludeMask = 4;      ///< an entry whose type shares a bit with this is skipped
  int type = 0;             ///< the `d_type` of the entry last read
  dirent* entry = nullptr;  ///< the entry last read, until the next call; null at the end
  DIR* dir;                 ///< the open directory, or null
};

#if defined(__i386__)
static_assert(sizeof(ZFindFile) == 20);
#endif
