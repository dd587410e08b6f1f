// ChArr and ChArr16: owned strings.
//
// Each replacement makes the new text first and then hands it to `adopt`, which frees the old one:
// so the source may lie in the old text, and a failed allocation changes nothing. Only assignment
// from another string frees first, which spares the memory of one text.

#include "charr.h"

#include <cstdint>
#include <cstring>

#include "charproc.h"
#include "core/formatted_text.h"
#include "core/win1251.h"
#include "utf8proc.h"

namespace {

// A length as the copying functions take it. What no text of theirs can have is memory that cannot
// be had.
unsigned int checkedLength(std::ptrdiff_t n) {
  if (n < 0 || static_cast<std::size_t>(n) >= UINT_MAX) throw std::bad_alloc();
  return static_cast<unsigned int>(n);
}

unsigned int checkedLength(const char* s) {
  return checkedLength(static_cast<std::ptrdiff_t>(std::strlen(s)));
}

char* copyOf(const char* s) { return s ? strnew(s, checkedLength(s)) : nullptr; }
char* copyOf(const char* s, std::ptrdiff_t n) { return s ? strnew(s, checkedLength(n)) : nullptr; }

unsigned short* copyOf(const unsigned short* s) {
  return s ? strnew16(s, strlen_utf16(s)) : nullptr;
}
unsigned short* copyOf(const unsigned short* s, std::ptrdiff_t n) {
  return s ? strnew16(s, checkedLength(n)) : nullptr;
}

// A new text of `a` and then `b`.
char* joined(const char* a, const char* b) {
  const std::size_t na = std::strlen(a);
  const std::size_t nb = std::strlen(b);
  if (nb > PTRDIFF_MAX - 1 - na) throw std::bad_alloc();
  char* text = new char[na + nb + 1];
  std::memcpy(text, a, na);
  std::memcpy(text + na, b, nb + 1);
  return text;
}

unsigned short unitOf1251(char byte) {
  return cc::win1251toutf8mapper[static_cast<unsigned char>(byte)];
}

}  // namespace

ChArr::ChArr(const char* s) : text(copyOf(s)) {}

ChArr::ChArr(const ChArr& other) : text(copyOf(other.text)) {}

ChArr& ChArr::operator=(const ChArr& other) {
  if (text != other.text) {
    adopt(nullptr);
    text = copyOf(other.text);
  }
  return *this;
}

ChArr& ChArr::operator=(const char* s) {
  if (s != text) adopt(copyOf(s));
  return *this;
}

ChArr& ChArr::operator=(const unsigned short* s) {
  adopt(s ? strnew(s, s + strlen_utf16(s)) : nullptr);
  return *this;
}

void ChArr::assign(const char* begin, const char* end) {
  if (begin != text) adopt(begin ? copyOf(begin, end - begin) : nullptr);
}

void ChArr::assign(const char* s, int n) {
  if (s != text) adopt(copyOf(s, n));
}

void ChArr::assign(const unsigned short* s, int n) {
  adopt(s ? strnew(s, s + checkedLength(n)) : nullptr);
}

void ChArr::assign(const unsigned short* begin, const unsigned short* end) {
  adopt(strnew(begin, end));
}

void ChArr::assign1251(const char* s, int n) {
  std::uint64_t length = 0;
  for (int i = 0; i < n; ++i) {
    const unsigned short unit = unitOf1251(s[i]);
    length += unit <= 0x7F ? 1 : unit <= 0x7FF ? 2 : 3;
  }
  if (length >= PTRDIFF_MAX) throw std::bad_alloc();
  char* converted = new char[static_cast<std::size_t>(length) + 1];
  char* const end = converted + length;
  char* p = converted;
  for (int i = 0; i < n; ++i) p = putch_utf8(unitOf1251(s[i]), p, end);
  *end = 0;
  adopt(converted);
}

ChArr& ChArr::operator+=(const char* s) {
  if (s) adopt(text ? joined(text, s) : copyOf(s));
  return *this;
}

void ChArr::insert(const char* s) {
  if (s && *s) adopt(text ? joined(s, text) : copyOf(s));
}

void ChArr::stealFrom(ChArr& other) {
  if (this != &other) adopt(other.steal());
}

void ChArr::format(const char* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  const cc::FormattedText formatted(fmt, args);
  va_end(args);
  *this = formatted.get();
}

void ChArr::format_va(const char* fmt, va_list args) { *this = cc::FormattedText(fmt, args).get(); }

const char* ChArr::c_str() const { return text ? text : empty_string; }

unsigned int ChArr::length() const {
  return text ? static_cast<unsigned int>(std::strlen(text)) : 0;
}

ChArr16::ChArr16(const unsigned short* s) : text(copyOf(s)) {}

ChArr16::ChArr16(const ChArr16& other) : text(copyOf(other.text)) {}

ChArr16& ChArr16::operator=(const ChArr16& other) {
  if (text != other.text) {
    adopt(nullptr);
    text = copyOf(other.text);
  }
  return *this;
}

ChArr16& ChArr16::operator=(const unsigned short* s) {
  if (s != text) adopt(copyOf(s));
  return *this;
}

ChArr16& ChArr16::operator=(const char* s) {
  adopt(s ? strnew16(s, s + std::strlen(s)) : nullptr);
  return *this;
}

void ChArr16::assign(const unsigned short* begin, const unsigned short* end) {
  if (begin != text) adopt(begin ? copyOf(begin, end - begin) : nullptr);
}

void ChArr16::assign(const unsigned short* s, int n) {
  if (s != text) adopt(copyOf(s, n));
}

const unsigned short* ChArr16::c_str() const { return text ? text : empty_string16; }

unsigned int ChArr16::length() const { return text ? strlen_utf16(text) : 0; }
