/// @file
/// Character tables, byte-string and 16-bit-string primitives, numbers and dates as text.
///
/// Failure style: nothing here throws but `std::bad_alloc` of the allocating functions. Searches
/// answer null, parsers answer false and leave their output alone unless they say otherwise.
///
/// Text comes in three forms, fixed per function: zero-terminated; a pointer and a count (bytes of
/// 8-bit text, units of 16-bit text); or a begin/end pair with `end` one past the last element.
/// 8-bit text is UTF-8, bytes compare as unsigned values. 16-bit text is UTF-16 with one unit per
/// character. "ASCII case-insensitive" compares through `chr_upper_table_ascii`: in a UTF-8 locale
/// only 'a'..'z' fold.
#pragma once

#include "common_core_api.h"

// ---------------------------------------------------------------------------- tables and globals

/// `tolower` of each byte in the locale in force when the tables were filled. Read only.
COMMON_CORE_API extern unsigned char chr_lower_table_ascii[256];
/// `toupper` of each byte in the locale in force when the tables were filled. Read only.
COMMON_CORE_API extern unsigned char chr_upper_table_ascii[256];
/// Class letter of each byte: 'L' lower case, 'U' upper case, 'D' decimal digit, 'W' one of space,
/// TAB, LF and CR, '.' anything else. Read only.
COMMON_CORE_API extern char chr_types_table_ascii[256];
/// `towlower` of each 16-bit unit, kept to 16 bits; units of scripts without case (Unicode 15,
/// UnicodeData.txt) are themselves whatever the locale. Read only.
COMMON_CORE_API extern unsigned short chr_lower_table_utf16[65536];
/// `towupper` of each 16-bit unit, in the same way. Read only.
COMMON_CORE_API extern unsigned short chr_upper_table_utf16[65536];
/// False until the tables are filled, then true.
COMMON_CORE_API extern bool chr_tables_prepare_done;
/// The empty zero-terminated string; stands in for a null text where an operation says so.
COMMON_CORE_API extern const char empty_string[1];
/// The empty zero-terminated 16-bit string.
COMMON_CORE_API extern const unsigned short empty_string16[1];
/// Starts at 1. Kept for clients that read it; the library neither reads nor writes it.
COMMON_CORE_API extern int processor;

/// Fills the character tables from the process's locale.
///
/// Runs by itself while the library is being loaded, before a client can call anything. It changes
/// the process: a character-type locale that is still "C" becomes the environment's, and the
/// numeric locale becomes "C", so that numbers always have '.' as decimal point. A later call fills
/// the tables again from the locale then in force; no other thread may use the library or the
/// locale functions meanwhile.
COMMON_CORE_API void chr_tables_prepare();

// ---------------------------------------------------------------------------- length and search

/// Number of units before the terminating 0 unit. `s` must not be null.
COMMON_CORE_API unsigned int strlen_utf16(const unsigned short* s);

/// First unit equal to `c`, or null when the terminator comes first; `c` = 0 finds the terminator.
/// `s` must not be null.
COMMON_CORE_API const unsigned short* strchr_utf16(const unsigned short* s, unsigned short c);

/// Last byte equal to `c` in [begin, end), or null; null also when end <= begin.
COMMON_CORE_API const char* strbchr(const char* begin, const char* end, char c);

/// First byte equal to `c` among the `n` bytes at `s`, or null; null when `n` is 0.
COMMON_CORE_API const char* strfind(const char* s, unsigned int n, char c);

/// First occurrence of the `patLen` bytes at `pat` in the `textLen` bytes at `text`, or null.
/// A null or empty pattern or text gives the end of the text (`text` + `textLen`), not null.
/// Time is linear in the text, whatever the pattern.
COMMON_CORE_API const char* strfind(const char* text, unsigned int textLen, const char* pat,
                                    unsigned int patLen);

/// First byte in [begin, end) that equals `c` ASCII case-insensitively, or null.
COMMON_CORE_API const char* strfind_i_ascii(const char* begin, const char* end, char c);

