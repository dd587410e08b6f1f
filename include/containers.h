/// @file
/// Small owning containers of arrays from array `new`.
///
/// Failure style: nothing reports an error; `std::bad_alloc` of an allocation passes through and
/// leaves the container as it was, also for a request that would carry a size past the largest
/// `int`. Counts are elements.
#pragma once

#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <type_traits>
#include <utility>

#include "common_core_api.h"

namespace cc {

/// The capacity reported for a need of `n`: rounded up to a multiple of 16 up to 256, of 256 up to
/// 4,096, of 4,096 beyond. Throws `std::bad_alloc` when that passes the largest `int`.
inline int roundedCapacity(int n) {
  const int step = n <= 256 ? 16 : n <= 4096 ? 256 : 4096;
  if (n > INT_MAX - (step - 1)) throw std::bad_alloc();
  return (n + (step - 1)) & -step;
}

/// The room that stands behind a capacity which grew, `capacity` > 0: the next power of two, but
/// not above `limit`. At least `capacity`, where that is within `limit`.
constexpr int storageClass(int capacity, int limit) {
  int room = 1;
  while (room < capacity) room = room <= INT_MAX / 2 ? room * 2 : INT_MAX;
  return room < limit ? room : limit;
}

/// The room behind a capacity of elements of `T` that grew.
template <class T>
constexpr int storageClass(int capacity) {
  constexpr std::size_t most = PTRDIFF_MAX / sizeof(T);
  return storageClass(capacity, most < INT_MAX ? static_cast<int>(most) : INT_MAX);
}

/// A new array with the room of the size class of `capacity`, or, where that cannot be had, of
/// `capacity` elements. `roomy` tells which. Throws `std::bad_alloc`.
template <class T>
T* newStorage(int capacity, bool& roomy) {
  const int room = storageClass<T>(capacity);
  if (room < capacity) throw std::bad_alloc();
  T* data = nullptr;
  if (room > capacity) data = new (std::nothrow) T[static_cast<std::size_t>(room)];
  roomy = data != nullptr;
  return data ? data : new T[static_cast<std::size_t>(capacity)];
}

}  // namespace cc

/// A growing array of plain values: three words, owned storage, no element destruction.
///
/// The capacity reported follows one rule, shared with `Bag`: multiples of 16 up to 256, of 256 up
/// to 4,096, of 4,096 beyond. More room may stand behind it, so that appending one by one costs
/// time linear in the count. `T` must be trivially copyable.
template <class T>
class SimpleVector {
  static_assert(std::is_trivially_copyable<T>::value, "elements are moved as bytes");

 public:
  /// No elements, no array.
  SimpleVector() : capacity(0), roomy(0) {}
  /// Takes the array of `other`, which is empty afterwards.
  SimpleVector(SimpleVector&& other) noexcept : SimpleVector() { exchange(other); }
  SimpleVector(const SimpleVector&) = delete;
  ~SimpleVector() { delete[] data; }

  /// Frees the own array and takes that of `other`, which is empty afterwards. Assignment to
  /// itself changes nothing.
  SimpleVector& operator=(SimpleVector&& other) noexcept {
    SimpleVector taken(std::move(other));
    exchange(taken);
    return *this;
  }
  SimpleVector& operator=(const SimpleVector&) = delete;

  /// Makes the capacity at least `n`, by the rule above. Never shrinks. Pointers to elements last
  /// until the capacity changes.
  void expand(int n) {
    if (n > getCapacity()) grow(cc::roundedCapacity(n));
  }
  /// Appends `x`, which may be a copy of an element of this very vector.
  void append(T x) {
    if (count == getCapacity()) {
      if (count == INT_MAX) throw std::bad_alloc();
      expand(count + 1);
    }
    data[count++] = x;
  }

  /// The array, null when there is none.
  T* getData() const { return data; }
  /// Number of elements.
  int getCount() const { return count; }
  /// The capacity reported, in elements.
  int getCapacity() const { return static_cast<int>(capacity); }
  /// The element at index `i`, 0 to the count less 1; not checked.
  T& operator[](int i) const { return data[i]; }
  /// The first element; with `end` for range loops.
  T* begin() const { return data; }
  /// One past the last element.
  T* end() const { return data + count; }

