// The library's own loader reads the file, so what it refuses is refused here for the same reason.
// The document is then compiled again and compared, since a file made by other means may hold what
// a document cannot say.
#include <cstring>
#include <iterator>
#include <optional>

#include "catalogue.h"
#include "commands.h"
#include "diagnostics.h"
#include "failures.h"
#include "fileproc.h"
#include "id_loc_loader.h"

namespace cclng {

namespace {

constexpr unsigned int MaxFileSize = 0x7FFFFFFF;

// Words of the header, by their place in the file.
enum HeaderWord : std::size_t { Magic = 1, Stamp = 4, Count = 5, PoolSize = 6, HeaderWords = 7 };

struct Dictionary {
  tools::ByteOrder order = tools::ByteOrder::Little;
  std::uint32_t stamp = 0;
  std::vector<std::string> texts;
};

std::uint32_t word(const std::string& bytes, HeaderWord which, tools::ByteOrder order) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    const std::size_t place = order == tools::ByteOrder::Big ? i : 3 - i;
    value = value << 8 | static_cast<unsigned char>(bytes[4 * which + place]);
  }
  return value;
}

// Whether a file that begins well is shorter than its header says: the loader would ask for memory
// that no text needs.
bool endsEarly(const std::string& bytes, tools::ByteOrder order) {
  constexpr std::uint32_t head[] = {0, 0x524C434C, 1, 8};
  for (std::size_t i = 0; i < std::size(head); ++i) {
    if (word(bytes, static_cast<HeaderWord>(i), order) != head[i]) return false;
  }
  const auto asked = [&](HeaderWord which) {
    return static_cast<long long>(static_cast<std::int32_t>(word(bytes, which, order)));
  };
  const auto held = static_cast<long long>(bytes.size() - 4 * HeaderWords);
  return 4 * asked(Count) > held || asked(PoolSize) > held;
}

// Why the loader refuses a file; the codes that its own count and stamp cannot cause are left out.
std::string refusal(int code) {
  switch (code) {
    case 2:
      return "The file is no dictionary, or it is damaged.";
    case 3:
      return "The dictionary has an unsupported version.";
    case 4:
      return "The dictionary has an unsupported text encoding.";
    case 6:
      return "The dictionary ends too early.";
    default:
      return "There is not enough memory for the dictionary.";
  }
}

std::optional<Dictionary> readDictionary(const std::string& path, const std::string& bytes) {
  Dictionary dictionary;
  IDLocLoader::Localization info = {0, 8, 0};
  bool cut = false;
  if (bytes.size() >= 4 * HeaderWords) {
    const bool little = std::memcmp(bytes.data() + 4 * Magic, "LCLR", 4) == 0;
    dictionary.order = little ? tools::ByteOrder::Little : tools::ByteOrder::Big;
    dictionary.stamp = word(bytes, Stamp, dictionary.order);
    info.stamp = static_cast<int>(dictionary.stamp);
    info.count = static_cast<int>(word(bytes, Count, dictionary.order));
    cut = endsEarly(bytes, dictionary.order);
  }
  UTF8File file(true);
  file.open(path.c_str(), UTF8File::ModeRead);
  IDLocLoader loader;
  const int code = cut ? 6 : loader.load(file.getStream(), info);
  if (code != 0 || info.count < 0) {
    tools::print_finding(path, 0, 0, refusal(code == 0 ? 2 : code));
    return std::nullopt;
  }
  for (int i = 0; i < info.count; ++i) dictionary.texts.emplace_back(loader.getString(i));
  return dictionary;
}

// The catalogue of a file called "name.language.lng"; other file names say nothing.
Catalogue catalogueOf(const std::string& path, const Dictionary& dictionary) {
  Catalogue catalogue;
  const std::string file = path.substr(path.rfind('/') + 1);
  const std::size_t first = file.find('.');
  const std::size_t last = file.rfind('.');
  const bool named = first != last && first != 0 && last - first > 1;
  catalogue.name = named ? file.substr(0, first) : "unnamed";
  catalogue.language = named ? file.substr(first + 1, last - first - 1) : "unknown";
  for (const std::string& text : dictionary.texts) {
    catalogue.messages.push_back({static_cast<int>(catalogue.messages.size()), {}, text, {}});
  }
  if (catalogue.stamp() != dictionary.stamp) catalogue.givenStamp = dictionary.stamp;
  return catalogue;
}

}  // namespace

int decompile(const std::string& file, const std::string& output) {
  try {
    std::string bytes;
    UTF8File::load(file.c_str(), bytes, MaxFileSize);
    const std::optional<Dictionary> dictionary = readDictionary(file, bytes);
    if (!dictionary) return tools::ExitFindings;

    const Catalogue catalogue = catalogueOf(file, *dictionary);
    if (const int code = deliver(output, write_catalogue(catalogue)); code != tools::ExitClean) {
      return code;
    }
    const std::string again =
        tools::write_lng(dictionary->stamp, dictionary->texts, dictionary->order);
    if (again == bytes) return tools::ExitClean;
    tools::print_finding(file, 0, 0,
                         "Compiling the document again gives other bytes: the file was made by "
                         "other means. The texts are the same.");
    return tools::ExitFindings;
  } catch (const TTT& error) {
    tools::print_problem("cclng", tools::describe(error));
    return tools::ExitUnreadable;
  }
}

}  // namespace cclng
