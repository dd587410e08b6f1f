// With exceptions off a file only returns its failures: for code where a missing file is no news.

#include <cstdio>

#include "fileproc.h"

int main() {
  UTF8File file(false);
  if (!file.open("tasks.xml", UTF8File::ModeRead)) {
    std::printf("no tasks\n");
    return 0;
  }
  int lines = 0;
  char line[200];
  for (bool end = false; !end;)
    if (!file.readLine(line, sizeof line, &end))
      break;
    else if (!end || *line)
      ++lines;
  std::printf("%d lines, %lld bytes\n", lines, file.size());
}

// Prints:
// 5 lines, 158 bytes
