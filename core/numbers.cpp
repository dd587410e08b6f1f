// Numbers and dates as text and back.
//
// The zero-terminated decimal parsers stand on the C library and share one frame that checks
// `errno` and the end position; the range parsers are self-contained.

#include <cerrno>
#include <climits>
#include <cstring>

#include "charproc.h"
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

// An optional sign and decimal digits that fill the range, of a magnitude of at most `limit`.
template <class T>
bool parseRange(const char* begin, const char* end, T limit, T& out) {
  if (!begin || end <= begin || end - begin > 20) return false;
  const bool negative = *begin == '-';
  if (negative || *begin == '+') ++begin;
  if (begin == end) return false;
  T value = 0;
  for (; begin != end; ++begin) {
    if (!isDigit(*begin)) return false;
    const T digit = *begin - '0';
    if (value > (limit - digit) / 10) return false;
    value = value * 10 + digit;
  }
  out = negative ? -value : value;
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
  int i = 0;
  for (; i < n; ++i, hex += 2) {
    const unsigned int high = hexValue(hex[0]);
    if (high > 15) break;
    const unsigned int low = hexValue(hex[1]);
    if (low > 15) break;
    bytes[i] = static_cast<unsigned char>(high << 4 | low);
  }
  if (i < n) std::memset(bytes + i, 0, static_cast<std::size_t>(n - i));
}

void bin2str(const void* data, int n, char* out) {
  static const char digits[] = "0123456789ABCDEF";
  const unsigned char* bytes = static_cast<const unsigned char*>(data);
  for (int i = 0; i < n; ++i) {
    *out++ = digits[bytes[i] >> 4];
    *out++ = digits[bytes[i] & 15];
  }
}

bool sprintf_date(long t, char* buf, int size) { return formatLocal(t, buf, size, "%x"); }

bool sprintf_date_time(long t, char* buf, int size) { return formatLocal(t, buf, size, "%x %X"); }
