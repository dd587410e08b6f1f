/// @file
/// `CCLocLoader`: a dictionary file loaded into string variables of the client program.
///
/// Failure style: a result code; 0 is success. Nothing is thrown.
#pragma once

#include <cstdio>

#include "common_core_api.h"

/// Loads a `.lng` dictionary file and points the client's own variables at its texts.
///
/// Owns the pool of the last successful load, which the variables point into: the loader must
/// outlive every use of them.
class COMMON_CORE_API CCLocLoader {
 public:
  /// The record that a client compiles in for one dictionary.
  struct Localization {
    int count;              ///< number of texts; the file's must be the same
    int encoding;           ///< code of the text encoding (8: UTF-8); not read by the loader
    int stamp;              ///< version stamp; the file's must be the same
    const char*** targets;  ///< `count` addresses of the variables, in the order of the texts
  };

  /// A loader without texts.
  CCLocLoader() = default;
  CCLocLoader(const CCLocLoader&) = delete;
  CCLocLoader& operator=(const CCLocLoader&) = delete;
  /// Frees the texts and leaves the field null; the variables are not touched.
  ~CCLocLoader();

  /// Reads one dictionary from the current position of `file`, which the caller opened and closes,
  /// and points every variable of `info` at its text.
  ///
  /// Result: 0 loaded (or nothing to load); 2 malformed; 3 unsupported version; 4 wrong encoding;
  /// 5 another stamp; 6 the file ends early or a read failed; 7 no memory. After a failure the
  /// loader, its texts and all variables are as before the call.
  int load(FILE* file, Localization& info);

  char* pool = nullptr;  ///< the texts of the last successful load, owned; null before it
};

#if defined(__i386__)
static_assert(sizeof(CCLocLoader) == 4 && sizeof(CCLocLoader::Localization) == 16);
#endif
