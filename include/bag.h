/// @file
/// `Bag`, the growable binary buffer.
///
/// Failure style: a read that would pass the end of the data throws `Bag::Exception`; writes fail
/// only with `std::bad_alloc`, which leaves the bag as it was, cursor included. A request that
/// would carry a size past the largest `int` throws `std::bad_alloc` as well.
#pragma once

#include <cstring>

#include "chpair.h"
#include "common_core_api.h"
#include "containers.h"

/// A growable buffer of bytes with one cursor for reading and writing.
///
/// Values are stored as their bytes in memory, in the host's byte order. Alignment is counted from
/// the start of the data, never from addresses, and the gaps that alignment leaves are zero-filled:
/// a bag that was saved and loaded reads the same. A string is its bytes and one 0 byte.
///
/// Every write ends the data where the write ended: it leaves the size equal to the cursor, so
/// writing in the middle discards what lay behind. A write with the cursor behind the data fills
/// the gap with zeros. All counts, offsets and sizes are bytes; counts given to writes are at least
/// 0. Pointers into the buffer last until the next operation that may reallocate it.
///
/// The capacity reported follows the rule of `getOptimalSize`; more room may stand behind it, so
/// that appending piece by piece costs time linear in the length.
class COMMON_CORE_API Bag {
 public:
  /// Thrown by a read that would pass the end of the data, for a missing terminator, a bad
  /// deletion range or a block that does not fit. Carries nothing.
  class COMMON_CORE_API Exception {};

  /// An empty bag without a buffer.
  Bag() : capacity(0), roomy(0) {}
  /// A copy of the data and the cursor of `other`, in a buffer of exactly the data's size. An empty
  /// `other` gives an empty bag with the cursor at 0.
  Bag(const Bag& other);
  /// Takes the buffer of `other`, which is empty afterwards.
  Bag(Bag&& other) noexcept : Bag() { stealFrom(other); }
  /// A copy of the `n` bytes at `data`, cursor at 0.
  Bag(const void* data, int n);
  ~Bag() { delete[] buffer; }

  /// Becomes a copy as the copy constructor makes it; assignment to itself changes nothing.
  Bag& operator=(const Bag& other);
  /// Frees the own buffer and takes that of `other`, which is empty afterwards.
  Bag& operator=(Bag&& other) noexcept {
    stealFrom(other);
    return *this;
  }

  /// Frees the buffer; all fields are 0 afterwards. Without a buffer nothing changes.
  void clear();

  // ------------------------------------------------------------------ capacity

  /// The capacity for `n` bytes: `n` rounded up to a multiple of 16 up to 256, of 256 up to 4,096,
  /// of 4,096 beyond. Throws `std::bad_alloc` when that passes the largest `int`.
  static int getOptimalSize(int n) { return cc::roundedCapacity(n); }
  /// Makes the capacity at least `n`, by the rule of `getOptimalSize`. Never shrinks.
  void expand(int n);
  /// Makes the capacity exactly `n`; data behind it is cut off. 0 frees the buffer. The cursor
  /// stays.
  void setBufferSize(int n);
  /// Frees the own buffer and owns `buf`, an array from array `new`, of `room` bytes (`dataSize`
  /// when negative) of which `dataSize` are data. A null `buf` has neither room nor data. The
  /// cursor is at 0.
  void setBuffer(char* buf, int dataSize, int room);

  // ------------------------------------------------------------------ writing at the cursor

  /// Writes the `n` bytes at `src`, which may lie in this very bag.
  void putData(const void* src, int n);
  /// Reserves `n` bytes, which the caller fills, and returns their address.
  char* putDataPtr(int n);
  /// Reserves `n` bytes at the next offset that is a multiple of `align` (a power of two; 1 or less
  /// means no alignment) and returns their address.
  char* putDataPtrAligned(int n, int align);
  /// Writes the `n` bytes at `src` at the next aligned offset.
  void putDataAligned(const void* src, int n, int align);
  /// Writes `s` and its 0 byte; null writes one 0 byte.
  void putString(const char* s);
  /// Writes `s` without its 0 byte; null writes nothing, but still ends the data at the cursor.
  void putStringNZ(const char* s);
  /// Writes the formatted text without a terminator, cut to 4,095 bytes.
  void putFormatStringNZ(const char* fmt, ...) COMMON_CORE_PRINTF(2, 3);

