// The installed dictionary is tried once. Without it a small one is made in memory, which knows the
// placeholders of every message and the words of the few that a missing dictionary comes with.
#include "failures.h"

#include <cstdio>
#include <vector>

#include "bag.h"
#include "common_core_loc.h"
#include "id_loc_loader.h"
#include "lng_file.h"
#include "loc_module.h"

namespace tools {

namespace {

constexpr struct {
  int number;
  const char* text;
} plainTexts[] = {
    {3, "The file could not be closed."},
    {4, "The file could not be opened."},
    {12, "Not all data could be written to the file."},
    {17, "\nSystem error: %d"},
    {21, "\nLine %d, column %d"},
    {23, "There is not enough memory."},
    {25, "\nFile: %s"},
    {26, "The file could not be read."},
    {28, "\nSystem message: %s"},
    {29, "The file is too large."},
    {32, "The file ends too early."},
    {35, "The file could not be written."},
    {37, "The document contains an error.\n"},
    {38, "The latest changes could not be written to the file."},
};

void loadPlain(IDLocLoader& dictionary) {
  std::vector<std::string> texts(static_cast<std::size_t>(LCA_info.count));
  for (std::size_t i = 0; i < texts.size(); ++i) {
    texts[i] = "Message " + std::to_string(i) + " of the dictionary common_core.";
  }
  for (const auto& plain : plainTexts) texts[static_cast<std::size_t>(plain.number)] = plain.text;
  std::string file =
      write_lng(static_cast<std::uint32_t>(LCA_info.stamp), texts, host_byte_order());
  if (std::FILE* stream = fmemopen(file.data(), file.size(), "rb")) {
    dictionary.load(stream, LCA_info);
    std::fclose(stream);
  }
}

bool loadInstalled() {
  Loc::CommonCoreModule module;
  return module.load("eng", nullptr);
}

}  // namespace

std::string describe(const TTT& message) {
  static IDLocLoader plain;
  static const bool installed = loadInstalled();
  std::string text;
  try {
    if (installed) {
      message.makeMulti(text);
    } else {
      if (!plain.pool) loadPlain(plain);
      message.make(plain, text);
    }
  } catch (const Bag::Exception&) {
    text += " (The message is incomplete.)";
  }
  return text;
}

}  // namespace tools
