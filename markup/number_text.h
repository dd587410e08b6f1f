// Numbers and dates as the writer puts them: the C library's formats, whatever the locale.
#pragma once

#include <cstddef>

namespace cc {

// Room for the longest result of each function below: a sign, 309 digits, '.' and six digits.
constexpr std::size_t maxNumberText = 320;

// Writes `value` as "%f" prints it in the "C" locale. Returns the end; no terminator.
char* writeFixed(char* out, double value);

// Writes `time`, seconds since 1970-01-01 00:00 UTC, as "%04u-%02u-%02uT%02u:%02u:%02u" prints its
// UTC year, month, day, hour, minute and second. Returns the end, or null for a time whose calendar
// year, counted from 1900, does not fit an `int`.
char* writeDate(char* out, long long time);

}  // namespace cc