  // ------------------------------------------------------------------ reading at the cursor

  /// Copies the next `n` bytes to `dst`. Throws `Exception` when fewer are left or `n` is negative,
  /// with nothing copied and the cursor unchanged.
  void getData(void* dst, int n);
  /// Passes the next `n` bytes and returns their address. Throws as `getData`.
  char* getDataPtr(int n);
  /// As `getDataPtr`, at the next aligned offset. When it throws, the cursor stands at the aligned
  /// offset.
  char* getDataPtrAligned(int n, int align);
  /// As `getData`, at the next aligned offset. When it throws, the cursor stands there.
  void getDataAligned(void* dst, int n, int align);
  /// Passes the zero-terminated text at the cursor and returns it, in place. Throws `Exception`
  /// when the data ends without a 0 byte, with the cursor unchanged.
  char* getStringPtr();

  // ------------------------------------------------------------------ editing

  /// Opens `n` bytes at `offset` (0 to the size) and returns their address; they hold what was
  /// there, and the caller fills them. A cursor at or behind `offset` moves with its data.
  char* insSpace(int offset, int n);
  /// Removes the `n` bytes at `offset`. A cursor behind them moves with its data; one inside ends
  /// at `offset`; one that stands at `offset` itself goes back by `n`, at most to 0. Throws
  /// `Exception` when the range passes the data, with nothing changed; 0 bytes are never checked.
  void delSpace(int offset, int n);

  // ------------------------------------------------------------------ blocks

  /// Starts a block: an aligned length word, still 0. Returns the offset of the block's content.
  int markBeginOfBlock();
  /// Ends the block whose content starts at `contentStart`: its length word becomes the number of
  /// bytes written since. Everything else stays. Throws `Exception` for an offset that has no room
  /// for a length word before it, or lies behind the data.
  void markEndOfBlock(int contentStart);
  /// Enters a block: reads its length and narrows the data to its content. Returns the size to hand
  /// back on leaving. Throws `Exception` for a length that is negative or passes the data (the
  /// cursor then stands behind the length word).
  int beginBlock();
  /// Leaves a block that was read to its exact end; throws `Exception`, with nothing changed, when
  /// it was not.
  void endBlock(int savedSize);
  /// Leaves a block and skips what was not read of it.
  void passBlock(int savedSize);

  // ------------------------------------------------------------------ composite values

  /// Writes the data of `inner`, which is another bag, behind an aligned length word.
  Bag& operator<<(const Bag& inner);
  /// Reads what `operator<<` wrote into `inner`, another bag, which is ready to be read from 0.
  /// Throws `Exception` for a length that does not fit; `inner` is then empty. When an allocation
  /// fails, both bags are as they were.
  Bag& operator>>(Bag& inner);
  /// Writes the bytes of the slice and one 0 byte.
  Bag& operator<<(const ChPair& s);
  /// Writes an aligned count word and each string with its 0 byte; a null element as empty.
  Bag& operator<<(const StringVector<char>& v);
  /// Reads what `operator<<` wrote and appends the strings to `v`, which owns them. Throws
  /// `Exception` where a terminator is missing; the strings read before stay appended. When an
  /// allocation fails, the bag and the strings of `v` are as they were.
  Bag& operator>>(StringVector<char>& v);

  // ------------------------------------------------------------------ whole bags

  /// True when both hold the same data; cursor and capacity do not count.
  bool operator==(const Bag& other) const;
  /// Hands the buffer to the caller, who frees it with `delete[]`, and its size in `n`. Null for an
  /// empty bag. The bag is empty without a buffer afterwards.
  char* steal(int& n);
  /// Frees the own buffer and takes over that of `other`, cursor included; `other` is empty
  /// afterwards. Nothing is copied; stealing from itself changes nothing.
  void stealFrom(Bag& other) noexcept;

  // ------------------------------------------------------------------ fields

  /// The storage, null when there is none.
  char* getBuffer() const { return buffer; }
  /// The capacity reported, in bytes.
  int getCapacity() const { return static_cast<int>(capacity); }
  /// The cursor.
  int getPosition() const { return position; }
  /// Number of data bytes.
  int getSize() const { return size; }
  /// Sets the cursor; it is checked by the next read.
  void setPosition(int offset) { position = offset; }

