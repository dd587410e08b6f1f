/// @file
/// Byte strings and UTF-8 the slow way: one element at a time, straight from the definitions.
///
/// The models stand beside the library's loops and are compared with them. They use the library's
/// character tables, and nothing else of it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "charproc.h"

namespace reference {

using Units = std::vector<unsigned short>;
constexpr std::size_t none = std::string_view::npos;

inline unsigned char byteAt(std::string_view s, std::size_t i) {
  return static_cast<unsigned char>(s[i]);
}

inline bool continues(std::string_view s, std::size_t i) { return (byteAt(s, i) & 0xC0) == 0x80; }

inline unsigned int sizeOf(std::string_view s) { return static_cast<unsigned int>(s.size()); }

/// Index of what a search found from `begin` on, `none` for null.
inline std::size_t at(const char* begin, const char* found) {
  return found ? static_cast<std::size_t>(found - begin) : none;
}
inline std::size_t at(std::string_view text, const char* found) { return at(text.data(), found); }

/// `part` again and again, in at least `n` bytes.
inline std::string repeated(std::string_view part, std::size_t n) {
  std::string text;
  while (text.size() < n) text += part;
  return text;
}

inline int sign(int order) { return (order > 0) - (order < 0); }

inline bool sameNoCase(char a, char b) {
  return chr_upper_table_ascii[static_cast<unsigned char>(a)] ==
         chr_upper_table_ascii[static_cast<unsigned char>(b)];
}

inline int compareNoCase(std::string_view a, std::string_view b) {
  for (std::size_t i = 0; i < a.size() && i < b.size(); ++i) {
    if (!sameNoCase(a[i], b[i])) return byteAt(a, i) > byteAt(b, i) ? 1 : -1;
  }
  return a.size() == b.size() ? 0 : a.size() > b.size() ? 1 : -1;
}

/// Index of the first occurrence, `none`, or the text's size for an empty text or pattern.
inline std::size_t find(std::string_view text, std::string_view pattern, bool noCase) {
  if (text.empty() || pattern.empty()) return text.size();
  for (std::size_t i = 0; pattern.size() <= text.size() - i && i < text.size(); ++i) {
    const std::string_view part = text.substr(i, pattern.size());
    if (noCase ? compareNoCase(part, pattern) == 0 : part == pattern) return i;
  }
  return none;
}

inline std::size_t check(std::string_view s) {
  for (std::size_t i = 0; i < s.size();) {
    const unsigned char lead = byteAt(s, i);
    const std::size_t more = lead < 0x80 ? 0 : lead < 0xE0 ? 1 : 2;
    if (lead >= 0xF0 || (lead >= 0x80 && lead < 0xC0)) return i;
    if (s.size() - i - 1 < more) return i;
    for (std::size_t k = 1; k <= more; ++k) {
      if (!continues(s, i + k)) return i + k;
    }
    i += 1 + more;
  }
  return none;
}

/// Decodes the character at `i` and moves `i` behind it.
inline unsigned short decode(std::string_view s, std::size_t& i) {
  if (i == s.size()) return 0xFFFF;
  unsigned int value = byteAt(s, i++);
  if (value < 0x80) return static_cast<unsigned short>(value);
  value &= 0x1F;
  while (i < s.size() && continues(s, i)) value = (value << 6) + (byteAt(s, i++) & 0x3F);
  return static_cast<unsigned short>(value);
}

inline std::string encode(unsigned short u) {
  std::string s;
  if (u <= 0x7F) {
    s += static_cast<char>(u);
  } else if (u <= 0x7FF) {
    s += static_cast<char>(0xC0 | u >> 6);
    s += static_cast<char>(0x80 | (u & 0x3F));
  } else {
    s += static_cast<char>(0xE0 | u >> 12);
    s += static_cast<char>(0x80 | (u >> 6 & 0x3F));
    s += static_cast<char>(0x80 | (u & 0x3F));
  }
  return s;
}

inline unsigned int countCharacters(std::string_view s) {
  unsigned int n = 0;
  for (std::size_t i = 0; i < s.size(); ++i) n += !continues(s, i);
  return n;
}

inline Units toUtf16(std::string_view s) {
  Units units;
  for (std::size_t i = 0; i < s.size();) units.push_back(decode(s, i));
  return units;
}

inline std::string toUtf8(const Units& units) {
  std::string s;
  for (const unsigned short u : units) s += encode(u);
  return s;
}

inline std::string mapCase(std::string_view s, const unsigned short* table) {
  std::string result;
  for (std::size_t i = 0; i < s.size();) {
    const std::size_t start = i;
    const unsigned short u = decode(s, i);
    const std::string mapped = encode(table[u]);
    const std::string_view old = s.substr(start, i - start);
    result += table[u] != u && mapped.size() == old.size() ? mapped : std::string(old);
  }
  return result;
}

/// Start of the character that holds byte `i`; a stray continuation byte behind an ASCII byte
/// starts one itself.
inline std::size_t characterAt(std::string_view s, std::size_t i) {
  std::size_t start = i;
  while (start > 0 && continues(s, start)) --start;
  return start < i && byteAt(s, start) < 0x80 ? start + 1 : start;
}

inline int compareNoCaseUtf8(std::string_view a, std::string_view b) {
  std::size_t i = 0;
  std::size_t k = 0;
  while (i < a.size() && k < b.size()) {
    unsigned int left = byteAt(a, i);
    unsigned int right = byteAt(b, k);
    if (left == right) {
      ++i;
      ++k;
      continue;
    }
    if (left < 0x80 && right < 0x80) {
      left = chr_upper_table_ascii[left];
      right = chr_upper_table_ascii[right];
      ++i;
      ++k;
    } else {
      i = characterAt(a, i);
      k = characterAt(b, k);
      left = chr_upper_table_utf16[decode(a, i)];
      right = chr_upper_table_utf16[decode(b, k)];
    }
    if (left != right) return left > right ? 1 : -1;
  }
  return i < a.size() ? 1 : k < b.size() ? -1 : 0;
}

inline std::size_t findNoCaseUtf8(std::string_view s, std::string_view pattern) {
  if (s.empty() || pattern.empty()) return s.size();
  if (s.size() < pattern.size()) return none;
  std::size_t firstLength = 0;
  const unsigned short first = chr_upper_table_utf16[decode(pattern, firstLength)];
  const std::string_view rest = pattern.substr(firstLength);
  const std::string_view walked = s.substr(0, s.size() - rest.size());
  for (std::size_t i = 0; i < walked.size();) {
    const std::size_t start = i;
    const unsigned short u = chr_upper_table_utf16[decode(walked, i)];
    if (u == first && compareNoCaseUtf8(s.substr(i, rest.size()), rest) == 0) return start;
  }
  return none;
}

}  // namespace reference
