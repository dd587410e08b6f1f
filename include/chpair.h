/// @file
/// A slice of 8-bit text.
///
/// Failure style: nothing here allocates, throws or reports an error.
#pragma once

#include <cstring>
#include <string_view>

#include "common_core_api.h"

class ChArr;

/// A slice of 8-bit text: the bytes from `begin` up to `end`, which is one past the last.
///
/// Owns nothing: it lives no longer than the text it points into, needs no terminator, may
/// hold zero bytes, and travels by value. Two null ends are the empty slice. Nothing here
/// allocates, throws or reports an error. All sizes are bytes, never characters.
class COMMON_CORE_API ChPair {
 public:
  const char* begin = nullptr;  ///< first byte
  const char* end = nullptr;    ///< one past the last byte; never before `begin`

  /// The empty slice, both ends null.
  ChPair() = default;
  /// The bytes from `first` up to `last`.
  ChPair(const char* first, const char* last) : begin(first), end(last) {}

  /// Takes the text of `s` without its terminator; a null `s` gives the empty slice.
  /// Implicit on purpose: a literal or an owned string fits wherever a slice is asked for.
  ChPair(const char* s) { *this = s; }  // NOLINT(google-explicit-constructor)
  /// Takes the text of `a`, which must outlive the slice; a null `a` gives the empty slice.
  ChPair(const ChArr& a) { *this = a; }  // NOLINT(google-explicit-constructor)

  /// Takes the text of `s` without its terminator; a null `s` gives the empty slice.
  ChPair& operator=(const char* s) {
    begin = s;
    end = s ? s + std::strlen(s) : nullptr;
    return *this;
  }
  /// Takes the text of `a`, which must outlive the slice; a null `a` gives the empty slice.
  ChPair& operator=(const ChArr& a);

  /// Number of bytes.
  unsigned int length() const { return static_cast<unsigned int>(end - begin); }
  /// True when the slice holds no byte.
  bool isEmpty() const { return begin == end; }
  /// The same bytes as a standard view.
  operator std::string_view() const {  // NOLINT(google-explicit-constructor)
    return {begin, static_cast<std::size_t>(end - begin)};
  }

  /// Drops the spaces at both ends of this slice and returns the slice itself. Only 0x20
  /// counts: tabs and line ends stay. A slice of spaces ends empty, at its old `end`.
  ChPair& trimmed();

  /// Cuts at the first `sep`: `left` gets the bytes before it, `right` those after it, and
  /// the result is true. Without a `sep` the result is false and both keep their value.
  /// `left` or `right` may be this very slice: ``while (list.split(item, ',', list))`` walks.
  bool split(ChPair& left, char sep, ChPair& right) const;
};

#if defined(__i386__)
static_assert(sizeof(ChPair) == 8);
#endif
