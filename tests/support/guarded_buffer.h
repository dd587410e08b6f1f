/// @file
/// Memory whose ends are unreadable pages, so that a step too far in either direction ends the
/// test program at once.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstring>
#include <new>
#include <string_view>

namespace cc::test {

/// Readable and writable bytes between two unreadable pages.
class GuardedBuffer {
 public:
  /// Room for at least `capacity` bytes, in whole pages.
  explicit GuardedBuffer(std::size_t capacity)
      : page(static_cast<std::size_t>(sysconf(_SC_PAGESIZE))),
        room((capacity + page - 1) / page * page) {
    const int flags = MAP_PRIVATE | MAP_ANONYMOUS;
    void* memory = mmap(nullptr, room + 2 * page, PROT_NONE, flags, -1, 0);
    if (memory == MAP_FAILED) throw std::bad_alloc();
    base = static_cast<char*>(memory);
    first = base + page;
    if (room != 0 && mprotect(first, room, PROT_READ | PROT_WRITE) != 0) throw std::bad_alloc();
  }
  /// A copy of `text` that ends at the unreadable page.
  explicit GuardedBuffer(std::string_view text) : GuardedBuffer(text.size()) {
    first = atEnd(text);
  }
  ~GuardedBuffer() { munmap(base, room + 2 * page); }
  GuardedBuffer(const GuardedBuffer&) = delete;
  GuardedBuffer& operator=(const GuardedBuffer&) = delete;

  /// The first byte: of the text where the buffer was made from one, else the one behind the
  /// unreadable page.
  char* begin() const { return first; }
  /// One past the last byte; the byte here is unreadable.
  char* end() const { return base + page + room; }

  /// Copies `text` so that it ends at the unreadable page; returns its first element.
  template <class T>
  T* atEnd(const T* text, std::size_t n) const {
    return copy(end() - n * sizeof(T), text, n);
  }
  char* atEnd(std::string_view text) const { return atEnd(text.data(), text.size()); }

  /// Copies `text` so that it starts `offset` elements behind the unreadable page; returns its
  /// first element.
  template <class T>
  T* atBegin(const T* text, std::size_t n, std::size_t offset = 0) const {
    return copy(base + page + offset * sizeof(T), text, n);
  }
  char* atBegin(std::string_view text, std::size_t offset = 0) const {
    return atBegin(text.data(), text.size(), offset);
  }

 private:
  template <class T>
  static T* copy(char* to, const T* text, std::size_t n) {
    if (n != 0) std::memcpy(to, text, n * sizeof(T));
    return reinterpret_cast<T*>(to);
  }

  std::size_t page;
  std::size_t room;
  char* base = nullptr;
  char* first = nullptr;
};

}  // namespace cc::test
