// What the tests of messages and dictionaries share: bytes as text, and dictionary files made word
// by word, independently of the code under test.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "bag.h"
#include "id_loc_loader.h"
#include "loc_module.h"
#include "tests/support/temp_folder.h"
#include "tttproc.h"

namespace loc_test {

inline std::string_view bytesOf(const Bag& bag) {
  return {bag.getBuffer(), static_cast<std::size_t>(bag.getSize())};
}

/// The dictionary file of `texts`, one after another; every word may be set wrong.
struct LngFile {
  explicit LngFile(const std::vector<std::string>& texts, std::uint32_t stamp = 77)
      : words{0, 0x524C434C, 1, 8, stamp, static_cast<std::uint32_t>(texts.size()), 0} {
    for (const std::string& text : texts) {
      words.push_back(static_cast<std::uint32_t>(pool.size()));
      pool += text + '\0';
    }
    words[PoolSize] = static_cast<std::uint32_t>(pool.size());
  }

  std::string bytes(bool bigEndian = false) const {
    std::string out;
    for (const std::uint32_t word : words) {
      for (int i = 0; i < 4; ++i) {
        out += static_cast<char>(word >> (bigEndian ? 24 - 8 * i : 8 * i) & 0xFF);
      }
    }
    return out + pool;
  }

  enum Word { Count = 5, PoolSize = 6 };
  std::vector<std::uint32_t> words;
  std::string pool;
};

/// `bytes` as an open file.
class MemoryFile {
 public:
  explicit MemoryFile(const std::string& bytes) {
    std::fwrite(bytes.data(), 1, bytes.size(), stream);
  }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;
  ~MemoryFile() { std::fclose(stream); }

  /// The file, to be read from its start.
  std::FILE* get() const {
    std::rewind(stream);
    return stream;
  }

 private:
  std::FILE* const stream = std::tmpfile();
};

/// A loaded dictionary of these texts.
class Dictionary : public IDLocLoader {
 public:
  explicit Dictionary(const std::vector<std::string>& texts) {
    MemoryFile file(LngFile(texts).bytes());
    Localization info = {static_cast<int>(texts.size()), 8, 77};
    if (load(file.get(), info) != 0) std::abort();
  }
};

/// A module with a dictionary of its own, of one text.
class TestModule : public Loc::IdModule {
 public:
  TestModule(const char* moduleName, bool isMandatory, const char* text = nullptr)
      : IdModule(&record, &dictionary) {
    name = moduleName;
    mandatory = isMandatory;
    if (!text) return;
    MemoryFile file(LngFile({text}, 7).bytes());
    if (dictionary.load(file.get(), record) != 0) std::abort();
  }

  IDLocLoader::Localization record = {1, 8, 7};
  IDLocLoader dictionary;
};

/// A folder of its own as the configuration directory, for as long as the object lives.
class EtcDir {
 public:
  EtcDir() {
    if (const char* old = std::getenv(variable)) before = old;
    setenv(variable, path.c_str(), 1);
  }
  EtcDir(const EtcDir&) = delete;
  EtcDir& operator=(const EtcDir&) = delete;
  ~EtcDir() { setenv(variable, before.c_str(), 1); }  // an empty one is as none

  void put(const std::string& name, const std::string& bytes) const {
    cc::test::putFile(path + name, bytes);
  }

 private:
  static constexpr const char* variable = "COMMON_CORE_ETC_DIR";
  std::string before;
  const cc::test::TempFolder folder;

 public:
  const std::string path = folder / "";  ///< ends with "/"
};

/// The global table as it is now, put back at the end.
class KeepSlots {
 public:
  KeepSlots() = default;
  KeepSlots(const KeepSlots&) = delete;
  KeepSlots& operator=(const KeepSlots&) = delete;
  ~KeepSlots() { std::copy(before.begin(), before.end(), TTT::dictionaries); }

 private:
  const std::array<IDLocLoader*, 5> before = std::to_array(TTT::dictionaries);
};

}  // namespace loc_test
