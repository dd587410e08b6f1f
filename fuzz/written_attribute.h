/// @file
/// An attribute of any type, written, and the line that a reader makes of it.
#pragma once

#include <ctime>

#include "fuzz/document_lines.h"
#include "fuzz/fuzz.h"

namespace fuzz {

/// What a format of the C library makes of a number.
template <class T>
std::string printed(const char* format, T number) {
  char text[400];
  return std::snprintf(text, sizeof text, format, number) > 0 ? text : "";
}

inline std::string printedDate(std::time_t time) {
  std::tm date = {};
  gmtime_r(&time, &date);
  char text[400];
  return {text, std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &date)};
}

inline std::string writtenAttribute(Input& input, MLDocOut& out) {
  const int choice = input.number(0, 4);
  const int number = choice < 3 ? input.value<int>() : 0;
  const auto natural = static_cast<unsigned int>(number);
  const double real = choice == 3 ? input.value<double>() : 0;
  const std::string text = choice == 4 ? input.text() : std::string();
  if (choice == 0) out.writeIntAttr("a", number, false);
  if (choice == 1) out.writeUIntAttr("a", natural, false);
  if (choice == 2) out.writeDateAttr("a", number, false);
  if (choice == 3) out.writeDoubleAttr("a", real, false);
  if (choice == 4) out.writeStrAttr("a", text.c_str(), false);
  const std::string values[] = {std::to_string(number), std::to_string(natural),
                                printedDate(number), printed("%f", real), text};
  return "a=" + attributeValue(values[choice]);
}

}  // namespace fuzz