/// As the exact pattern search, matching ASCII case-insensitively.
COMMON_CORE_API const char* strfind_i_ascii(const char* text, unsigned int textLen, const char* pat,
                                            unsigned int patLen);

// ---------------------------------------------------------------------------- comparison

/// `strcmp` with a null argument read as the empty string.
COMMON_CORE_API int strcmp0(const char* a, const char* b);

/// Compares zero-terminated texts ASCII case-insensitively; null reads as empty. Result and order
/// are those of the range form.
COMMON_CORE_API int strcmp_i_ascii(const char* a, const char* b);

/// Compares two ranges ASCII case-insensitively: -1, 0 or 1. A null begin is the empty range; a
/// proper prefix sorts first. Where two bytes differ also in upper case, the raw bytes decide, as
/// unsigned values: 'a' against 'B' gives 1. (`strcmp_i_utf8` orders by the upper-case values.)
COMMON_CORE_API int strcmp_i_ascii(const char* b1, const char* e1, const char* b2, const char* e2);

/// True when both texts have the same number of bytes and match ASCII case-insensitively. Two
/// empty texts are equal and neither pointer is read.
COMMON_CORE_API bool streq_i_ascii(const char* a, unsigned int na, const char* b, unsigned int nb);

/// Orders two counted byte strings: the value of `memcmp` over the common length when that is not
/// 0 (any negative or positive int), else -1, 0 or 1 by length.
COMMON_CORE_API int strcompare(const char* a, unsigned int na, const char* b, unsigned int nb);

/// True when both texts have the same bytes. Two empty texts are equal and neither pointer is read.
COMMON_CORE_API bool streq(const char* a, unsigned int na, const char* b, unsigned int nb);

// ---------------------------------------------------------------------------- copies

/// Copies at most `size` - 1 bytes of the zero-terminated `src` to `dst`, fills the rest of those
/// bytes with zeros, and sets the byte at `size` - 1 to 0. `size` is at least 1. Returns `dst`.
COMMON_CORE_API char* strzcpy(char* dst, unsigned int size, const char* src);

/// New array of `n` + 1 bytes: the `n` bytes at `s` as they stand and a 0 byte. Null for a null
/// `s`. The caller frees it with `delete[]`. Throws `std::bad_alloc`.
COMMON_CORE_API char* strnew(const char* s, unsigned int n);

/// New array of `n` + 1 units: the `n` units at `s` and a 0 unit. Null for a null `s`. The caller
/// frees it with `delete[]`. Throws `std::bad_alloc`.
COMMON_CORE_API unsigned short* strnew16(const unsigned short* s, unsigned int n);

/// New zero-terminated UTF-8 text of the UTF-16 range. Null for a null `begin`. The caller frees
/// it with `delete[]`. Throws `std::bad_alloc`.
COMMON_CORE_API char* strnew(const unsigned short* begin, const unsigned short* end);

/// New zero-terminated UTF-16 text of the UTF-8 range: one unit per character. Null for a null
/// `begin`. The caller frees it with `delete[]`. Throws `std::bad_alloc`.
COMMON_CORE_API unsigned short* strnew16(const char* begin, const char* end);

/// Appends the `addLen` bytes at `add` to the heap string `s` of `len` bytes (trusted, not
/// measured): `s` becomes a new array and the old one is freed; `add` may point into it. A null
/// `add` changes nothing; a null `s` becomes a copy of `add`. Throws `std::bad_alloc` and leaves
/// `s` as it was.
COMMON_CORE_API void stradd(char*& s, unsigned int len, const char* add, unsigned int addLen);

// ---------------------------------------------------------------------------- case in place

