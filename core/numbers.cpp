// Numbers and dates as text and back.
//
// The zero-terminated decimal parsers stand on the C library and share one frame that checks
// `errno` and the end position. The range parsers read eight digits at a time.

#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstring>

#include "charproc.h"
#include "core/kernels.h"
#include "platform/locale.h"

namespace {

// Value of a hexadecimal digit, or 255.
unsigned int hexValue(char c) {
  if (c >= '0' && c <= '9') return static_cast<unsigned int>(c - '0');
  if (c >= 'a' && c <= 'f') return static_cast<unsigned int>(c - 'a' + 10);
  if (c >= 'A' && c <= 'F') return static_cast<unsigned int>(c - 'A' + 10);
  return 255;
}

// Digits of a base that is a power of two, up to the terminator or the ending letter.
bool parseDigits(const char* s, unsigned int* out, unsigned int bits, char ending) {
  if (*s == 0 || *s == ending) {
    *out = 0;
    return false;
  }
  unsigned int value = 0;
  for (; *s != 0 && *s != ending; ++s) {
    const unsigned int digit = hexValue(*s);
    if (digit >> bits != 0) return false;
    value = (value << bits) | digit;
  }
  *out = value;
  return true;
}

// Runs a parser of the C library over the whole of `s`.
template <class T>
bool parseWhole(const char* s, T (*parse)(const char*, char**), T& value) {
  if (!s || *s == 0) return false;
  const int saved = errno;
  errno = 0;
  char* end = nullptr;
  value = parse(s, &end);
  const bool inRange = errno == 0;
  errno = saved;
  return inRange && *end == 0;
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

constexpr std::uint64_t everyByte = ~std::uint64_t{0} / 0xFF;

// The bytes of eight digits as their values, the first one lowest.
std::uint64_t load8Digits(const char* p) {
  return cc::kernels::loadAs<std::uint64_t>(p) ^ everyByte * '0';
}

// The number of eight digits: each step joins neighbours of twice the width. `wrong` gets bits
// where a byte was no digit.
std::uint64_t valueOf8(std::uint64_t v, std::uint64_t& wrong) {
  wrong |= ((v + everyByte * (0x7F - 9)) | v) & everyByte * 0x80;
  v = v * 10 + (v >> 8);
  constexpr std::uint64_t everyFourth = 0x000000FF000000FF;
  const std::uint64_t front = (v & everyFourth) * (100 + (std::uint64_t{1000000} << 32));
  const std::uint64_t back = (v >> 16 & everyFourth) * (1 + (std::uint64_t{10000} << 32));
  return (front + back) >> 32;
}

// The magnitude of `n` > 8 bytes that are to be digits; the greatest number where it is too great.
std::uint64_t longMagnitude(const char* p, std::size_t n, std::uint64_t& wrong) {
  constexpr std::uint64_t e8 = 100000000;
  const char* const end = p + n;
  const std::uint64_t low = valueOf8(load8Digits(end - 8), wrong);
  if (n <= 16) return valueOf8(load8Digits(p) << (8 * (16 - n)), wrong) * e8 + low;
  const std::uint64_t middle = valueOf8(load8Digits(end - 16), wrong);
  const std::uint64_t top = valueOf8(load8Digits(p) << (8 * (24 - n)), wrong);
  if (top > LLONG_MAX / (e8 * e8)) return ~std::uint64_t{0};
  return top * (e8 * e8) + middle * e8 + low;
}

constexpr std::size_t mostShort = 9;  // digits whose number fits every type

bool isSign(char c) { return c == '-' || c == '+'; }

// The ranges that are not short, those without a number among them. Stands by itself, so that short
// numbers need no room on the stack.
template <class T>
[[gnu::noinline]] bool parseLong(const char* begin, std::size_t n, T limit, T& out) {
  constexpr std::size_t most = 20;
  if (n <= mostShort || n > most) return false;
  const bool negative = *begin == '-';
  if (isSign(*begin)) {
    ++begin;
    --n;
  }
  std::uint64_t wrong = 0;
  const std::uint64_t magnitude = longMagnitude(begin, n, wrong);
  if (wrong != 0 || magnitude > static_cast<std::uint64_t>(limit)) return false;
  const T value = static_cast<T>(magnitude);
  out = negative ? -value : value;
  return true;
}

// An optional sign and decimal digits that fill the range, of a magnitude of at most `limit`.
template <class T>
bool parseRange(const char* begin, const char* end, T limit, T& out) {
  if (!begin) return false;
  const std::size_t n = static_cast<std::size_t>(end - begin);
  if (n - 1 >= mostShort) return parseLong(begin, n, limit, out);
  const bool negative = *begin == '-';
  if (isSign(*begin) && ++begin == end) return false;
  unsigned int number = static_cast<unsigned char>(*begin) - unsigned{'0'};
  if (number > 9) return false;
  while (++begin != end) {
    const unsigned int digit = static_cast<unsigned char>(*begin) - unsigned{'0'};
    if (digit > 9) return false;
    number = number * 10 + digit;
  }
  out = negative ? -static_cast<T>(number) : static_cast<T>(number);
  return true;
}

bool formatLocal(long t, char* buf, int size, const char* format) {
  std::tm time;
  const std::size_t room = static_cast<std::size_t>(size);
  if (cc::locale::localTime(t, time) && cc::locale::formatTime(buf, room, format, time) != 0) {
    return true;
  }
  buf[0] = 0;
  return false;
}

}  // namespace

bool strtohex(const char* s, unsigned int* out) { return parseDigits(s, out, 4, 'H'); }

bool strtobin(const char* s, unsigned int* out) { return parseDigits(s, out, 1, 'B'); }

bool strtouint(const char* s, unsigned int* out) {
  unsigned long long value = 0;
  if (!parseWhole(s, cc::locale::parseUnsigned, value)) return false;
  // A '-' has negated the value in 64 bits.
  const bool negative = std::strchr(s, '-') != nullptr;
  const unsigned long long magnitude = negative ? 0 - value : value;
  if (magnitude > UINT_MAX) return false;
  *out = static_cast<unsigned int>(value);
  return true;
}

bool strtoint(const char* s, int* out) {
  long long value = 0;
  if (!parseWhole(s, cc::locale::parseSigned, value)) return false;
  if (value > INT_MAX || value < INT_MIN) return false;
  *out = static_cast<int>(value);
  return true;
}

bool strtolonglong(const char* s, long long* out) {
  long long value = 0;
  if (!parseWhole(s, cc::locale::parseSigned, value)) return false;
  *out = value;
  return true;
}

bool strtoqword(const char* s, unsigned long long* out) {
  unsigned long long value = 0;
  if (!parseWhole(s, cc::locale::parseUnsigned, value)) return false;
  *out = value;
  return true;
}

bool strtodouble(const char* s, double* out) {
  double value = 0;
  if (!parseWhole(s, cc::locale::parseDouble, value)) return false;
  *out = value;
  return true;
}

bool strtoint(const char* begin, const char* end, int& out) {
  return parseRange(begin, end, INT_MAX, out);
}

bool strtoint64(const char* begin, const char* end, long long& out) {
  return parseRange(begin, end, LLONG_MAX, out);
}

bool strtonumber(const char*& p, const char* end, unsigned int& value, int limit, char sep) {
  if (p >= end) {
    value = 0;
    return true;
  }
  if (limit < 0 || *p == sep || !isDigit(*p)) return false;
  unsigned int number = static_cast<unsigned int>(*p - '0');
  const char* s = p + 1;
  for (; s < end; ++s) {
    if (s - p > limit) return false;
    if (*s == sep) {
      ++s;
      break;
    }
    if (!isDigit(*s)) return false;
    number = number * 10 + static_cast<unsigned int>(*s - '0');
  }
  value = number;
  p = s;
  return true;
}

void str2bin(const char* hex, void* out, int n) {
  unsigned char* bytes = static_cast<unsigned char*>(out);
  const std::size_t count = static_cast<std::size_t>(n);
  // Behind a terminator there may be nothing to read.
  const std::size_t pairs = count < 8 ? 0 : strnlen(hex, 2 * count) / 2;
  std::size_t i = cc::kernels::loops->decodeHex(hex, pairs, bytes);
  for (; i < count; ++i) {
    const unsigned int high = hexValue(hex[2 * i]);
    if (high > 15) break;
    const unsigned int low = hexValue(hex[2 * i + 1]);
    if (low > 15) break;
    bytes[i] = static_cast<unsigned char>(high << 4 | low);
  }
  if (i < count) std::memset(bytes + i, 0, count - i);
}

void bin2str(const void* data, int n, char* out) {
  const unsigned char* bytes = static_cast<const unsigned char*>(data);
  cc::kernels::loops->encodeHex(bytes, static_cast<std::size_t>(n), out);
}

bool sprintf_date(long t, char* buf, int size) { return formatLocal(t, buf, size, "%x"); }

bool sprintf_date_time(long t, char* buf, int size) { return formatLocal(t, buf, size, "%x %X"); }
