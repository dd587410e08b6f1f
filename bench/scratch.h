// A folder for the files of a run, removed at its end.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace bench {

class Scratch {
 public:
  Scratch() {
    std::string pattern = std::filesystem::temp_directory_path() / "cc_bench.XXXXXX";
    if (!mkdtemp(pattern.data())) throw std::filesystem::filesystem_error("mkdtemp", {});
    folder = pattern;
  }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;
  ~Scratch() {
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
  }

  std::string path(const std::string& name) const { return folder / name; }

  // Writes a file, in a folder of its own where the name has a "/".
  std::string write(const std::string& name, std::string_view content) const {
    const std::filesystem::path file = folder / name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << content;
    return file;
  }

 private:
  std::filesystem::path folder;
};

}  // namespace bench
