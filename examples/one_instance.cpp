// A program marks itself as the running copy; a second detector finds it.

#include <cstdio>

#include "rundetector.h"

int main() {
  RunDetector own("common_core_example", nullptr);
  if (!own.lock()) {
    std::printf("another copy is running\n");
    return 1;
  }
  RunDetector other("common_core_example", nullptr);
  std::printf("running: %s\n", other.getState() == RunDetector::Running ? "yes" : "no");
  std::printf("a second copy starts: %s\n", other.lock() ? "yes" : "no");
  own.unlock();
  std::printf("pid file: %s\n", other.getState() == RunDetector::NoPidFile ? "gone" : "left");
}

// Prints:
// running: yes
// a second copy starts: no
// pid file: gone
