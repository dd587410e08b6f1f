// Whole blocks are copied with all that they hold; where a block holds bytes to be escaped, what
// stands behind each is copied again behind its entity. A block that follows in the source makes
// sure that each such copy of a block's size stays inside of both ranges.

#include "markup/escape.h"

#include "core/kernels.h"

namespace cc {

namespace {

using Block = kernels::NativeBlock;

// Copies the block at `from` to `to`, with an entity at each of `marks`; returns the end.
char* escapeBlock(const char* from, Block::Mask marks, char* to) {
  std::size_t done = 0;
  while (marks != 0) {
    const std::size_t i = Block::first(marks);
    Block::store(to, Block::load(from + done));
    to += i - done;
    const Entity& entity = entityOf(from[i]);
    kernels::storeAs(to, entity.bytes);
    to += entity.size;
    done = i + 1;
    marks &= marks - 1;
  }
  Block::store(to, Block::load(from + done));
  return to + (Block::size - done);
}

// What stands before each byte, short texts included.
char* escapeRest(const char* begin, const char* end, char* to) {
  while (true) {
    const char* const stop = kernels::findEscapable(begin, end);
    to = kernels::copyShort(begin, static_cast<std::size_t>(stop - begin), to);
    if (stop == end) return to;
    const Entity& entity = entityOf(*stop);
    to = kernels::copyShort(entity.bytes.data(), entity.size, to);
    begin = stop + 1;
  }
}

}  // namespace

unsigned long long escapedLength(const char* begin, const char* end) {
  unsigned long long length = static_cast<unsigned long long>(end - begin);
  while (static_cast<std::size_t>(end - begin) >= Block::size) {
    for (Block::Mask marks = kernels::escapableAt(begin); marks != 0; marks &= marks - 1) {
      length += entityOf(begin[Block::first(marks)]).size - 1U;
    }
    begin += Block::size;
  }
  for (; begin != end; ++begin) {
    const unsigned int size = entityOf(*begin).size;
    length += size != 0 ? size - 1 : 0;
  }
  return length;
}

char* escapeText(const char* begin, const char* end, char* to) {
  while (static_cast<std::size_t>(end - begin) >= 2 * Block::size) {
    const Block::Mask marks = kernels::escapableAt(begin);
    if (marks == 0) {
      Block::store(to, Block::load(begin));
      to += Block::size;
    } else {
      to = escapeBlock(begin, marks, to);
    }
    begin += Block::size;
  }
  return escapeRest(begin, end, to);
}

}  // namespace cc
