/// @file
/// A folder for the files of one test, and plain ways to look at files, independent of the library.
#pragma once

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace cc::test {

/// Number of entries of a folder.
inline int entriesOf(const std::string& path) {
  const std::filesystem::directory_iterator entries(path);
  return static_cast<int>(std::distance(begin(entries), end(entries)));
}

/// A new empty folder, removed with all it holds at the end.
class TempFolder {
 public:
  TempFolder() : path(std::filesystem::temp_directory_path() / "cc-test-XXXXXX") {
    if (!::mkdtemp(path.data())) throw std::runtime_error("no temporary folder");
    path += '/';
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }

  /// The path of a name in the folder; of the folder itself, with its final "/", when empty.
  std::string operator/(const std::string& name) const { return path + name; }
  /// Number of entries.
  int count() const { return entriesOf(path); }

 private:
  std::string path;
};

/// Writes a file and returns its path.
inline std::string putFile(const std::string& path, const std::string& bytes) {
  std::ofstream out(path, std::ios::binary);
  out << bytes;
  out.close();
  if (!out) throw std::runtime_error("cannot write " + path);
  return path;
}

/// The bytes of a file; a text that says so when there is none.
inline std::string fileBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return "(no file)";
  return {std::istreambuf_iterator<char>(in), {}};
}

/// Number of descriptors that this process has open.
inline int openDescriptors() { return entriesOf("/proc/self/fd"); }

}  // namespace cc::test
