/// @file
/// `IDLocLoader`: a dictionary file loaded into a table of numbered messages.
///
/// Failure style: a result code; 0 is success. Nothing is thrown.
#pragma once

#include <cstdio>

#include "common_core_api.h"

/// The numbered messages of one dictionary, as rendering looks them up.
class COMMON_CORE_API IDLocLoader {
 public:
  /// The record that is compiled in for one dictionary.
  struct Localization {
    int count;     ///< number of messages; the file's must be the same
    int encoding;  ///< code of the text encoding (8: UTF-8); not read by the loader
    int stamp;     ///< version stamp; the file's must be the same
  };

  /// A dictionary without texts.
  constexpr IDLocLoader() = default;
  IDLocLoader(const IDLocLoader&) = delete;
  IDLocLoader& operator=(const IDLocLoader&) = delete;
  /// Frees the texts and leaves every field null, so that a rendering during process exit finds an
  /// empty dictionary.
  ~IDLocLoader();

  /// Reads one dictionary from the current position of `file`, which the caller opened and closes.
  /// Result codes are those of `CCLocLoader::load`. After a failure the earlier texts are in place;
  /// after success pointers into them are invalid.
  int load(FILE* file, Localization& info);

  /// The text of message `n`, zero-terminated, or null for a number that the dictionary does not
  /// hold.
  const char* getString(int n) const { return n >= 0 && n < count ? strings[n] : nullptr; }

  char* pool = nullptr;      ///< the texts of the last successful load, owned; null before it
  char** strings = nullptr;  ///< the text of each message, in `pool`; owned; null before a load

 private:
  int count = 0;
};

#if defined(__i386__)
static_assert(sizeof(IDLocLoader) == 12 && sizeof(IDLocLoader::Localization) == 12);
#endif
