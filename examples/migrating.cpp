// The same task twice: the first line of a file is read, and what fails is told.

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

#include "fileproc.h"

namespace {

// [before]
bool firstLine(const char* path, std::string& line, std::string& error) {
  FILE* file = std::fopen(path, "rb");
  if (!file) {
    error = std::string("Cannot open ") + path + ": " + std::strerror(errno);
    return false;
  }
  char buffer[100];
  const bool read = std::fgets(buffer, sizeof buffer, file) != nullptr;
  std::fclose(file);
  if (read) line.assign(buffer, std::strcspn(buffer, "\r\n"));
  return read;
}
// [/before]

// [after]
std::string firstLine(const char* path) {
  UTF8File file(true);
  file.open(path, UTF8File::ModeRead);
  char buffer[100];
  file.readLine(buffer, sizeof buffer, nullptr);
  return buffer;
}
// [/after]

}  // namespace

int main() {
  std::string line;
  std::string error;
  std::printf("%s\n", firstLine("tasks.xml", line, error) ? line.c_str() : error.c_str());
  std::printf("%s\n", firstLine("nothing", line, error) ? line.c_str() : error.c_str());
  // [caller]
  for (const char* path : {"tasks.xml", "nothing"}) try {
      std::printf("%s\n", firstLine(path).c_str());
    } catch (const TTT& failure) {
      failure.makeMulti(error);
      std::printf("%s\n", error.c_str());
    }
  // [/caller]
}

// Prints:
// <?xml version="1.0" encoding="UTF-8"?>
// Cannot open nothing: No such file or directory
// <?xml version="1.0" encoding="UTF-8"?>
// The file could not be opened.
// File: nothing
// System message: No such file or directory
