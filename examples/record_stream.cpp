// Bags are written to a file as records and read back in the same order, until the file ends.

#include <cstdio>

#include "bag.h"
#include "fileproc.h"

namespace {

const char kPath[] = "record_stream.example";

void writeRecords(const char* const* names) {
  UTF8File file(true);  // failures are thrown
  file.open(kPath, UTF8File::ModeWrite);
  for (; *names; ++names) {
    Bag record;
    record.putString(*names);
    file.push(record);
  }
  file.close();
}

}  // namespace

int main() {
  const char* const names[] = {"Ada", "Grace", "Edsger", nullptr};
  writeRecords(names);

  UTF8File file(false);  // failures are only returned
  file.open(kPath, UTF8File::ModeRead);
  for (Bag record; file.pop(record);)
    std::printf("%d bytes: %s\n", record.getSize(), record.getStringPtr());
  file.close();
  file.remove(kPath);
}

// Prints:
// 4 bytes: Ada
// 6 bytes: Grace
// 7 bytes: Edsger
