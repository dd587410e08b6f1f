/// @file
/// Numbers and entities in text, one byte after another, straight from the definitions.
#pragma once

#include <cerrno>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

namespace reference {

/// A sign, and a magnitude that stands still at the largest value.
struct Decimal {
  bool negative = false;
  bool tooLarge = false;
  unsigned long long magnitude = 0;
};

inline bool isBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

/// The decimal number that fills `text`; white space may stand before its sign with `blanks`.
inline std::optional<Decimal> wholeDecimal(std::string_view text, bool blanks) {
  while (blanks && !text.empty() && isBlank(text[0])) text.remove_prefix(1);
  Decimal number;
  number.negative = !text.empty() && text[0] == '-';
  if (!text.empty() && (text[0] == '-' || text[0] == '+')) text.remove_prefix(1);
  if (text.empty()) return {};
  for (const char c : text) {
    if (c < '0' || c > '9') return {};
    const unsigned int digit = static_cast<unsigned int>(c - '0');
    number.tooLarge = number.tooLarge || number.magnitude > (~0ULL - digit) / 10;
    if (!number.tooLarge) number.magnitude = number.magnitude * 10 + digit;
  }
  return number;
}

/// The same as a value of at least -`lowest` and at most `highest`.
inline std::optional<unsigned long long> inRange(const std::optional<Decimal>& number,
                                                 unsigned long long lowest,
                                                 unsigned long long highest) {
  if (!number || number->tooLarge) return {};
  if (number->magnitude > (number->negative ? lowest : highest)) return {};
  return number->negative ? 0 - number->magnitude : number->magnitude;
}

/// The digits of a base of 16 or 2 up to `ending`; the low 32 bits of their number.
inline std::optional<unsigned int> wholeDigits(std::string_view text, int base, char ending) {
  text = text.substr(0, text.find(ending));
  const std::string_view digits = "0123456789abcdef0123456789ABCDEF";
  unsigned int value = 0;
  for (const char c : text) {
    const std::size_t i = digits.find(c);
    if (i == std::string_view::npos || i % 16 >= static_cast<std::size_t>(base)) return {};
    value = value * static_cast<unsigned int>(base) + static_cast<unsigned int>(i % 16);
  }
  return text.empty() ? std::nullopt : std::optional(value);
}

/// The number that `strtod` finds at the start of `text`, where it ends after `n` > 0 bytes.
inline std::optional<double> wholeDouble(const std::string& text, std::size_t n) {
  char* end = nullptr;
  errno = 0;
  const double value = std::strtod(text.c_str(), &end);
  const bool good = n > 0 && errno == 0 && end == text.c_str() + n;
  return good ? std::optional(value) : std::nullopt;
}

/// Decodes entities up to the first `&` that begins none; false when there is one.
inline bool unescape(std::string_view raw, std::string& out) {
  const struct {
    std::string_view name;
    char byte;
  } entities[] = {{"&amp;", '&'}, {"&apos;", '\''}, {"&quot;", '"'},
                  {"&lt;", '<'},  {"&gt;", '>'},    {"", '&'}};
  while (!raw.empty()) {
    std::size_t n = 1;
    char c = raw[0];
    if (c == '&') {
      const auto* entity = entities;
      while (raw.substr(0, entity->name.size()) != entity->name) ++entity;
      c = entity->byte;
      n = entity->name.size();
      if (n == 0) return false;
    }
    out += c;
    raw.remove_prefix(n);
  }
  return true;
}

}  // namespace reference
