// Numbers by exact arithmetic on their bits, and where that takes more than two words by
// std::to_chars, which is exact too and knows no locale; dates by arithmetic on eras of 400 years,
// which all have 146,097 days.

#include "markup/number_text.h"

#include <array>
#include <bit>
#include <charconv>
#include <climits>
#include <cstdint>
#include <cstring>

namespace cc {

namespace {

constexpr long long secondsPerDay = 86'400;
constexpr long long daysPerEra = 146'097;

long long floorDivide(long long a, long long b) { return a / b - (a % b < 0 ? 1 : 0); }

// "00" to "99".
constexpr auto pairs = [] {
  std::array<char, 200> table{};
  for (unsigned int i = 0; i < 100; ++i) {
    table[2 * i] = static_cast<char>('0' + i / 10);
    table[2 * i + 1] = static_cast<char>('0' + i % 10);
  }
  return table;
}();

char* writePair(char* out, unsigned int value) {
  std::memcpy(out, &pairs[2 * value], 2);
  return out + 2;
}

// Sets the calendar date of a day counted from 1970-01-01. Inside an era years begin in March, so
// that the leap day is the last of a year; months of 31, 30, 31, 30, 31 days repeat every 153 days.
void setDate(CalendarTime& calendar, long long day) {
  const long long sinceMarchOf0 = day + 719'468;
  const long long era = floorDivide(sinceMarchOf0, daysPerEra);
  const unsigned int dayOfEra = static_cast<unsigned int>(sinceMarchOf0 - era * daysPerEra);
  const unsigned int yearOfEra =
      (dayOfEra - dayOfEra / 1460 + dayOfEra / 36'524 - dayOfEra / 146'096) / 365;
  const unsigned int dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const unsigned int monthFromMarch = (5 * dayOfYear + 2) / 153;
  calendar.month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;
  calendar.day = dayOfYear - (153 * monthFromMarch + 2) / 5 + 1;
  calendar.year = era * 400 + yearOfEra + (calendar.month <= 2 ? 1 : 0);
}

// Writes `value` with at least four digits.
char* writeYear(char* out, unsigned int value) {
  if (value < 10'000) return writePair(writePair(out, value / 100), value % 100);
  return std::to_chars(out, out + 16, value).ptr;
}

// A number of at least 0 as whole units and millionths.
struct Millionths {
  std::uint64_t whole;
  unsigned int part;
};

// Rounds `mantissa` / 2^`shift`, 1 to 63, to millionths, to the even one where two are as near.
Millionths roundToMillionths(std::uint64_t mantissa, unsigned int shift) {
  constexpr std::uint64_t word = 0xFFFFFFFF;
  const std::uint64_t rest = mantissa & ((std::uint64_t{1} << shift) - 1);
  const std::uint64_t lowPart = (rest & word) * 1'000'000;
  const std::uint64_t highPart = (rest >> 32) * 1'000'000 + (lowPart >> 32);
  const std::uint64_t low = highPart << 32 | (lowPart & word);
  const std::uint64_t high = highPart >> 32;
  Millionths result = {mantissa >> shift,
                       static_cast<unsigned int>(high << (64 - shift) | low >> shift)};
  const std::uint64_t behind = low & ((std::uint64_t{1} << shift) - 1);
  const std::uint64_t half = std::uint64_t{1} << (shift - 1);
  if (behind > half || (behind == half && result.part % 2 != 0)) ++result.part;
  if (result.part == 1'000'000) return {result.whole + 1, 0};
  return result;
}

// Takes a finite number apart; false for one that is too large or too small for it.
bool toMillionths(std::uint64_t bits, Millionths& result) {
  constexpr unsigned int mantissaBits = 52;
  constexpr unsigned int bias = 1023;
  const unsigned int exponent = static_cast<unsigned int>(bits >> mantissaBits) & 0x7FF;
  const std::uint64_t mantissa = bits & ((std::uint64_t{1} << mantissaBits) - 1);
  if (exponent == 0 && mantissa == 0) {
    result = {0, 0};
    return true;
  }
  constexpr unsigned int unit = bias + mantissaBits;  // the exponent of a whole mantissa
  if (exponent >= unit || exponent < unit - 63) return false;
  result = roundToMillionths(mantissa | std::uint64_t{1} << mantissaBits, unit - exponent);
  return true;
}

}  // namespace

char* writeFixed(char* out, double value) {
  const auto bits = std::bit_cast<std::uint64_t>(value);
  Millionths number;
  if (!toMillionths(bits, number)) {
    return std::to_chars(out, out + maxNumberText, value, std::chars_format::fixed, 6).ptr;
  }
  if (bits >> 63 != 0) *out++ = '-';
  out = std::to_chars(out, out + maxNumberText, number.whole).ptr;
  *out++ = '.';
  out = writePair(out, number.part / 10'000);
  out = writePair(out, number.part / 100 % 100);
  return writePair(out, number.part % 100);
}

bool toCalendar(long long time, CalendarTime& calendar) {
  const long long day = floorDivide(time, secondsPerDay);
  const unsigned int second = static_cast<unsigned int>(
      time % secondsPerDay + (time % secondsPerDay < 0 ? secondsPerDay : 0));
  setDate(calendar, day);
  calendar.hour = second / 3600;
  calendar.minute = second / 60 % 60;
  calendar.second = second % 60;
  const long long sinceYear1900 = calendar.year - 1900;
  return sinceYear1900 >= INT_MIN && sinceYear1900 <= INT_MAX;
}

char* writeDate(char* out, const CalendarTime& calendar) {
  out = writeYear(out, static_cast<unsigned int>(calendar.year));
  *out++ = '-';
  out = writePair(out, calendar.month);
  *out++ = '-';
  out = writePair(out, calendar.day);
  *out++ = 'T';
  out = writePair(out, calendar.hour);
  *out++ = ':';
  out = writePair(out, calendar.minute);
  *out++ = ':';
  return writePair(out, calendar.second);
}

}  // namespace cc
