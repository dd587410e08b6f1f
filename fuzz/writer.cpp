// A document written by a program of calls, then read: the same names, values and texts.
#include <ctime>

#include "fuzz/document_lines.h"
#include "fuzz/fuzz.h"

namespace {

std::string attribute(fuzz::Input& input, MLDocOut& out) {
  char text[400];
  const int choice = input.number(0, 4);
  const int number = choice < 3 ? input.value<int>() : 0;
  std::string value = std::to_string(number);
  if (choice == 0) out.writeIntAttr("a", number, false);
  if (choice == 1) out.writeUIntAttr("a", static_cast<unsigned int>(number), false);
  if (choice == 1) value = std::to_string(static_cast<unsigned int>(number));
  if (choice == 2) out.writeDateAttr("a", number, false);
  const std::time_t time = number;
  std::tm date = {};
  gmtime_r(&time, &date);
  if (choice == 2) value.assign(text, std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &date));
  const double real = choice == 3 ? input.value<double>() : 0;
  if (choice == 3) out.writeDoubleAttr("a", real, false);
  if (choice == 3) value = std::snprintf(text, sizeof text, "%f", real) > 0 ? text : "";
  if (choice == 4) out.writeStrAttr("a", (value = input.text()).c_str(), false);
  return "a=" + fuzz::attributeValue(value);
}

void element(fuzz::Input& input, MLDocOut& out, fuzz::Lines& lines) {
  const std::string name = std::string("n.-") + "aZ_09:"[input.number(0, 5)];
  out.beginItem(name.c_str());
  lines.push_back("<" + name);
  for (int n = input.number(0, 3); n > 0; --n) lines.push_back(attribute(input, out));
  const int content = input.number(0, 2);
  if (content != 0) out.beginChildren();
  const std::string text = content == 1 ? input.text() : std::string();
  out.writeEscaped(text.c_str());
  if (!fuzz::trimmed(text).empty()) lines.push_back(fuzz::trimmed(text));
  for (int n = content == 2 ? input.number(0, 3) : 0; n > 0; --n) element(input, out, lines);
  out.endItem(content == 0 ? nullptr : name.c_str());
  lines.emplace_back(">");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  fuzz::Input input(data, size);
  Bag bag;
  MLDocOut out;
  out.begin(&bag);
  out.multiLine = input.number(0, 1) == 1;
  out.newLine = input.number(0, 1) == 1 ? "\r\n" : "\n";
  out.indentSize = input.number(0, 3);
  fuzz::Lines lines;
  element(input, out, lines);
  fuzz::expect(fuzz::linesOf({bag.getBuffer(), static_cast<std::size_t>(bag.getSize())}) == lines);
  return 0;
}
