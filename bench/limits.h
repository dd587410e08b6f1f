// The physical limit: what it takes to read or to move the bytes, and nothing else.
#pragma once

#include <cstddef>

namespace bench {

// A vectorised sum over the bytes, taken as 8-byte words.
std::size_t sum(const void* data, std::size_t size);

}  // namespace bench
