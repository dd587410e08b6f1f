// How many bytes of a block need an entity is hard to predict, so nothing branches on it: lengths
// are added up in blocks, and a block that holds any such byte is written byte by byte, each by a
// copy of more than it takes. So many bytes are left behind the block in the source that the copies
// stay inside of the target.

#include "markup/escape.h"

#include <algorithm>

#include "core/kernels.h"

namespace cc {

namespace {

using Block = kernels::NativeBlock;

constexpr unsigned char maxGrowth = 5;  // of &quot; and &apos;

// For each byte, by how much its entity is longer.
Block::Bytes growth(Block::Bytes v) {
  const Block::Marks quotes =
      Block::either(Block::equal(v, Block::all('"')), Block::equal(v, Block::all('\'')));
  const Block::Marks angles =
      Block::equal(Block::either(v, Block::all('<' ^ '>')), Block::all('>'));
  return Block::either(
      Block::where(quotes, maxGrowth),
      Block::either(Block::where(Block::equal(v, Block::all('&')), 4), Block::where(angles, 3)));
}

std::size_t sumOf(Block::Bytes tally) {
  return Block::total(Block::plusSums(Block::all(0), tally));
}

char* escapeBlock(const char* from, char* to) {
  for (std::size_t i = 0; i < Block::size; ++i) {
    const Escaped& piece = escaped(from[i]);
    kernels::storeAs(to, piece);
    to += piece.size;
  }
  return to;
}

// What stands before each byte, short texts included.
char* escapeRest(const char* begin, const char* end, char* to) {
  while (true) {
    const char* const stop = kernels::findEscapable(begin, end);
    to = kernels::copyShort(begin, static_cast<std::size_t>(stop - begin), to);
    if (stop == end) return to;
    const Escaped& entity = escaped(*stop);
    to = kernels::copyShort(entity.bytes.data(), entity.size, to);
    begin = stop + 1;
  }
}

}  // namespace

unsigned long long escapedLength(const char* begin, const char* end) {
  constexpr std::size_t mostTurns = 16;
  static_assert(mostTurns * maxGrowth <= 255);  // what a byte of a tally holds
  unsigned long long length = static_cast<unsigned long long>(end - begin);
  begin = kernels::findEscapable(begin, end);
  while (static_cast<std::size_t>(end - begin) >= Block::size) {
    const std::size_t blocks = static_cast<std::size_t>(end - begin) / Block::size;
    Block::Bytes tally = Block::all(0);
    for (std::size_t i = std::min(blocks, mostTurns); i != 0; --i, begin += Block::size) {
      tally = Block::plus(tally, growth(Block::load(begin)));
    }
    length += sumOf(tally);
    begin = kernels::findEscapable(begin, end);
  }
  if (begin == end) return length;
  return length + sumOf(growth(Block::loadPart(begin, static_cast<std::size_t>(end - begin))));
}

char* escapeText(const char* begin, const char* end, char* to) {
  constexpr std::size_t needed = Block::size + std::max(Block::size, sizeof(Escaped));
  for (; static_cast<std::size_t>(end - begin) >= needed; begin += Block::size) {
    if (kernels::escapableAt(begin) == 0) {
      Block::store(to, Block::load(begin));
      to += Block::size;
    } else {
      to = escapeBlock(begin, to);
    }
  }
  return escapeRest(begin, end, to);
}

}  // namespace cc
