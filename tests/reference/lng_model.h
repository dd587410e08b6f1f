/// @file
/// The `.lng` dictionary file as a plain walk over its bytes, for comparison with the loaders.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace reference {

class LngModel {
 public:
  explicit LngModel(std::string_view file) : bytes(file) {}

  /// The result code of a file that must hold `count` texts and `stamp`; 0 fills `texts`.
  int read(std::int64_t count, std::int64_t stamp) {
    if (!word()) return 6;
    if (value != 0) return 2;
    if (!word()) return 6;
    bigEndian = value == 0x4C434C52;
    if (value != 0x524C434C && !bigEndian) return 2;
    const struct {
      std::int64_t value;
      int code;
    } rest[] = {{1, 3}, {8, 4}, {stamp, 5}, {count, 2}};
    for (const auto& expected : rest) {
      if (!word()) return 6;
      if (value != expected.value) return expected.code;
    }
    if (count <= 0) return 0;
    if (!word()) return 6;
    if (value <= 0) return 2;
    poolSize = value;
    return body(count);
  }

  std::vector<std::string> texts;
  /// What the file says of its pool, once it was read up to there.
  std::int64_t poolSize = 0;

 private:
  int body(std::int64_t count) {
    std::vector<std::int64_t> offsets;
    for (; count > 0; --count) {
      if (!word()) return 6;
      offsets.push_back(value);
    }
    if (static_cast<std::int64_t>(bytes.size() - at) < poolSize) return 6;
    const std::string_view pool = bytes.substr(at, static_cast<std::size_t>(poolSize));
    for (const std::int64_t offset : offsets) {
      if (offset < 0 || offset >= poolSize) return 2;
      const std::size_t end = pool.find('\0', static_cast<std::size_t>(offset));
      if (end == std::string_view::npos) return 2;
      texts.emplace_back(
          pool.substr(static_cast<std::size_t>(offset), end - static_cast<std::size_t>(offset)));
    }
    return 0;
  }

  bool word() {
    if (bytes.size() - at < 4) return false;
    std::uint32_t unsignedValue = 0;
    for (std::size_t i = 0; i < 4; ++i) {
      const auto byte = static_cast<unsigned char>(bytes[at + (bigEndian ? i : 3 - i)]);
      unsignedValue = unsignedValue << 8 | byte;
    }
    at += 4;
    value = static_cast<std::int32_t>(unsignedValue);
    return true;
  }

  std::string_view bytes;
  std::size_t at = 0;
  std::int64_t value = 0;
  bool bigEndian = false;
};

}  // namespace reference
