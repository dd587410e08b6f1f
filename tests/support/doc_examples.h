/// @file
/// The byte examples of docs/formats.md, so that tests hold them against the code.
#pragma once

#include <fstream>
#include <iomanip>
#include <sstream>
#include <stdexcept>
#include <string>

namespace cc::test {

/// The bytes of the fenced block "```hex name=NAME" of docs/formats.md.
///
/// Each line is an offset of four hexadecimal digits, the bytes in pairs of digits, and perhaps a
/// remark after a '#'. Throws `std::runtime_error` for a block that is not there, a line that reads
/// otherwise, or an offset that is not the number of bytes before it.
inline std::string hexExample(const std::string& name) {
  std::ifstream in(CC_SOURCE_DIR "docs/formats.md");
  std::string line;
  while (std::getline(in, line) && line != "```hex name=" + name) {
  }
  if (!in) throw std::runtime_error("docs/formats.md has no example " + name);
  std::string bytes;
  while (std::getline(in, line) && line != "```") {
    std::istringstream words(line.substr(0, line.find('#')));
    unsigned int offset = 0;
    std::string digits;
    words >> std::hex >> offset;
    if (!words || offset != bytes.size()) throw std::runtime_error("offset of " + line);
    while (words >> digits) {
      std::size_t used = 0;
      const unsigned long byte = std::stoul(digits, &used, 16);
      if (digits.size() != 2 || used != 2) throw std::runtime_error("bytes of " + line);
      bytes += static_cast<char>(byte);
    }
  }
  return bytes;
}

}  // namespace cc::test
