// Pieces of JSON.
#pragma once

#include <string>
#include <string_view>

namespace tools {

// `text` as a JSON string, quotes included: control characters are escaped, bytes that are no UTF-8
// become U+FFFD.
std::string json_string(std::string_view text);

}  // namespace tools
