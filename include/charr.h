/// @file
/// Owned zero-terminated strings: `ChArr` of UTF-8 bytes and `ChArr16` of UTF-16 units.
///
/// Failure style: nothing reports an error; `std::bad_alloc` of an allocation passes through and
/// leaves the string as it was (null where the header says so). Every replacement allocates exactly
/// what the text needs; there is no spare room.
#pragma once

#include <cstdarg>

#include "common_core_api.h"
#include "containers.h"

/// An owned zero-terminated string of UTF-8 text, or null for "no string".
///
/// One pointer to an array from array `new`. All lengths are bytes. Where a text argument may point
/// into the string itself, the operation says so.
class COMMON_CORE_API ChArr {
 public:
  /// No string.
  ChArr() = default;
  /// A copy of `s` up to its terminator; null gives no string.
  explicit ChArr(const char* s);
  /// A copy of the text of `other`; null stays null.
  ChArr(const ChArr& other);
  /// Takes the text of `other`, which is null afterwards.
  ChArr(ChArr&& other) noexcept : text(other.steal()) {}
  ~ChArr() { delete[] text; }

  /// Frees the own text, then copies the text of `other`; assignment to itself does nothing. When
  /// the allocation fails, this string is null.
  ChArr& operator=(const ChArr& other);
  /// Frees the own text and takes that of `other`, which is null afterwards.
  ChArr& operator=(ChArr&& other) noexcept {
    if (this != &other) adopt(other.steal());
    return *this;
  }
  /// Becomes a copy of `s`, which may point into this very string; null gives no string.
  ChArr& operator=(const char* s);
  /// Becomes the UTF-8 form of the zero-terminated UTF-16 text; null gives no string.
  ChArr& operator=(const unsigned short* s);

  /// Becomes a copy of the bytes [begin, end), zero bytes included. Does nothing when `begin` is
  /// the own text, whatever `end` is. A null `begin` gives no string.
  void assign(const char* begin, const char* end);
  /// Becomes a copy of the `n` bytes at `s`. Does nothing when `s` is the own text.
  void assign(const char* s, int n);
  /// Becomes the UTF-8 form of the `n` units at `s`. A null `s` gives no string.
  void assign(const unsigned short* s, int n);
  /// Becomes the UTF-8 form of the units [begin, end). A null `begin` gives no string.
  void assign(const unsigned short* begin, const unsigned short* end);
  /// Becomes the UTF-8 form of `n` >= 0 bytes of Windows-1251 text, which may lie in this very
  /// string. 0 bytes give the empty string, not null. Byte 0x98, which the code page leaves
  /// undefined, becomes a space. (Unicode Consortium, mapping table CP1251.)
  void assign1251(const char* s, int n);

  /// Appends `s`, which may point into this very string. Null appends nothing. Each call costs the
  /// whole length: collect long texts in a `Bag` or a `std::string`.
  ChArr& operator+=(const char* s);
  /// Puts `s` in front, which may point into this very string. Null or empty changes nothing.
  void insert(const char* s);
  /// Frees the own text and takes that of `other`, which is null afterwards; nothing is copied.
  /// Stealing from itself changes nothing.
  void stealFrom(ChArr& other);
  /// Becomes the formatted text, cut to 4,095 bytes. Arguments may point into this very string.
  void format(const char* fmt, ...) COMMON_CORE_PRINTF(2, 3);
  /// `format` with an argument list.
  void format_va(const char* fmt, va_list args) COMMON_CORE_PRINTF(2, 0);

  /// The text, or null when there is no string.
  const char* get() const { return text; }
  /// The text, never null: the empty string stands in.
  const char* c_str() const;
  /// Number of bytes before the terminator, measured; 0 when there is no string.
  unsigned int length() const;
  /// True when there is no string or it has no byte.
  bool isEmpty() const { return !text || !*text; }
  /// Hands the array to the caller, who frees it with `delete[]`; this string is null afterwards.
  char* steal() {
    char* s = text;
    text = nullptr;
    return s;
  }
  /// Frees the own text and owns `s`, a zero-terminated array from array `new`, or null.
  void adopt(char* s) {
    char* old = text;
    text = s;
    if (old != s) delete[] old;
  }

 private:
  char* text = nullptr;
};

/// An owned zero-terminated string of UTF-16 units (one unit per character), or null.
///
/// One pointer to an array from array `new`. All lengths are units.
class COMMON_CORE_API ChArr16 {
 public:
  /// No string.
  ChArr16() = default;
  /// A copy of `s` up to its 0 unit; null gives no string.
  explicit ChArr16(const unsigned short* s);
  /// A copy of the text of `other`; null stays null.
  ChArr16(const ChArr16& other);
  /// Takes the text of `other`, which is null afterwards.
  ChArr16(ChArr16&& other) noexcept : text(other.steal()) {}
  ~ChArr16() { delete[] text; }

  /// Frees the own text, then copies the text of `other`; assignment to itself does nothing. When
  /// the allocation fails, this string is null.
  ChArr16& operator=(const ChArr16& other);
  /// Frees the own text and takes that of `other`, which is null afterwards.
  ChArr16& operator=(ChArr16&& other) noexcept {
    if (this != &other) adopt(other.steal());
    return *this;
  }
  /// Becomes a copy of `s`, which may point into this very string; null gives no string.
  ChArr16& operator=(const unsigned short* s);
  /// Becomes the UTF-16 form of the zero-terminated UTF-8 text; null gives no string.
  ChArr16& operator=(const char* s);

  /// Becomes a copy of the units [begin, end). Does nothing when `begin` is the own text, whatever
  /// `end` is. A null `begin` gives no string.
  void assign(const unsigned short* begin, const unsigned short* end);
  /// Becomes a copy of the `n` units at `s`. Does nothing when `s` is the own text.
  void assign(const unsigned short* s, int n);

  /// The text, or null when there is no string.
  const unsigned short* get() const { return text; }
  /// The text, never null: the empty string stands in.
  const unsigned short* c_str() const;
  /// Number of units before the terminator, measured; 0 when there is no string.
  unsigned int length() const;
  /// True when there is no string or it has no unit.
  bool isEmpty() const { return !text || !*text; }
  /// Hands the array to the caller, who frees it with `delete[]`; this string is null afterwards.
  unsigned short* steal() {
    unsigned short* s = text;
    text = nullptr;
    return s;
  }
  /// Frees the own text and owns `s`, a zero-terminated array from array `new`, or null.
  void adopt(unsigned short* s) {
    unsigned short* old = text;
    text = s;
    if (old != s) delete[] old;
  }

 private:
  unsigned short* text = nullptr;
};

#if defined(__i386__)
static_assert(sizeof(ChArr) == 4 && sizeof(ChArr16) == 4);
#endif
