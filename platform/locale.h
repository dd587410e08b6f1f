// The locale, character classification, number, formatting and calendar calls of the C library.
//
// Plain forwarding, one function per call, so that a test can put another implementation in the
// place of this one.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <ctime>

#include "common_core_api.h"

namespace cc::locale {

/// Name of the character-type locale in force, or null.
const char* characterType();
/// Switches the character-type locale to the one that the environment names.
void setCharacterTypeFromEnvironment();
/// Switches the numeric locale to "C".
void setNumericToC();
/// The same where the numeric locale has another name.
void requireNumericC();

/// One byte through the character-type locale; `byte` is 0 to 255.
int lower(int byte);
int upper(int byte);
bool isLower(int byte);
bool isUpper(int byte);
/// One wide character through the character-type locale.
unsigned int lowerWide(unsigned int character);
unsigned int upperWide(unsigned int character);

/// `strtoull` and its family in base 10. `errno` is the caller's to clear and to look at.
long long parseSigned(const char* s, char** end);
unsigned long long parseUnsigned(const char* s, char** end);
/// `strtod` in the "C" locale, whatever the process and the calling thread use.
double parseDouble(const char* s, char** end);
/// `vsnprintf` with '.' as decimal point, whatever the process and the calling thread use; in a
/// locale with another one, and with no memory left, with that one.
int formatText(char* buf, std::size_t size, const char* format, va_list args)
    COMMON_CORE_PRINTF(3, 0);

/// Local calendar time of `t`; false when there is none.
bool localTime(std::time_t t, std::tm& out);
/// `strftime`: the number of bytes written before the terminator, 0 when they do not fit.
std::size_t formatTime(char* buf, std::size_t size, const char* format, const std::tm& time);

}  // namespace cc::locale
