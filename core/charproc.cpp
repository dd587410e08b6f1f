// Tables, comparison, copies and case of byte strings and 16-bit strings.
//
// The tables are plain zero-initialised arrays; a static object of the first initialisation
// priority fills them while the library is being loaded.

#include "charproc.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <new>

#include "core/case_tables.h"
#include "core/init_order.h"
#include "core/kernels.h"
#include "platform/locale.h"
#include "utf8proc.h"

unsigned char chr_lower_table_ascii[256];
unsigned char chr_upper_table_ascii[256];
char chr_types_table_ascii[256];
// Each unit itself, in the file: what has no case is never written, so its pages cost nothing.
#define CC_16_UNITS(u)                                                                      \
  u, u + 1, u + 2, u + 3, u + 4, u + 5, u + 6, u + 7, u + 8, u + 9, u + 10, u + 11, u + 12, \
      u + 13, u + 14, u + 15
#define CC_64_UNITS(u) CC_16_UNITS(u), CC_16_UNITS(u + 16), CC_16_UNITS(u + 32), CC_16_UNITS(u + 48)
#define CC_256_UNITS(u) \
  CC_64_UNITS(u), CC_64_UNITS(u + 64), CC_64_UNITS(u + 128), CC_64_UNITS(u + 192)
#define CC_1K_UNITS(u) \
  CC_256_UNITS(u), CC_256_UNITS(u + 256), CC_256_UNITS(u + 512), CC_256_UNITS(u + 768)
#define CC_4K_UNITS(u) \
  CC_1K_UNITS(u), CC_1K_UNITS(u + 1024), CC_1K_UNITS(u + 2048), CC_1K_UNITS(u + 3072)
#define CC_16K_UNITS(u) \
  CC_4K_UNITS(u), CC_4K_UNITS(u + 4096), CC_4K_UNITS(u + 8192), CC_4K_UNITS(u + 12288)
#define CC_64K_UNITS CC_16K_UNITS(0), CC_16K_UNITS(16384), CC_16K_UNITS(32768), CC_16K_UNITS(49152)
unsigned short chr_lower_table_utf16[65536] = {CC_64K_UNITS};
unsigned short chr_upper_table_utf16[65536] = {CC_64K_UNITS};
bool chr_tables_prepare_done;
const char empty_string[1] = {0};
const unsigned short empty_string16[1] = {0};
int processor = 1;

