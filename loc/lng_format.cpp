// The header is read and checked word by word, so that the first word that is wrong decides the
// result and nothing behind it is read. Offsets and pool follow with one read each. A text ends
// inside the pool exactly when it starts at or before the pool's last 0 byte.
#include "loc/lng_format.h"

#include <cstdint>
#include <new>
#include <string_view>

#include "platform/platform.h"

namespace cc::lng {

int swapInt(int& word, bool reverse) {
  if (reverse) {
    const auto w = static_cast<unsigned int>(word);
    word = static_cast<int>(w << 24 | (w & 0xFF00) << 8 | (w >> 8 & 0xFF00) | w >> 24);
  }
  return word;
}

namespace {

bool readBytes(std::FILE* file, void* bytes, std::size_t n) {
  return platform::readStream(file, bytes, n) == n;
}

// Reads a header word into `word`; false when the file ends before it.
bool readWord(std::FILE* file, bool reverse, int& word) {
  if (!readBytes(file, &word, sizeof word)) return false;
  swapInt(word, reverse);
  return true;
}

// The header up to the count; `reverse` becomes true for a file in the other byte order.
int readHead(std::FILE* file, int count, int stamp, bool& reverse) {
  int word = 0;
  if (!readWord(file, false, word)) return ReadFailed;
  if (word != 0) return Malformed;
  if (!readWord(file, false, word)) return ReadFailed;
  if (word != Magic && word != ReversedMagic) return Malformed;
  reverse = word == ReversedMagic;

  const struct {
    int value, code;
  } rest[] = {
      {Version, WrongVersion}, {Encoding, WrongEncoding}, {stamp, WrongStamp}, {count, Malformed}};
  for (const auto& expected : rest) {
    if (!readWord(file, reverse, word)) return ReadFailed;
    if (word != expected.value) return expected.code;
  }
  return Loaded;
}

template <class T>
bool allocate(ArrayHolder<T>& holder, int n) {
  if (static_cast<unsigned int>(n) > static_cast<std::size_t>(PTRDIFF_MAX) / sizeof(T)) {
    return false;
  }
  holder.reset(new (std::nothrow) T[static_cast<std::size_t>(n)]);
  return holder.get() != nullptr;
}

bool textsInside(const Texts& texts, int poolSize) {
  const std::string_view pool(texts.pool.get(), static_cast<std::size_t>(poolSize));
  const std::size_t lastZero = pool.rfind('\0');
  if (lastZero == std::string_view::npos) return false;
  for (int i = 0; i < texts.count; ++i) {
    const int offset = texts.offsets.get()[i];
    if (offset < 0 || static_cast<std::size_t>(offset) > lastZero) return false;
  }
  return true;
}

}  // namespace

int read(std::FILE* file, int count, int stamp, Texts& texts) {
  bool reverse = false;
  if (const int code = readHead(file, count, stamp, reverse); code != Loaded) return code;
  if (count <= 0) return Loaded;

  int poolSize = 0;
  if (!readWord(file, reverse, poolSize)) return ReadFailed;
  if (poolSize <= 0) return Malformed;

  if (!allocate(texts.offsets, count)) return NoMemory;
  if (!readBytes(file, texts.offsets.get(), sizeof(int) * static_cast<std::size_t>(count))) {
    return ReadFailed;
  }
  for (int i = 0; i < count; ++i) swapInt(texts.offsets.get()[i], reverse);

  if (!allocate(texts.pool, poolSize)) return NoMemory;
  if (!readBytes(file, texts.pool.get(), static_cast<std::size_t>(poolSize))) return ReadFailed;
  texts.count = count;
  return textsInside(texts, poolSize) ? Loaded : Malformed;
}

}  // namespace cc::lng
