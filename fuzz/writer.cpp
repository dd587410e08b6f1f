// A document written by a program of calls, then read: the same names, values and texts.
#include "fuzz/written_attribute.h"

static void element(fuzz::Input& input, MLDocOut& out, fuzz::Lines& lines) {
  const std::string name = std::string("n.-") + "aZ_09:"[input.number(0, 5)];
  out.beginItem(name.c_str());
  lines.push_back("<" + name);
  for (int n = input.number(0, 3); n > 0; --n) lines.push_back(fuzz::writtenAttribute(input, out));
  const int content = input.number(0, 2);
  if (content != 0) out.beginChildren();
  const std::string text = content == 1 ? input.text() : std::string();
  out.writeEscaped(text.c_str());
  if (!fuzz::trimmed(text).empty()) lines.push_back(fuzz::trimmed(text));
  for (int n = content == 2 ? input.number(0, 3) : 0; n > 0; --n) element(input, out, lines);
  out.endItem(content == 0 ? nullptr : name.c_str());
  lines.emplace_back(">");
}

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
