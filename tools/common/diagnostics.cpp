// Text is decoded character by character; what is not plainly visible is written as an escape.
#include "diagnostics.h"

#include <cstdio>

#include "characters.h"

namespace tools {

namespace {

struct Range {
  unsigned int first, last;
};

// Controls, and characters that are invisible or rearrange what stands around them.
constexpr Range hidden[] = {{0x00, 0x1F},     {0x7F, 0x9F},      {0xAD, 0xAD},     {0x61C, 0x61C},
                            {0x200B, 0x200F}, {0x2028, 0x202E},  {0x2060, 0x206F}, {0xFEFF, 0xFEFF},
                            {0xFFF9, 0xFFFB}, {0xE0000, 0xE007F}};

bool isHidden(unsigned int character) {
  for (const Range& range : hidden) {
    if (character >= range.first && character <= range.last) return true;
  }
  return false;
}

void appendHex(std::string& out, unsigned int value) {
  char digits[9];
  std::snprintf(digits, sizeof digits, "%02X", value);
  out += digits;
}

void print(std::FILE* stream, std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stream);
}

}  // namespace

std::string printable(std::string_view text, Lines lines) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0, length; i < text.size(); i += length) {
    const unsigned int character = decode(text.substr(i), length);
    if (character == NoCharacter) {
      out += "\\x";
      appendHex(out, static_cast<unsigned char>(text[i]));
    } else if (character == '\n' || character == '\t') {
      const bool stays = character == '\n' && lines == Lines::Keep;
      out += stays ? "\n" : character == '\n' ? "\\n" : "\\t";
    } else if (isHidden(character)) {
      out += "\\u{";
      appendHex(out, character);
      out += '}';
    } else {
      out.append(text, i, length);
    }
  }
  return out;
}

std::string finding_line(std::string_view path, int line, int column, std::string_view severity,
                         std::string_view text) {
  std::string out = printable(path);
  for (const int place : {line, column}) {
    if (place > 0) out += ":" + std::to_string(place);
  }
  return out + ": " + std::string(severity) + ": " + printable(text) + "\n";
}

std::string one_line(std::string_view text) {
  std::string line;
  for (const char c : text) {
    if (c != '\n') {
      line += c;
    } else if (!line.empty()) {
      line += line.back() == '.' ? " " : "; ";
    }
  }
  return line;
}

void print_finding(std::string_view path, int line, int column, std::string_view text) {
  print(stderr, finding_line(path, line, column, "error", text));
}

void print_problem(std::string_view tool, std::string_view text) {
  print(stderr, std::string(tool) + ": " + printable(text, Lines::Keep) + "\n");
}

bool write_output(std::string_view bytes) {
  return std::fwrite(bytes.data(), 1, bytes.size(), stdout) == bytes.size();
}

bool close_output() { return std::fflush(stdout) == 0 && std::ferror(stdout) == 0; }

}  // namespace tools
