// The pool is laid out first, since the header says how long it is.
#include "lng_file.h"

#include <bit>
#include <climits>
#include <stdexcept>

namespace tools {

namespace {

constexpr std::uint32_t Magic = 0x524C434C;
constexpr std::uint32_t Version = 1;
constexpr std::uint32_t Encoding = 8;

void putWord(std::string& out, std::uint32_t word, ByteOrder order) {
  for (unsigned int i = 0; i < 4; ++i) {
    const unsigned int place = order == ByteOrder::Little ? i : 3 - i;
    out += static_cast<char>(word >> (8 * place) & 0xFF);
  }
}

}  // namespace

ByteOrder host_byte_order() {
  return std::endian::native == std::endian::big ? ByteOrder::Big : ByteOrder::Little;
}

std::string write_lng(std::uint32_t stamp, const std::vector<std::string>& texts, ByteOrder order) {
  std::string pool;
  std::vector<std::uint32_t> offsets;
  for (const std::string& text : texts) {
    if (text.size() >= INT_MAX - pool.size()) throw std::length_error("dictionary too large");
    offsets.push_back(static_cast<std::uint32_t>(pool.size()));
    pool.append(text).push_back('\0');
  }
  std::string out;
  const auto count = static_cast<std::uint32_t>(texts.size());
  const auto poolSize = static_cast<std::uint32_t>(pool.size());
  for (const std::uint32_t word : {0u, Magic, Version, Encoding, stamp, count, poolSize}) {
    putWord(out, word, order);
  }
  for (const std::uint32_t offset : offsets) putWord(out, offset, order);
  return out + pool;
}

}  // namespace tools
