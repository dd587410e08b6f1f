// A message is a few bytes, the same on every machine of one byte order: one program saves or
// sends them, another one shows them later, in the language of whoever reads them.

#include <cstdio>
#include <string>

#include "fileproc.h"
#include "tttproc.h"

namespace {

const char kPath[] = "message_bytes.example";

void logFailure() {
  try {
    UTF8File file(true);
    file.open("/nowhere/at/all", UTF8File::ModeRead);
  } catch (const TTT& failure) {
    UTF8File::save(kPath, failure.getBag());
  }
}

}  // namespace

int main() {
  logFailure();

  Bag bytes;
  const unsigned int size = UTF8File::load(kPath, bytes, 1000, false);
  std::string text;
  TTT(bytes).makeMulti(text);
  std::printf("%u bytes: %s\n", size, text.c_str());
  UTF8File(false).remove(kPath);
}

// Prints:
// 78 bytes: The file could not be opened.
// File: /nowhere/at/all
// System message: No such file or directory
