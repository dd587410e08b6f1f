// Numbers and dates as the writer puts them: the C library's formats, whatever the locale.
#pragma once

#include <cstddef>

namespace cc {

// Room for the longest result of each function below: a sign, 309 digits, '.' and six digits.
constexpr std::size_t maxNumberText = 320;

// Writes `value` as "%f" prints it in the "C" locale. Returns the end; no terminator.
char* writeFixed(char* out, double value);

// A time as the calendar has it, in UTC.
struct CalendarTime {
  long long year;
  unsigned int month, day, hour, minute, second;
};

// Takes `time` apart, seconds since 1970-01-01 00:00 UTC. False for a time whose year, counted from
// 1900, does not fit an `int`.
bool toCalendar(long long time, CalendarTime& calendar);

// Writes the time as "%04u-%02u-%02uT%02u:%02u:%02u" prints it. Returns the end; no terminator.
char* writeDate(char* out, const CalendarTime& calendar);

}  // namespace cc
