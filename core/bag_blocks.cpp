// Bag: nested blocks and composite values, built on the plain reads and writes.
//
// A composite write first makes room for all of it, so that a failed allocation leaves no half of
// it behind; a composite read that runs out of memory puts the cursor back.

#include "bag.h"
#include "charproc.h"
#include "core/formatted_text.h"

int Bag::markBeginOfBlock() {
  const int length = 0;
  putDataAligned(&length, 4, 4);
  return position;
}

void Bag::markEndOfBlock(int contentStart) {
  if (contentStart < 4 || contentStart > size) throw Exception();
  const int length = position - contentStart;
  std::memcpy(buffer + contentStart - 4, &length, 4);
}

int Bag::beginBlock() {
  int length = 0;
  getDataAligned(&length, 4, 4);
  if (length < 0 || length > size - position) throw Exception();
  const int saved = size;
  size = position + length;
  return saved;
}

void Bag::endBlock(int savedSize) {
  if (position != size) throw Exception();
  size = savedSize;
}

void Bag::passBlock(int savedSize) {
  position = size;
  size = savedSize;
}

Bag& Bag::operator<<(const Bag& inner) {
  const int n = inner.size;
  expand(endOfWrite(4LL + n, 4));
  putDataAligned(&n, 4, 4);
  putData(inner.buffer, n);
  return *this;
}

Bag& Bag::operator>>(Bag& inner) {
  const int start = position;
  const int innerPosition = inner.position;
  const int innerSize = inner.size;
  inner.position = 0;
  inner.size = 0;
  int n = 0;
  getDataAligned(&n, 4, 4);
  const char* data = getDataPtr(n);
  try {
    inner.putData(data, n);
  } catch (const std::bad_alloc&) {
    inner.position = innerPosition;
    inner.size = innerSize;
    position = start;
    throw;
  }
  inner.position = 0;
  return *this;
}

Bag& Bag::operator<<(const ChPair& s) {
  const std::ptrdiff_t n = s.end - s.begin;
  const BufHolder<char> old(grow(endOfWrite(n + 1LL, 1)));
  char* text = putDataPtr(static_cast<int>(n) + 1);
  if (n) std::memmove(text, s.begin, static_cast<std::size_t>(n));
  text[n] = 0;
  return *this;
}

Bag& Bag::operator<<(const StringVector<char>& v) {
  long long total = 4;
  for (const char* s : v) total += 1 + (s ? static_cast<long long>(std::strlen(s)) : 0);
  expand(endOfWrite(total, 4));
  const int count = v.getCount();
  putDataAligned(&count, 4, 4);
  for (const char* s : v) putString(s);
  return *this;
}

Bag& Bag::operator>>(StringVector<char>& v) {
  const int start = position;
  const int before = v.getCount();
  int count = 0;
  getDataAligned(&count, 4, 4);
  try {
    const int most = count < size - position ? count : size - position;
    if (most > INT_MAX - before) throw std::bad_alloc();
    if (most > 0) v.expand(before + most);
    for (int i = 0; i < count; ++i) {
      const char* s = getStringPtr();
      v.append(strnew(s, static_cast<unsigned int>(std::strlen(s))));
    }
  } catch (const std::bad_alloc&) {
    v.truncate(before);
    position = start;
    throw;
  }
  return *this;
}

void Bag::putFormatStringNZ(const char* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  const cc::FormattedText text(fmt, args);
  va_end(args);
  putStringNZ(text.get());
}
