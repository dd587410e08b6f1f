// Text is decoded character by character, so that the output is UTF-8 whatever comes in.
#include "json.h"

#include <cstdio>

#include "characters.h"

namespace tools {

std::string json_string(std::string_view text) {
  std::string out = "\"";
  for (std::size_t i = 0, length; i < text.size(); i += length) {
    const unsigned int character = decode(text.substr(i), length);
    if (character == NoCharacter) {
      out += "\\ufffd";
    } else if (character < 0x20 || (character >= 0x7F && character < 0xA0)) {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\u%04x", character);
      out += escape;
    } else {
      if (character == '"' || character == '\\') out += '\\';
      out.append(text, i, length);
    }
  }
  return out += '"';
}

}  // namespace tools