/// Replaces each byte by its lower-case table entry. Returns `end`, or `begin` for an empty range.
COMMON_CORE_API char* strlw_ascii(char* begin, const char* end);
/// Replaces each byte by its upper-case table entry. Returns `end`, or `begin` for an empty range.
COMMON_CORE_API char* strup_ascii(char* begin, const char* end);
/// Replaces each unit by its lower-case table entry. Returns `end`, or `begin` for an empty range.
COMMON_CORE_API unsigned short* strlw_utf16(unsigned short* begin, const unsigned short* end);
/// Replaces each unit by its upper-case table entry. Returns `end`, or `begin` for an empty range.
COMMON_CORE_API unsigned short* strup_utf16(unsigned short* begin, const unsigned short* end);

// ---------------------------------------------------------------------------- numbers

/// Reads hexadecimal digits of either case, up to the terminator or an 'H' (what follows it is not
/// looked at). Beyond eight digits the last eight count. Any other byte: false, `*out` untouched.
/// An empty text or one that starts with 'H': false, `*out` = 0.
COMMON_CORE_API bool strtohex(const char* s, unsigned int* out);

/// Reads binary digits, up to the terminator or a 'B'; otherwise as `strtohex`.
COMMON_CORE_API bool strtobin(const char* s, unsigned int* out);

/// Reads a whole zero-terminated decimal text as `strtoul` does (leading white space, sign), within
/// 32 bits: '-1' gives 4,294,967,295, '4294967296' fails. False for null, empty, anything left
/// over, or out of range; `*out` is then untouched.
COMMON_CORE_API bool strtouint(const char* s, unsigned int* out);

/// As `strtouint`, by the rules of `strtol`, within 32 bits.
COMMON_CORE_API bool strtoint(const char* s, int* out);
/// As `strtouint`, by the rules of `strtoll`, within 64 bits.
COMMON_CORE_API bool strtolonglong(const char* s, long long* out);
/// As `strtouint`, by the rules of `strtoull`, within 64 bits.
COMMON_CORE_API bool strtoqword(const char* s, unsigned long long* out);
/// As `strtouint`, by the rules of `strtod`: exponents, hexadecimal forms, 'inf' and 'nan' too.
COMMON_CORE_API bool strtodouble(const char* s, double* out);

/// Reads the whole range as an optional sign and decimal digits, 1 to 20 bytes, of a magnitude of
/// at most 2,147,483,647. False for anything else (null begin, white space, -2147483648); `out` is
/// then untouched. Nothing behind `end` is read.
COMMON_CORE_API bool strtoint(const char* begin, const char* end, int& out);

/// As the range form of `strtoint`, of a magnitude of at most 9,223,372,036,854,775,807.
COMMON_CORE_API bool strtoint64(const char* begin, const char* end, long long& out);

/// Reads one unsigned decimal field that is ended by `sep` or by `end`, and moves `p` past it (and
/// past the `sep`). The separator counts against `limit`: a field before a `sep` has at most
/// `limit` digits, one that runs to `end` may have `limit` + 1. At `end` already: `value` = 0,
/// true. False for anything else, or a negative `limit`; `p` and `value` are then untouched. 32
/// bits, wrapping.
COMMON_CORE_API bool strtonumber(const char*& p, const char* end, unsigned int& value, int limit,
                                 char sep);

/// Writes `n` bytes read from 2 `n` hexadecimal digits at `hex`. At the first byte that is no digit
/// (a terminator too) it stops: that byte of `out` and all after it are 0. `n` is at least 0.
COMMON_CORE_API void str2bin(const char* hex, void* out, int n);

/// Writes the `n` bytes at `data` as 2 `n` upper-case hexadecimal digits to `out`, without a
/// terminator. `n` is at least 0.
COMMON_CORE_API void bin2str(const void* data, int n, char* out);

/// Writes the local date of `t` (seconds since 1970-01-01 00:00 UTC) in the time locale's form to
/// `buf` of `size` bytes, at least 1. False, with an empty text, when it does not fit or the time
/// has no calendar date.
COMMON_CORE_API bool sprintf_date(long t, char* buf, int size);

/// As `sprintf_date`, with the time of day after the date and a space.
COMMON_CORE_API bool sprintf_date_time(long t, char* buf, int size);
