// A plain loop with several accumulators, which the compiler (at -O3) turns into the widest vectors
// of the processor at hand.

#include "limits.h"

#include <cstdint>
#include <cstring>

#if defined(__x86_64__) || defined(__i386__)
#define BENCH_WIDEST __attribute__((target_clones("arch=x86-64-v4", "avx2", "default")))
#else
#define BENCH_WIDEST
#endif

namespace bench {
namespace {

constexpr std::size_t lanes = 16;  // 128 bytes a turn: enough loads under way to hide latency

std::uint64_t wordAt(const unsigned char* p) {
  std::uint64_t word;
  std::memcpy(&word, p, sizeof word);
  return word;
}

}  // namespace

BENCH_WIDEST std::size_t sum(const void* data, std::size_t size) {
  const auto* p = static_cast<const unsigned char*>(data);
  std::uint64_t total = 0;
  if (size >= lanes * 8) {
    std::uint64_t parts[lanes] = {};
    for (; size >= lanes * 8; size -= lanes * 8, p += lanes * 8) {
      for (std::size_t i = 0; i < lanes; ++i) parts[i] += wordAt(p + 8 * i);
    }
    for (const std::uint64_t part : parts) total += part;
  }
  for (; size >= 8; size -= 8, p += 8) total += wordAt(p);
  for (; size > 0; --size, ++p) total += *p;
  return static_cast<std::size_t>(total);
}

}  // namespace bench
