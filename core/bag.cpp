// Bag: growth, editing and the transfer of the buffer.
//
// The header holds the usual case of each read and write; here is what grows, fills a gap or
// fails. Every size is checked before the first change, then storage is allocated, and only then
// is anything written or freed: a failure leaves the bag as it was.

#include "bag.h"

Bag::Bag(const Bag& other) : Bag() {
  if (other.size == 0) return;
  buffer = new char[static_cast<std::size_t>(other.size)];
  std::memcpy(buffer, other.buffer, static_cast<std::size_t>(other.size));
  setCapacity(other.size, false);
  position = other.position;
  size = other.size;
}

Bag::Bag(const void* data, int n) : Bag() {
  putData(data, n);
  position = 0;
}

Bag& Bag::operator=(const Bag& other) {
  if (this != &other) {
    Bag copy(other);
    stealFrom(copy);
  }
  return *this;
}

void Bag::clear() {
  if (!buffer) return;
  delete[] buffer;
  buffer = nullptr;
  setCapacity(0, false);
  position = 0;
  size = 0;
}

// The end of a write of `n` bytes at the aligned cursor.
int Bag::endOfWrite(long long n, int align) const {
  if (position < 0 || n < 0 || n > INT_MAX) throw std::bad_alloc();
  const unsigned int at = alignedPosition(align);
  if (at > INT_MAX || n > INT_MAX - static_cast<int>(at)) throw std::bad_alloc();
  return static_cast<int>(at) + static_cast<int>(n);
}

// Makes the capacity at least `n`. Returns the old storage where new one took its place: the
// caller frees it, after the last use of bytes that may lie there.
char* Bag::grow(int n) {
  const int old = getCapacity();
  if (n <= old) return nullptr;
  const int wanted = getOptimalSize(n);
  if (roomy && cc::storageClass<char>(old) >= wanted) {
    setCapacity(wanted, true);
    return nullptr;
  }
  bool hasMore = false;
  char* storage = cc::newStorage<char>(wanted, hasMore);
  if (old) std::memcpy(storage, buffer, static_cast<std::size_t>(old));
  char* retired = buffer;
  buffer = storage;
  setCapacity(wanted, hasMore);
  return retired;
}

void Bag::expand(int n) { const BufHolder<char> old(grow(n)); }

void Bag::setBufferSize(int n) {
  const int old = getCapacity();
  if (n == old) return;
  if (n == 0) return clear();
  if (n < 0) throw std::bad_alloc();
  char* storage = new char[static_cast<std::size_t>(n)];
  const int kept = n < old ? n : old;
  if (kept) std::memcpy(storage, buffer, static_cast<std::size_t>(kept));
  delete[] buffer;
  buffer = storage;
  setCapacity(n, false);
  if (n < size) size = n;
}

void Bag::setBuffer(char* buf, int dataSize, int room) {
  if (buffer != buf) delete[] buffer;
  buffer = buf;
  size = buf && dataSize > 0 ? dataSize : 0;
  setCapacity(buf && room >= 0 ? room : size, false);
  position = 0;
}

// Writes `n` bytes at the aligned cursor; without a `src` it only reserves them.
char* Bag::write(const void* src, int n, int align) {
  const int end = endOfWrite(n, align);
  const BufHolder<char> old(grow(end));
  const int at = end - n;
  if (size < at) std::memset(buffer + size, 0, static_cast<std::size_t>(at - size));
  if (src && n) std::memmove(buffer + at, src, static_cast<std::size_t>(n));
  return written(static_cast<unsigned int>(at), n);
}

void Bag::failRead(int align) {
  if (position >= 0 && alignedPosition(align) <= INT_MAX) {
    position = static_cast<int>(alignedPosition(align));
  }
  throw Exception();
}

void Bag::putString(const char* s) {
  if (!s) s = "";
  const std::size_t n = std::strlen(s);
  if (n >= INT_MAX) throw std::bad_alloc();
  putData(s, static_cast<int>(n) + 1);
}

void Bag::putStringNZ(const char* s) {
  const std::size_t n = s ? std::strlen(s) : 0;
  if (n > INT_MAX) throw std::bad_alloc();
  putData(s, static_cast<int>(n));
}

char* Bag::getStringPtr() {
  if (position < 0 || position >= size) throw Exception();
  char* text = buffer + position;
  const void* zero = std::memchr(text, 0, static_cast<std::size_t>(size - position));
  if (!zero) throw Exception();
  position = static_cast<int>(static_cast<const char*>(zero) - buffer) + 1;
  return text;
}

char* Bag::insSpace(int offset, int n) {
  if (n == 0) return buffer + offset;
  const bool moves = offset <= position;
  if (n < 0 || n > INT_MAX - size || (moves && position > INT_MAX - n)) throw std::bad_alloc();
  expand(size + n);
  char* gap = buffer + offset;
  if (offset < size) std::memmove(gap + n, gap, static_cast<std::size_t>(size - offset));
  size += n;
  if (moves) position += n;
  return gap;
}

void Bag::delSpace(int offset, int n) {
  if (n == 0) return;
  if (offset < 0 || n < 0 || offset > size || n > size - offset) throw Exception();
  char* gap = buffer + offset;
  const int behind = size - offset - n;
  if (behind) std::memmove(gap, gap + n, static_cast<std::size_t>(behind));
  size -= n;
  if (position > offset && position - offset < n) {
    position = offset;
  } else if (position >= offset) {
    position = position > n ? position - n : 0;
  }
}

bool Bag::operator==(const Bag& other) const {
  if (size != other.size) return false;
  return size == 0 || std::memcmp(buffer, other.buffer, static_cast<std::size_t>(size)) == 0;
}

char* Bag::steal(int& n) {
  n = size;
  if (size == 0) delete[] buffer;
  char* stolen = size ? buffer : nullptr;
  buffer = nullptr;
  setCapacity(0, false);
  position = 0;
  size = 0;
  return stolen;
}

void Bag::stealFrom(Bag& other) noexcept {
  if (this == &other) return;
  delete[] buffer;
  buffer = other.buffer;
  setCapacity(other.getCapacity(), other.roomy);
  position = other.position;
  size = other.size;
  other.buffer = nullptr;
  other.setCapacity(0, false);
  other.position = 0;
  other.size = 0;
}
