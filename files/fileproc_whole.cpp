// Whole files and records. The loads share one shape: open, measure against the limit, allocate,
// read, close; they differ in what they allocate. The stream of a load has no buffer, so that one
// read goes straight into the target. Targets that promise to stay untouched are filled last, by an
// operation that cannot fail.

#include <climits>
#include <cstdint>
#include <new>
#include <stdexcept>

#include "fileproc.h"
#include "loc/message_numbers.h"
#include "platform/platform.h"

namespace {

using namespace cc;

/// What one read or write call takes at the most.
constexpr std::size_t longestTransfer = INT_MAX;

/// Opens a file that is to be read whole and returns its size.
std::size_t openWhole(UTF8File& file, const char* path, unsigned int maxSize) {
  file.open(path, UTF8File::ModeRead);
  platform::unbufferStream(file.getStream());
  const long long size = file.checkSize(maxSize);
  if (size < 0) file.erro(LocDictionaryCommonCore, MsgSeekFailed, nullptr, -1);
  return static_cast<std::size_t>(size);
}

void readWhole(UTF8File& file, char* to, std::size_t size) {
  while (size > longestTransfer) {
    file.read(to, static_cast<int>(longestTransfer));
    to += longestTransfer;
    size -= longestTransfer;
  }
  file.read(to, static_cast<int>(size));
}

/// The worker of all loads into arrays; files above `most` bytes do not fit the target.
std::size_t loadArray(const char* path, ArrayHolder<char>& content, unsigned int maxSize,
                      bool addTerminator, std::size_t most) {
  UTF8File file(true);
  const std::size_t size = openWhole(file, path, maxSize);
  if (size > most) file.erro(LocDictionaryCommonCore, MsgNoMemory, nullptr, -1);
  if (size != 0 || addTerminator) {
    content.reset(new (std::nothrow) char[size + (addTerminator ? 1U : 0U)]);
    if (!content.get()) file.erro(LocDictionaryCommonCore, MsgNoMemory, nullptr, -1);
    readWhole(file, content.get(), size);
    if (addTerminator) content.get()[size] = 0;
  }
  file.close();
  return size;
}

void saveInPlace(const char* path, const char* data, std::size_t size) {
  UTF8File file(true);
  file.open(path, UTF8File::ModeWrite);
  file.write(ChPair(data, data + size));
  file.close();
}

}  // namespace

unsigned int UTF8File::load(const char* path, ArrayHolder<char>& content, unsigned int maxSize,
                            bool addTerminator) {
  const ChArr ownPath(path);  // the old content may hold the path
  content.reset();
  return static_cast<unsigned int>(
      loadArray(ownPath.get(), content, maxSize, addTerminator, SIZE_MAX - 1));
}

unsigned int UTF8File::load(const char* path, std::string& content, unsigned int maxSize) {
  const ChArr ownPath(path);
  content.clear();
  UTF8File file(true);
  const std::size_t size = openWhole(file, ownPath.get(), maxSize);
  if (size != 0) {
    try {
      content.resize(size);
    } catch (const std::bad_alloc&) {
      file.erro(LocDictionaryCommonCore, MsgNoMemory, nullptr, -1);
    } catch (const std::length_error&) {
      file.erro(LocDictionaryCommonCore, MsgNoMemory, nullptr, -1);
    }
    readWhole(file, content.data(), size);
  }
  file.close();
  return static_cast<unsigned int>(size);
}

unsigned int UTF8File::load(const char* path, Bag& content, unsigned int maxSize,
                            bool addTerminator) {
  ArrayHolder<char> loaded;
  const auto size = static_cast<int>(loadArray(path, loaded, maxSize, addTerminator, INT_MAX));
  content.setBuffer(loaded.steal(), size, -1);
  return static_cast<unsigned int>(size);
}

unsigned int UTF8File::load(const char* path, ChArr& content, unsigned int maxSize,
                            bool addTerminator) {
  ArrayHolder<char> loaded;
  const std::size_t size = loadArray(path, loaded, maxSize, addTerminator, SIZE_MAX - 1);
  content.adopt(loaded.steal());
  return static_cast<unsigned int>(size);
}

void UTF8File::save(const char* path, const void* data, unsigned int size) {
  saveInPlace(path, static_cast<const char*>(data), size);
}

void UTF8File::save(const char* path, const Bag& content) {
  saveInPlace(path, content.getBuffer(), static_cast<std::size_t>(content.getSize()));
}

void UTF8File::save(const char* path, const std::string& content) {
  saveInPlace(path, content.data(), content.size());
}

bool UTF8File::push(Bag& content) {
  const auto length = static_cast<std::uint32_t>(content.getSize());
  return write(&length, sizeof(length)) && write(content.getBuffer(), content.getSize());
}

bool UTF8File::pop(Bag& content) {
  std::uint32_t length = 0;
  if (!read(&length, sizeof(length))) return false;
  if (length == 0) {
    content.clear();
    return true;
  }
  ArrayHolder<char> record;
  if (length <= INT_MAX) record.reset(new (std::nothrow) char[length]);
  if (!record.get()) {
    erro(LocDictionaryCommonCore, MsgNoMemory, nullptr, -1);
    return false;
  }
  const auto size = static_cast<int>(length);
  if (!read(record.get(), size)) return false;
  content.setBuffer(record.steal(), size, -1);
  return true;
}