namespace {

unsigned char byteOf(char c) { return static_cast<unsigned char>(c); }

char classOf(int byte) {
  if (byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n') return 'W';
  if (cc::locale::isLower(byte)) return 'L';
  if (cc::locale::isUpper(byte)) return 'U';
  return byte >= '0' && byte <= '9' ? 'D' : '.';
}

// An array of `n` elements and a terminator.
template <class T>
T* newText(std::size_t n) {
  if (n >= std::size_t{INT_MAX} / sizeof(T)) throw std::bad_alloc();
  T* text = new T[n + 1];
  text[n] = 0;
  return text;
}

template <class T>
T* copyOf(const T* s, std::size_t n) {
  if (!s) return nullptr;
  T* copy = newText<T>(n);
  std::memcpy(copy, s, n * sizeof(T));
  return copy;
}

// The same as the loops for tables that map more than the letters of ASCII.
std::size_t matchByTable(const char* a, const char* b, std::size_t n) {
  std::size_t i = 0;
  while (i < n && chr_upper_table_ascii[byteOf(a[i])] == chr_upper_table_ascii[byteOf(b[i])]) ++i;
  return i;
}

int compareByTable(const char* a, std::size_t na, const char* b, std::size_t nb) {
  const std::size_t n = std::min(na, nb);
  const std::size_t same = matchByTable(a, b, n);
  if (same != n) return byteOf(a[same]) > byteOf(b[same]) ? 1 : -1;
  return (na > n ? 1 : 0) - (nb > n ? 1 : 0);
}

// Replaces each byte by its entry in `table`; `plainLoop` does the same where letters of ASCII are
// all there is to replace.
char* mapBytes(char* begin, const char* end, const unsigned char* table,
               void (*plainLoop)(char*, char*)) {
  if (begin >= end) return begin;
  char* const last = begin + (end - begin);
  if (cc::caseTables.plainBytes) {
    plainLoop(begin, last);
  } else {
    for (char* p = begin; p != last; ++p) *p = static_cast<char>(table[byteOf(*p)]);
  }
  return last;
}

struct TableFiller {
  TableFiller() { chr_tables_prepare(); }
};
__attribute__((init_priority(cc::InitTables))) const TableFiller tableFiller;

}  // namespace

void chr_tables_prepare() {
  if (strcmp0(cc::locale::characterType(), "C") == 0) {
    cc::locale::setCharacterTypeFromEnvironment();
  }
  cc::locale::setNumericToC();
  for (int x = 0; x < 256; ++x) {
    chr_lower_table_ascii[x] = static_cast<unsigned char>(cc::locale::lower(x));
    chr_upper_table_ascii[x] = static_cast<unsigned char>(cc::locale::upper(x));
    chr_types_table_ascii[x] = classOf(x);
  }
  for (const cc::UnitRange& range : cc::casedRanges) {
    for (unsigned int u = range.begin; u < range.end; ++u) {
      chr_lower_table_utf16[u] = static_cast<unsigned short>(cc::locale::lowerWide(u));
      chr_upper_table_utf16[u] = static_cast<unsigned short>(cc::locale::upperWide(u));
    }
  }
  cc::deriveCaseTables();
  chr_tables_prepare_done = true;
}

unsigned int strlen_utf16(const unsigned short* s) {
  return static_cast<unsigned int>(strchr_utf16(s, 0) - s);
}

const unsigned short* strchr_utf16(const unsigned short* s, unsigned short c) {
  for (; *s != c; ++s) {
    if (*s == 0) return nullptr;
  }
  return s;
}

int strcmp0(const char* a, const char* b) {
  return std::strcmp(a ? a : empty_string, b ? b : empty_string);
}

int strcmp_i_ascii(const char* a, const char* b) {
  if (!a) a = empty_string;
  if (!b) b = empty_string;
  return strcmp_i_ascii(a, a + std::strlen(a), b, b + std::strlen(b));
}

int strcmp_i_ascii(const char* b1, const char* e1, const char* b2, const char* e2) {
  const std::size_t n1 = b1 && b1 < e1 ? static_cast<std::size_t>(e1 - b1) : 0;
  const std::size_t n2 = b2 && b2 < e2 ? static_cast<std::size_t>(e2 - b2) : 0;
  if (!cc::caseTables.plainBytes) return compareByTable(b1, n1, b2, n2);
  return cc::kernels::loops->compareNoCase(b1, n1, b2, n2);
}

bool streq_i_ascii(const char* a, unsigned int na, const char* b, unsigned int nb) {
  if (na != nb) return false;
  if (!cc::caseTables.plainBytes) return matchByTable(a, b, na) == na;
  return cc::kernels::loops->matchNoCase(a, b, na) == na;
}

int strcompare(const char* a, unsigned int na, const char* b, unsigned int nb) {
  const unsigned int n = na < nb ? na : nb;
  const int order = n == 0 ? 0 : std::memcmp(a, b, n);
  if (order != 0) return order;
  return (na > nb ? 1 : 0) - (na < nb ? 1 : 0);
}

bool streq(const char* a, unsigned int na, const char* b, unsigned int nb) {
  return na == nb && (na == 0 || std::memcmp(a, b, na) == 0);
}

char* strzcpy(char* dst, unsigned int size, const char* src) {
  const std::size_t room = size - 1;
  const std::size_t n = strnlen(src, room);
  std::memcpy(dst, src, n);
  std::memset(dst + n, 0, size - n);
  return dst;
}

char* strnew(const char* s, unsigned int n) { return copyOf(s, n); }

unsigned short* strnew16(const unsigned short* s, unsigned int n) { return copyOf(s, n); }

char* strnew(const unsigned short* begin, const unsigned short* end) {
  if (!begin) return nullptr;
  const std::size_t n = strlen_utf8(begin, end);
  char* text = newText<char>(n);
  utf16_to_utf8(begin, end, text, text + n);
  return text;
}

unsigned short* strnew16(const char* begin, const char* end) {
  if (!begin) return nullptr;
  const std::size_t n = strlen_utf8(begin, end);
  unsigned short* text = newText<unsigned short>(n);
  unsigned short* reached = utf8_to_utf16(begin, end, text, text + n);
  *reached = 0;
  return text;
}

void stradd(char*& s, unsigned int len, const char* add, unsigned int addLen) {
  if (!add) return;
  if (!s) {
    s = strnew(add, addLen);
    return;
  }
  if (addLen > UINT_MAX - len) throw std::bad_alloc();
  char* joined = newText<char>(len + addLen);
  std::memcpy(joined, s, len);
  std::memcpy(joined + len, add, addLen);
  delete[] s;
  s = joined;
}

char* strlw_ascii(char* begin, const char* end) {
  return mapBytes(begin, end, chr_lower_table_ascii, cc::kernels::loops->lowerAscii);
}

char* strup_ascii(char* begin, const char* end) {
  return mapBytes(begin, end, chr_upper_table_ascii, cc::kernels::loops->upperAscii);
}

unsigned short* strlw_utf16(unsigned short* begin, const unsigned short* end) {
  for (; begin < end; ++begin) *begin = chr_lower_table_utf16[*begin];
  return begin;
}

unsigned short* strup_utf16(unsigned short* begin, const unsigned short* end) {
  for (; begin < end; ++begin) *begin = chr_upper_table_utf16[*begin];
  return begin;
}
