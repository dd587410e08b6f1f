/// @file
/// `PairTag`: tables of values and names, with cached name lengths.
///
/// Failure style: -1 for an unknown name, null for an unknown value. Nothing allocates or throws.
#pragma once

#include "chpair.h"
#include "common_core_api.h"

/// One entry of a table that ends with an entry whose `name` is null.
///
/// The operations are called on the first entry and scan in order; the first match counts. Names
/// match whole and without regard to ASCII case; a null text counts as the empty name. An
/// aggregate: `const PairTag colours[] = {{"red", 1}, {"green", 2}, {nullptr, 0}};`
struct COMMON_CORE_API PairTag {
  const char* name;                       ///< zero-terminated name, or null at the end
  int value;                              ///< the value of that name
  mutable const char* nameEnd = nullptr;  ///< cache: the end of `name`, set by `init`

  /// Prepares the table: caches every name's end, once. Names must not change afterwards. Doing so
  /// from several threads at once is harmless.
  void init() const;
  /// The value whose name equals `text`, or -1; prepares the table.
  int translate(const ChPair& text) const;
  /// The value whose name equals `text`, or -1.
  int translate(const char* text) const;
  /// The name of the first entry whose value is `wanted`, or null.
  const char* translate(int wanted) const;
};

#if defined(__i386__)
static_assert(sizeof(PairTag) == 12);
#endif
