/// @file
/// `UTF8File`: files and directories whose failures become translatable messages.
///
/// Failure style: with `exceptions` on, a failing operation throws a `TTT`: the failure, the file's
/// name and the system's error text, each a message of slot 3. With `exceptions` off it returns its
/// failure value and nothing else. The static load and save operations always throw.
#pragma once

#include <sys/stat.h>

#include <cstdio>
#include <string>

#include "bag.h"
#include "charr.h"
#include "chpair.h"
#include "common_core_api.h"
#include "tttproc.h"

/// One buffered file, and operations on paths. Paths are UTF-8 bytes, passed on as they are.
///
/// The object stays usable after every failure. Used by one thread at a time.
class COMMON_CORE_API UTF8File {
 public:
  /// How `open` opens a file.
  enum Mode {
    ModeRead = 0,    ///< reading, of an existing file
    ModeWrite = 1,   ///< writing; the file is created, or emptied when it exists
    ModeUpdate = 2,  ///< reading and writing, of an existing file
  };
  /// The platform's file status record. On 32-bit x86 with 32-bit sizes and times.
  typedef struct stat Info;

  /// A closed file without a name, which throws its failures or only returns them.
  explicit UTF8File(bool throwing) : exceptions(throwing) {}
  UTF8File(const UTF8File&) = delete;
  UTF8File& operator=(const UTF8File&) = delete;
  /// Closes the file; a failure of that is silent. Use `close` where it matters.
  ~UTF8File();

  // ------------------------------------------------------------------ the open file

  /// Opens `path`; called on a closed object. False (message 4) when that fails, also for a
  /// directory; the object is then closed and keeps its earlier name.
  bool open(const char* path, Mode mode);
  /// Closes the file. True also when it was closed already. False (message 3) when the last bytes
  /// could not be written; the object is closed all the same.
  bool close();
  /// Reads exactly `n` bytes. False when reading fails (message 26) or the file ends before
  /// (message 32); the buffer may then be partly filled.
  bool read(void* buffer, int n);
  /// Writes exactly `n` bytes. False when that fails, with a system error (message 35) or without
  /// one (message 12).
  bool write(const void* buffer, int n);
  /// Writes the bytes of `text`, which must not be null, without its terminator.
  bool write(const char* text);
  /// Writes the bytes of the slice.
  bool write(const ChPair& slice);
  /// Hands buffered bytes to the system. False (message 38) when that fails.
  bool flush();
  /// The position in bytes from the start, or -1. Reports nothing.
  long long pos();
  /// Moves to `offset` bytes from the start (`whence` 0), the position (1) or the end (2). False
  /// (message 27) when that fails.
  bool seek(long long offset, int whence);
  /// The file's size in bytes, or -1 (message 27); the position stays.
  long long size();
  /// The file's size when it is at most `maxSize` bytes; -1 when it is larger (message 29) or
  /// cannot be taken.
  long long checkSize(long long maxSize);
  /// Reads one line into `buffer` of `size` bytes (at least 2), zero-terminated, without its line
  /// feed; carriage returns are dropped wherever they stand. A line that does not fit comes in
  /// pieces, one per call; a last piece that fills the buffer takes its line end with it, so that
  /// no empty one follows. At the end of the file true with what was left (maybe nothing), and
  /// `*eof`, unless null, becomes true; it is never set to false. False (message 26) when reading
  /// fails.
  bool readLine(char* buffer, int size, bool* eof);

  // ------------------------------------------------------------------ records and whole files

  /// Writes the bag's data behind a 32-bit length word, at the position. The bag is not changed.
  bool push(Bag& content);
  /// Reads a record that `push` wrote. False when the file ends or reading fails, or (message 23)
  /// when memory does not suffice; the bag is then untouched.
  bool pop(Bag& content);

