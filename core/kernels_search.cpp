// The order of bytes by how often they stand in text: prose in several languages and markup.

#include "core/kernels_search.h"

#include <array>
#include <string_view>

namespace cc::kernels {
namespace {

using Ranks = std::array<unsigned char, 256>;

constexpr void setRange(Ranks& ranks, unsigned char low, unsigned char high, unsigned char rank) {
  for (std::size_t c = low; c <= high; ++c) ranks[c] = rank;
}

constexpr void setEach(Ranks& ranks, std::string_view bytes, unsigned char rank) {
  for (const char c : bytes) ranks[static_cast<unsigned char>(c)] = rank;
}

constexpr Ranks makeRanks() {
  using namespace std::string_view_literals;
  Ranks ranks{};
  setRange(ranks, 0x80, 0xBF, 130);  // the middle of letters
  // Lead bytes; the common ones are those of Latin, Greek and Cyrillic letters, of punctuation and
  // of East Asian scripts.
  setRange(ranks, 0xC2, 0xEF, 160);
  setRange(ranks, 0xE4, 0xE9, 230);
  setEach(ranks, "\xC3\xCE\xCF\xD0\xD1\xE2\xE3", 250);
  setRange(ranks, 'A', 'Z', 40);
  setRange(ranks, '0', '9', 100);
  setEach(ranks, "\0\t\n,.-_:;/<>=\"'"sv, 120);
  unsigned char rank = 60;
  for (const char c : "zqxjkvbywgpfmucdlhrsinoate "sv) {
    ranks[static_cast<unsigned char>(c)] = rank;
    rank = static_cast<unsigned char>(rank + 7);
  }
  return ranks;
}

constexpr Ranks rankOf = makeRanks();

}  // namespace

unsigned int commonness(unsigned char c) { return rankOf[c]; }

}  // namespace cc::kernels