 protected:
  /// Frees the array, not what elements point to.
  void freeArray() {
    SimpleVector old;
    exchange(old);
  }

  T* data = nullptr;  ///< the array, owned, or null
  int count = 0;      ///< number of elements

 private:
  void grow(int wanted) {
    bool hasRoom = roomy;
    if (!hasRoom || cc::storageClass<T>(getCapacity()) < wanted) {
      T* storage = cc::newStorage<T>(wanted, hasRoom);
      if (count) {
        std::memcpy(static_cast<void*>(storage), data, static_cast<std::size_t>(count) * sizeof(T));
      }
      delete[] data;
      data = storage;
    }
    capacity = static_cast<unsigned int>(wanted) & INT_MAX;
    roomy = hasRoom;
  }

  void exchange(SimpleVector& other) noexcept {
    std::swap(data, other.data);
    std::swap(count, other.count);
    const unsigned int otherCapacity = other.capacity;
    const unsigned int otherRoomy = other.roomy;
    other.capacity = capacity;
    other.roomy = roomy;
    capacity = otherCapacity & INT_MAX;
    roomy = otherRoomy & 1;
  }

  unsigned int capacity : 31;  // as reported
  unsigned int roomy : 1;      // the storage is the size class of the capacity, not just it
};

/// A vector that also owns its elements, each an array from array `new` or null.
template <class T>
class ArrayVector : public SimpleVector<T*> {
 public:
  /// No elements, no array.
  ArrayVector() = default;
  /// Takes the elements of `other`, which is empty afterwards.
  ArrayVector(ArrayVector&& other) noexcept = default;
  ~ArrayVector() { truncate(0); }
  /// Frees the own elements and takes those of `other`, which is empty afterwards. Assignment to
  /// itself changes nothing.
  ArrayVector& operator=(ArrayVector&& other) noexcept {
    if (this != &other) {
      truncate(0);
      SimpleVector<T*>::operator=(std::move(other));
    }
    return *this;
  }

  /// Frees every element and the array; capacity and count are 0 afterwards.
  void removeAll() {
    truncate(0);
    this->freeArray();
  }
  /// Frees the elements from index `n` on, last first; the room stays. Nothing happens when there
  /// are no more than `n`.
  void truncate(int n) {
    while (this->count > n) delete[] this->data[--this->count];
  }
};

/// A vector of owned zero-terminated strings; `StringVector<char>` holds UTF-8 texts.
template <class T>
class StringVector : public ArrayVector<T> {};

/// Owns one array from array `new`, or nothing.
template <class T>
class ArrayHolder {
 public:
  /// Nothing.
  ArrayHolder() = default;
  /// Owns `p`, an array from array `new` or null.
  explicit ArrayHolder(T* p) : array(p) {}
  /// Takes the array of `other`, which holds nothing afterwards.
  ArrayHolder(ArrayHolder&& other) noexcept : array(other.steal()) {}
  ArrayHolder(const ArrayHolder&) = delete;
  ~ArrayHolder() { delete[] array; }
  /// Frees the own array and takes that of `other`, which holds nothing afterwards. Assignment to
  /// itself changes nothing.
  ArrayHolder& operator=(ArrayHolder&& other) noexcept {
    reset(other.steal());
    return *this;
  }
  ArrayHolder& operator=(const ArrayHolder&) = delete;

  /// The array, or null.
  T* get() const { return array; }
  /// Hands the array to the caller, who frees it with `delete[]`; nothing is held afterwards.
  T* steal() {
    T* p = array;
    array = nullptr;
    return p;
  }
  /// Frees the own array and owns `p`, an array from array `new` or null. Its own array changes
  /// nothing.
  void reset(T* p = nullptr) {
    T* old = array;
    array = p;
    if (old != p) delete[] old;
  }

 private:
  T* array = nullptr;
};

/// The same as `ArrayHolder`, used as a scope guard for temporary buffers.
template <class T>
class BufHolder : public ArrayHolder<T> {
 public:
  using ArrayHolder<T>::ArrayHolder;
};

#if defined(__i386__)
static_assert(sizeof(SimpleVector<char>) == 12 && sizeof(StringVector<char>) == 12);
static_assert(sizeof(ArrayHolder<char>) == 4 && sizeof(BufHolder<char>) == 4);
#endif
