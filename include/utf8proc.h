/// @file
/// The UTF-8 and UTF-16 codec: checking, counting, stepping, converting, case.
///
/// Failure style: nothing here allocates, throws or keeps state. Every read and write stays inside
/// the ranges that the caller gives. UTF-8 text is a begin/end pair of bytes; UTF-16 text a
/// begin/end pair of units, one unit per character: surrogates are coded one by one as three bytes
/// each, and a four-byte sequence decodes to the low 16 bits of its code point. A continuation byte
/// is one whose top bits are 10; every other byte starts a character.
#pragma once

#include "common_core_api.h"

/// Null when the `n` bytes at `s` are valid, else the first offending byte: a byte that can start
/// no character of one to three bytes, a lead byte whose character is cut off by the end, or a byte
/// that should continue a character and does not. Overlong forms and surrogates pass; four-byte
/// sequences do not. Null also for a null `s`. Zero bytes are ordinary.
COMMON_CORE_API const char* strchk_utf8(const char* s, unsigned int n);

/// Number of characters (bytes that continue nothing) before the terminator; 0 for null.
COMMON_CORE_API unsigned int strlen_utf8(const char* s);
/// Number of characters in the range: its bytes that are not continuation bytes.
COMMON_CORE_API unsigned int strlen_utf8(const char* begin, const char* end);
/// Number of UTF-8 bytes that the units before the terminator encode to; 0 for null.
COMMON_CORE_API unsigned int strlen_utf8(const unsigned short* s);
/// Number of UTF-8 bytes that the units of the range encode to.
COMMON_CORE_API unsigned int strlen_utf8(const unsigned short* begin, const unsigned short* end);

/// Start of the character after the one at `p`, never beyond `end`.
COMMON_CORE_API const char* chrpass_utf8(const char* p, const char* end);
/// Start of the character before `p`, never before `begin`.
COMMON_CORE_API const char* chrback_utf8(const char* begin, const char* p);

/// Decodes one character at `p` into `out` and returns the position after it.
///
/// The low five bits of a byte at or above 0x80 and six of each continuation byte that follows it,
/// however many there are, make the unit's low 16 bits; malformed text is decoded the same way.
/// At `end`: `out` = 0xFFFF and `p` is returned. A null `p` returns null and leaves `out`.
COMMON_CORE_API const char* getch_utf8(unsigned short& out, const char* p, const char* end);

/// Encodes `u` at `p` in one to three bytes, writes what fits before `end`, and returns the
/// position after the bytes written.
COMMON_CORE_API char* putch_utf8(unsigned short u, char* p, const char* end);

/// Encodes the units of [src, srcEnd) into [dst, dstEnd) until either ends; no terminator is
/// written. Returns the output position reached: `dst` itself for a null `src` or an empty range.
COMMON_CORE_API char* utf16_to_utf8(const unsigned short* src, const unsigned short* srcEnd,
                                    char* dst, const char* dstEnd);

/// Decodes the characters of [src, srcEnd) into [dst, dstEnd) until either ends; no terminator is
/// written. Returns the output position reached: `dst` itself for a null `src` or an empty range.
COMMON_CORE_API unsigned short* utf8_to_utf16(const char* src, const char* srcEnd,
                                              unsigned short* dst, const unsigned short* dstEnd);

/// Upper-cases the range in place, through `chr_upper_table_utf16`. The text never changes length:
/// a character whose counterpart encodes to another number of bytes than it occupies stays as it
/// is, and so does one that the table maps to itself, malformed sequences included.
COMMON_CORE_API void strup_utf8(char* s, const char* end);
/// Lower-cases the range in place, through `chr_lower_table_utf16`, as `strup_utf8` does.
COMMON_CORE_API void strlw_utf8(char* s, const char* end);

/// Compares two ranges without regard to case: -1, 0 or 1, by the upper-case 16-bit values of the
/// characters. A null range is empty; a shorter text that is a prefix of the other sorts first.
COMMON_CORE_API int strcmp_i_utf8(const char* a, const char* aEnd, const char* b, const char* bEnd);

/// First occurrence of the pattern in the text without regard to case, or null. A null or empty
/// pattern or text gives `sEnd`, not null. The text found always has as many bytes behind its first
/// character as the pattern has behind its own.
COMMON_CORE_API const char* strfind_i_utf8(const char* s, const char* sEnd, const char* pat,
                                           const char* patEnd);
