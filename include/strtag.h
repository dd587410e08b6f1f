/// @file
/// `StrTag` and `StrPtrTag`: tables of values and names without a cache.
///
/// Failure style: -1 for an unknown name, null for an unknown value. Nothing allocates or throws.
#pragma once

#include "common_core_api.h"

/// One entry of a table that ends with an entry whose `name` is null. Lookups are those of
/// `PairTag`.
struct COMMON_CORE_API StrTag {
  const char* name;  ///< zero-terminated name, or null at the end
  int value;         ///< the value of that name

  /// The value whose name equals `text`, or -1. Null counts as the empty text.
  int translate(const char* text) const;
  /// The name of the first entry whose value is `wanted`, or null.
  const char* translate(int wanted) const;
};

/// One entry of a table whose names are string variables, read at every lookup, so that they can be
/// translated after the table is built. The table ends with an entry whose `name` is null.
struct COMMON_CORE_API StrPtrTag {
  const char* const* name;  ///< the variable; it may hold null, which counts as the empty name
  int value;                ///< the value of that name

  /// The value whose name equals `text` now, or -1. Null counts as the empty text.
  int translate(const char* text) const;
  /// The string that the variable of the first entry whose value is `wanted` holds now (maybe
  /// null), or null.
  const char* translate(int wanted) const;
};

#if defined(__i386__)
static_assert(sizeof(StrTag) == 8 && sizeof(StrPtrTag) == 8);
#endif
