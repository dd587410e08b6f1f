// Stands in for libFuzzer where the tests run a target: every file of the folders given, and every
// beginning of the small ones.
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "fuzz/fuzz.h"

namespace {

constexpr std::size_t small = 128;

// The target gets a block of exactly the size, so that a sanitizer sees the first byte behind it.
void run(const std::vector<unsigned char>& bytes, std::size_t size) {
  const std::vector<unsigned char> input(bytes.begin(),
                                         bytes.begin() + static_cast<std::ptrdiff_t>(size));
  LLVMFuzzerTestOneInput(input.data(), input.size());
}

}  // namespace

int main(int argc, char** argv) {
  // Targets may silence the streams: what is told goes to a stream of its own.
  std::FILE* const report = fdopen(dup(STDOUT_FILENO), "w");
  int files = 0;
  for (int i = 1; i < argc; ++i) {
    std::vector<std::filesystem::path> paths;
    for (const auto& entry : std::filesystem::directory_iterator(argv[i])) paths.push_back(entry);
    std::sort(paths.begin(), paths.end());
    for (const std::filesystem::path& path : paths) {
      // The last one told is the one that fails.
      std::fprintf(report, "%s\n", path.c_str());
      std::fflush(report);
      std::ifstream in(path, std::ios::binary);
      const std::vector<unsigned char> bytes(std::istreambuf_iterator<char>(in), {});
      run(bytes, bytes.size());
      for (std::size_t n = 0; bytes.size() <= small && n < bytes.size(); ++n) run(bytes, n);
      ++files;
    }
  }
  std::fprintf(report, "%d files\n", files);
  return files > 0 ? 0 : 1;
}