  /// Loads the whole file, of at most `maxSize` bytes, and returns its size in bytes. With
  /// `addTerminator` a 0 byte follows the content, not counted. An empty file without one leaves
  /// `content` empty. Throws messages 4, 29, 23, 26, 32, 27 and 3; `content` then holds nothing or
  /// a partly filled array.
  static unsigned int load(const char* path, ArrayHolder<char>& content, unsigned int maxSize,
                           bool addTerminator);
  /// The same into a string, which is emptied or resized when the load fails.
  static unsigned int load(const char* path, std::string& content, unsigned int maxSize);
  /// The same into a bag, cursor at 0, which is untouched when the load fails. A file above the
  /// largest `int` fails with message 23.
  static unsigned int load(const char* path, Bag& content, unsigned int maxSize,
                           bool addTerminator);
  /// The same into a string (null for an empty file without terminator), untouched when the load
  /// fails.
  static unsigned int load(const char* path, ChArr& content, unsigned int maxSize,
                           bool addTerminator);

  /// Writes `size` bytes as the whole file, in place: created, or emptied and overwritten. Throws
  /// messages 4, 35, 12 and 3; a truncated or partly written file may then be left.
  static void save(const char* path, const void* data, unsigned int size);
  /// The same for the data of a bag, wherever its cursor stands.
  static void save(const char* path, const Bag& content);
  /// The same for the bytes of a string.
  static void save(const char* path, const std::string& content);

  /// Writes a new file beside the target, synchronises it and renames it over the target, so that
  /// at every moment the old or the new content is there whole. Permissions of an existing target
  /// are kept, and its owner and group as far as this process may give files away; where it is a
  /// symbolic link, the file it leads to is replaced. A new file gets the permissions that `save`
  /// gives. Only a regular file is replaced, also one that this process may not write. Throws
  /// message 4 when the target cannot be replaced or the new file not be set up, 35 or 12 when
  /// writing or renaming fails, 38 when synchronising does and 3 when closing does; the old file is
  /// then whole and no other is left.
  static void saveAtomic(const char* path, const void* data, unsigned int size);
  /// The same for the data of a bag, wherever its cursor stands.
  static void saveAtomic(const char* path, const Bag& content);
  /// The same for the bytes of a string.
  static void saveAtomic(const char* path, const std::string& content);

  // ------------------------------------------------------------------ paths

  /// Creates a directory, with permissions 0755 less the process's mask. True also when the path
  /// exists already, whatever it is; false with message 8.
  bool mkdir(const char* path);
  /// Removes an empty directory. True also when the path is missing; false with message 10.
  bool rmdir(const char* path);
  /// Removes a file or an empty directory. True also when the path is missing; false with message
  /// 9.
  bool remove(const char* path);
  /// Renames; an existing file at `to` is replaced. A failure is only returned, never reported.
  bool rename(const char* from, const char* to);
  /// True when something stands at the path; false for a null or empty path.
  static bool exist(const char* path);
  /// Takes the status of the path; false for a null or empty path, or when that fails.
  static bool info(const char* path, Info& info);

  // ------------------------------------------------------------------ reporting

  /// Throws `message` as a file failure: followed by message 25 with `fileName` (null: the stored
  /// name; left out when empty) and, for an error number `err` above 0, by message 28 with the
  /// system's text or message 17 with the number. Does nothing when `exceptions` is off.
  void erro(const TTT& message, const char* fileName, int err);
  /// The same for message `code` of `dictionary`.
  void erro(LocDictionaryId dictionary, int code, const char* fileName, int err);

  // ------------------------------------------------------------------ fields

  /// The open stream, or null.
  FILE* getStream() const { return stream; }
  /// The path of the last successful `open`, or null before it.
  const char* getName() const { return name.get(); }

 private:
  FILE* stream = nullptr;
  ChArr name;

 public:
  bool exceptions;  ///< whether failures are thrown as `TTT`
};

#if defined(__i386__)
static_assert(sizeof(UTF8File) == 12);
#endif
