// The .lng dictionary file and the reader that both loaders share. The file is seven header words,
// the offset of each text, and the pool of zero-terminated texts; docs/formats.md describes it.
#pragma once

#include <cstdio>

#include "containers.h"

namespace cc::lng {

// What the loaders return. Clients see these numbers: they never change.
enum Code : int {
  Loaded = 0,         // loaded, or nothing to load
  NotFound = 1,       // missing or not accessible; raised by the modules, never by a loader
  Malformed = 2,      // zero word, magic, count or pool size wrong; an offset or text out of place
  WrongVersion = 3,   // version is not 1
  WrongEncoding = 4,  // encoding is not 8
  WrongStamp = 5,     // stamp differs from the record
  ReadFailed = 6,     // the file ends early or a read fails
  NoMemory = 7,       // memory could not be allocated
};

constexpr int Magic = 0x524C434C;          // the bytes "LCLR" on a little-endian machine
constexpr int ReversedMagic = 0x4C434C52;  // the magic of a file in the other byte order
constexpr int Version = 1;
constexpr int Encoding = 8;  // UTF-8

// Exchanges bytes 0 and 3 and bytes 1 and 2 of `word` when `reverse` is set; returns the result.
int swapInt(int& word, bool reverse);

// The texts of one file: text number i starts at pool + offsets[i] and ends inside the pool.
struct Texts {
  ArrayHolder<char> pool;
  ArrayHolder<int> offsets;
  int count = 0;
};

// Reads one file from the position of `file` on. It must match `count` and `stamp`. Every offset
// and every terminator has been checked when the result is Loaded; with a count of 0 or less that
// is so at once and `texts` stays empty.
int read(std::FILE* file, int count, int stamp, Texts& texts);

// Clears a field of a loader that goes away, for those that still look at it during process exit.
// The compiler would drop a plain store.
template <class T>
void clearForGood(T& field) {
  const_cast<volatile T&>(field) = T();
}

}  // namespace cc::lng
