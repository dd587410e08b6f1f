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
    while (at < bytes.size()) {
      const std::optional<std::int64_t> head = word();
      if (!head) return {};
      if (*head < -2 || *head > 99999) break;
      if (*head == -1) {
        if (!text()) return {};
        continue;
      }
      std::int64_t number = *head;
      if (number == -2) {
        const std::optional<std::int64_t> slot = word();
        const std::optional<std::int64_t> named = slot ? word() : std::nullopt;
        if (!named) return {};
        if (*slot < 0 || *slot > 4) break;
        number = *named;
      }
      if (!known(number)) return "Some .loc dictionary is not loaded";
      const Outcome outcome = expand(texts[static_cast<std::size_t>(number)]);
      if (outcome == Outcome::Short) return {};
      if (outcome == Outcome::Unknown) return "Some .loc dictionary is not loaded";
      if (outcome == Outcome::Stop) break;
    }
    return out;
  }

  std::string out;

 private:
  enum class Outcome { Done, Stop, Short, Unknown };

  bool known(std::int64_t n) const { return n >= 0 && n < static_cast<std::int64_t>(texts.size()); }

  std::optional<std::int64_t> word() {
    while (at % 4 != 0) ++at;
    if (at + 4 > bytes.size()) return {};
    std::uint32_t value = 0;
    for (int i = 3; i >= 0; --i) {
      value = value * 256 + static_cast<unsigned char>(bytes[at + static_cast<std::size_t>(i)]);
    }
    at += 4;
    return static_cast<std::int32_t>(value);
  }

  bool text() {
    std::string read;
    for (std::size_t i = at; i < bytes.size(); ++i) {
      if (bytes[i] == 0) {
        out += read;
        at = i + 1;
        return true;
      }
      read += bytes[i];
    }
    return false;
  }

  Outcome expand(const std::string& t) {
    for (std::size_t i = 0; i < t.size(); ++i) {
      if (t[i] != '%') {
        out += t[i];
        continue;
      }
      const char kind = ++i < t.size() ? t[i] : '\0';
      if (kind == '%') {
        out += '%';
      } else if (kind == 's') {
        if (!text()) return Outcome::Short;
      } else if (kind == 'd' || kind == 'u' || kind == 'i') {
        const std::optional<std::int64_t> value = word();
        if (!value) return Outcome::Short;
        if (kind == 'd') out += std::to_string(*value);
        if (kind == 'u') out += std::to_string(static_cast<std::uint32_t>(*value));
        if (kind == 'i' && !known(*value)) return Outcome::Unknown;
        if (kind == 'i') out += texts[static_cast<std::size_t>(*value)];
      } else {
        return Outcome::Stop;
      }
    }
    return Outcome::Done;
  }

  std::string bytes;
  std::vector<std::string> texts;
  std::size_t at = 0;
};

}  // namespace loc_test
