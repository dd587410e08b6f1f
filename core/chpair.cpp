// ChPair: a slice of text.

#include "chpair.h"

#include "charr.h"

ChPair& ChPair::operator=(const ChArr& a) { return *this = a.get(); }

ChPair& ChPair::trimmed() {
  while (begin < end && *begin == ' ') ++begin;
  while (end > begin && end[-1] == ' ') --end;
  return *this;
}

bool ChPair::split(ChPair& left, char sep, ChPair& right) const {
  if (isEmpty()) return false;
  const void* found = std::memchr(begin, sep, static_cast<std::size_t>(end - begin));
  if (!found) return false;
  const char* cut = static_cast<const char*>(found);
  const ChPair before(begin, cut);
  const ChPair behind(cut + 1, end);
  left = before;
  right = behind;
  return true;
}
