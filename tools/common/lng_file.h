// Writes the .lng dictionary file that the library's loaders read.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tools {

enum class ByteOrder { Little, Big };

// The order of the machine that the tool runs on.
ByteOrder host_byte_order();

// The bytes of a dictionary file: text number i is texts[i], which holds no 0 byte. The texts stand
// in the pool in the order of their numbers, each once. Throws std::length_error when the pool is
// larger than the format can say.
std::string write_lng(std::uint32_t stamp, const std::vector<std::string>& texts, ByteOrder order);

}  // namespace tools
