/// @file
/// A value that a record holds, written and read again.
#pragma once

#include "bag.h"
#include "fuzz/fuzz.h"

namespace fuzz {

inline bool same(const Bag& a, const Bag& b) { return a == b; }

inline bool same(const StringVector<char>& a, const StringVector<char>& b) {
  bool equal = a.getCount() == b.getCount();
  for (int i = 0; equal && i < a.getCount(); ++i) equal = std::strcmp(a[i], b[i]) == 0;
  return equal;
}

template <class T>
void expectRoundTrip(const T& value) {
  Bag bag;
  bag << value;
  bag.setPosition(0);
  T copy;
  bag >> copy;
  expect(bag.getPosition() == bag.getSize());
  expect(same(value, copy));
}

}  // namespace fuzz
