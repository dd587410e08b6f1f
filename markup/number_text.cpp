// Numbers by std::to_chars, which is exact and knows no locale; dates by arithmetic on eras of 400
// years, which all have 146,097 days.

#include "markup/number_text.h"

#include <charconv>
#include <climits>
#include <cstring>

namespace cc {

namespace {

constexpr long long secondsPerDay = 86'400;
constexpr long long daysPerEra = 146'097;

struct Date {
  long long year;
  unsigned int month, day;
};

long long floorDivide(long long a, long long b) { return a / b - (a % b < 0 ? 1 : 0); }

// The calendar date of a day counted from 1970-01-01. Inside an era years begin in March, so that
// the leap day is the last of a year; months of 31, 30, 31, 30, 31 days repeat every 153 days.
Date dateOfDay(long long day) {
  const long long sinceMarchOf0 = day + 719'468;
  const long long era = floorDivide(sinceMarchOf0, daysPerEra);
  const unsigned int dayOfEra = static_cast<unsigned int>(sinceMarchOf0 - era * daysPerEra);
  const unsigned int yearOfEra =
      (dayOfEra - dayOfEra / 1460 + dayOfEra / 36'524 - dayOfEra / 146'096) / 365;
  const unsigned int dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const unsigned int monthFromMarch = (5 * dayOfYear + 2) / 153;
  Date date;
  date.month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;
  date.day = dayOfYear - (153 * monthFromMarch + 2) / 5 + 1;
  date.year = era * 400 + yearOfEra + (date.month <= 2 ? 1 : 0);
  return date;
}

// Writes `value` with at least `digits` digits.
char* writePadded(char* out, unsigned int value, int digits) {
  char text[16];
  const char* const end = std::to_chars(text, text + sizeof text, value).ptr;
  for (int missing = digits - static_cast<int>(end - text); missing > 0; --missing) *out++ = '0';
  std::memcpy(out, text, static_cast<std::size_t>(end - text));
  return out + (end - text);
}

}  // namespace

char* writeFixed(char* out, double value) {
  return std::to_chars(out, out + maxNumberText, value, std::chars_format::fixed, 6).ptr;
}

char* writeDate(char* out, long long time) {
  const long long day = floorDivide(time, secondsPerDay);
  const unsigned int second = static_cast<unsigned int>(time - day * secondsPerDay);
  const Date date = dateOfDay(day);
  const long long sinceYear1900 = date.year - 1900;
  if (sinceYear1900 < INT_MIN || sinceYear1900 > INT_MAX) return nullptr;
  out = writePadded(out, static_cast<unsigned int>(date.year), 4);
  const unsigned int parts[] = {date.month, date.day, second / 3600, second / 60 % 60, second % 60};
  const char separators[] = {'-', '-', 'T', ':', ':'};
  for (int i = 0; i < 5; ++i) {
    *out++ = separators[i];
    out = writePadded(out, parts[i], 2);
  }
  return out;
}

}  // namespace cc