 private:
  /// The cursor, rounded up to `align`; in range for a cursor of at least 0.
  unsigned int alignedPosition(int align) const {
    const unsigned int mask = align > 1 ? static_cast<unsigned int>(align) - 1 : 0;
    return (static_cast<unsigned int>(position) + mask) & ~mask;
  }
  /// True when the cursor is a multiple of `align`.
  bool isAligned(int align) const { return align <= 1 || (position & (align - 1)) == 0; }
  /// True when the cursor lies within the data.
  bool cursorInside() const {
    return static_cast<unsigned int>(position) <= static_cast<unsigned int>(size);
  }
  /// True when `n` > 0 bytes can be written at `at` without growth and without a gap.
  bool hasRoom(unsigned int at, int n) const {
    return at <= static_cast<unsigned int>(size) &&
           static_cast<unsigned int>(n) - 1u < capacity - at;
  }
  /// True when `n` >= 0 bytes of data stand at `at`, which is at most one alignment behind them.
  bool hasData(unsigned int at, int n) const {
    return n >= 0 && n <= static_cast<int>(static_cast<unsigned int>(size) - at);
  }
  char* written(unsigned int at, int n) {
    size = static_cast<int>(at) + n;
    position = size;
    return buffer + at;
  }
  // The cursor is stored behind the data: joined into one store with the size, it would hold up the
  // next call, which reads them one by one.
  void put(const void* src, unsigned int at, int n) {
    const int end = static_cast<int>(at) + n;
    size = end;
    std::memmove(buffer + at, src, static_cast<std::size_t>(n));
    position = end;
  }
  // The unusual case of a write. A small value goes by copy, so that the caller's variable, whose
  // address leads nowhere else, can stay in a register.
  void putSlowly(const void* src, int n, int align) {
    if (n > 0 && n <= 8) {
      char value[8];
      std::memcpy(value, src, static_cast<std::size_t>(n));
      write(value, n, align);
    } else {
      write(src, n, align);
    }
  }
  char* passed(unsigned int at, int n) {
    position = static_cast<int>(at) + n;
    return buffer + at;
  }

  void setCapacity(int n, bool hasMore) {
    capacity = static_cast<unsigned int>(n) & INT_MAX;
    roomy = hasMore;
  }
  int endOfWrite(long long n, int align) const;
  char* grow(int n);
  char* write(const void* src, int n, int align);
  [[noreturn]] void failRead(int align);

  char* buffer = nullptr;
  unsigned int capacity : 31;  // as reported
  unsigned int roomy : 1;      // the storage is the size class of the capacity, not just it
  int position = 0;
  int size = 0;
};

#if defined(__i386__)
static_assert(sizeof(Bag) == 16);
#endif

// The usual case of each call stands here, without growth, gap or failure; the rest is `write` and
// `failRead`. Bytes are moved, not copied, since they may come from the bag itself.

inline void Bag::putData(const void* src, int n) { putDataAligned(src, n, 1); }

inline char* Bag::putDataPtr(int n) { return putDataPtrAligned(n, 1); }

inline char* Bag::putDataPtrAligned(int n, int align) {
  const auto at = static_cast<unsigned int>(position);
  return isAligned(align) && hasRoom(at, n) ? written(at, n) : write(nullptr, n, align);
}

inline void Bag::putDataAligned(const void* src, int n, int align) {
  const auto at = static_cast<unsigned int>(position);
  if (isAligned(align) && hasRoom(at, n)) {
    put(src, at, n);
  } else {
    putSlowly(src, n, align);
  }
}

inline char* Bag::getDataPtr(int n) { return getDataPtrAligned(n, 1); }

inline char* Bag::getDataPtrAligned(int n, int align) {
  const unsigned int at = alignedPosition(align);
  if (!cursorInside() || !hasData(at, n)) failRead(align);
  return passed(at, n);
}

inline void Bag::getData(void* dst, int n) { getDataAligned(dst, n, 1); }

inline void Bag::getDataAligned(void* dst, int n, int align) {
  const char* p = getDataPtrAligned(n, align);
  if (n) std::memmove(dst, p, static_cast<std::size_t>(n));
}
