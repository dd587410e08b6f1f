// Rendering as a plain walk, byte by byte, for comparison with the library's.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace loc_test {

/// Renders messages from one dictionary of `texts`, as the single form does.
class RenderModel {
 public:
  RenderModel(std::string_view message, const std::vector<std::string>& dictionary)
      : bytes(message), texts(dictionary) {}

  /// The text, or nothing when the bytes end before something is complete; `out` then holds the
  /// text so far.
  std::optional<std::string> render() {
    try {
      while (at < bytes.size() && entry()) {
      }
    } catch (const Unknown&) {
      out = "Some .loc dictionary is not loaded";
    } catch (const Short&) {
      return {};
    }
    return out;
  }

  std::string out;

 private:
  struct Short {};
  struct Unknown {};

  // False where rendering stops.
  bool entry() {
    std::int64_t number = word();
    if (number < -2 || number > 99999) return false;
    if (number == -1) {
      out += text();
      return true;
    }
    if (number == -2) {
      const std::int64_t slot = word();
      number = word();
      if (slot < 0 || slot > 4) return false;
    }
    return expand(textOf(number));
  }

  const std::string& textOf(std::int64_t n) const {
    if (n < 0 || n >= static_cast<std::int64_t>(texts.size())) throw Unknown();
    return texts[static_cast<std::size_t>(n)];
  }

  std::int32_t word() {
    at = (at + 3) / 4 * 4;
    if (at + 4 > bytes.size()) throw Short();
    std::uint32_t value = 0;
    for (std::size_t i = 4; i-- > 0;) {
      value = value * 256 + static_cast<unsigned char>(bytes[at + i]);
    }
    at += 4;
    return static_cast<std::int32_t>(value);
  }

  std::string_view text() {
    const std::size_t begin = at;
    const std::size_t end = bytes.find('\0', begin);
    if (end == bytes.npos) throw Short();
    at = end + 1;
    return bytes.substr(begin, end - begin);
  }

  bool expand(const std::string& t) {
    for (std::size_t i = 0; i < t.size(); ++i) {
      const char kind = t[i] != '%' ? '\0' : ++i < t.size() ? t[i] : 'x';
      if (kind == '\0' || kind == '%') {
        out += t[i];
      } else if (kind == 's') {
        out += text();
      } else if (kind == 'd') {
        out += std::to_string(word());
      } else if (kind == 'u') {
        out += std::to_string(static_cast<std::uint32_t>(word()));
      } else if (kind == 'i') {
        out += textOf(word());
      } else {
        return false;
      }
    }
    return true;
  }

  const std::string_view bytes;
  const std::vector<std::string>& texts;
  std::size_t at = 0;
};

}  // namespace loc_test
