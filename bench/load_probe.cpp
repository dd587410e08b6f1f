// Loads one shared library and prints the nanoseconds of processor time that it took. It links no
// more than the C++ standard library, so that only the library and what it alone needs is counted.

#include <dlfcn.h>
#include <time.h>

#include <cstdio>
#include <string>

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  const std::string path = argv[1];  // also keeps the standard library linked
  timespec start, end;
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &start);
  const void* library = dlopen(path.c_str(), RTLD_NOW);
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &end);
  if (!library) {
    std::fprintf(stderr, "%s\n", dlerror());
    return 1;
  }
  std::printf("%.0f\n", static_cast<double>(end.tv_sec - start.tv_sec) * 1e9 +
                            static_cast<double>(end.tv_nsec - start.tv_nsec));
  return 0;
}
