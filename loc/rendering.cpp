// Entries are read one after another; texts go from the dictionary's pool and from the message
// straight into `out`, in runs between placeholders. A step that returns false ends the rendering
// with what `out` holds by then.
#include <charconv>
#include <cstring>
#include <iterator>
#include <memory>
#include <string>

#include "id_loc_loader.h"
#include "loc/message_reader.h"
#include "loc_loader.h"
#include "loc_module.h"
#include "tttproc.h"

namespace {

constexpr unsigned int slotCount = std::size(TTT::dictionaries);
constexpr char notLoaded[] = "Some .loc dictionary is not loaded";
constexpr char onTheSpotLanguage[] = "eng";

// The module that rendering loads by itself, and whether process exit has already destroyed it.
struct Localizer {
  Loc::Loader loader;
  static constinit bool gone;

  ~Localizer() { gone = true; }
};

constinit bool Localizer::gone = false;

// Registers the library's dictionary in slot 3, with one module however often that is asked for.
void registerCommonCore(Loc::Loader& loader) {
  auto module = std::make_unique<Loc::CommonCoreModule>();
  if (loader.getCount() > 0) return;
  loader.append(module.get());
  static_cast<void>(module.release());
}

// Loads the library's dictionary. On failure `out` is the text of the error. When memory runs out,
// the slot is as it was, so that the next rendering tries again.
bool loadCommonCore(std::string& out) {
  if (Localizer::gone) return true;
  IDLocLoader* const before = TTT::dictionaries[LocDictionaryCommonCore];
  try {
    static Localizer localizer;
    registerCommonCore(localizer.loader);
    return localizer.loader.load(onTheSpotLanguage, &out);
  } catch (...) {
    TTT::dictionaries[LocDictionaryCommonCore] = before;
    throw;
  }
}

class Rendering {
 public:
  Rendering(IDLocLoader** table, const Bag& message, std::string& text, bool byEntry)
      : slots(table), reader(message), out(text), multi(byEntry) {}

  void run() {
    while (!reader.atEnd() && entry()) {
    }
  }

 private:
  bool entry() {
    int number = reader.readWord();
    unsigned int slot = 0;
    if (number == cc::DictionaryEntry) {
      slot = static_cast<unsigned int>(reader.readWord());
      number = reader.readWord();
      if (slot >= slotCount) return false;
      if (!multi) slot = 0;
    } else if (number == cc::LiteralEntry) {
      appendTextArgument();
      return true;
    } else if (number < 0 || number > cc::LastShortNumber) {
      return false;
    }
    IDLocLoader* dictionary = slots ? slots[slot] : nullptr;
    if (!dictionary && slots && slot == LocDictionaryCommonCore) {
      if (!loadCommonCore(out)) return false;
      dictionary = slots[slot];
    }
    const char* text = dictionary ? dictionary->getString(number) : nullptr;
    return text ? expand(text, *dictionary) : refuse();
  }

  bool expand(const char* text, const IDLocLoader& dictionary) {
    for (;;) {
      const char* end = strchrnul(text, '%');
      if (end != text) out.append(text, static_cast<std::size_t>(end - text));
      if (*end == 0) return true;
      if (!placeholder(end[1], dictionary)) return false;
      text = end + 2;
    }
  }

  // `kind` is the 0 byte where the text ends with "%".
  bool placeholder(char kind, const IDLocLoader& dictionary) {
    switch (kind) {
      case 'd':
        appendNumber(reader.readWord());
        return true;
      case 'u':
        appendNumber(static_cast<unsigned int>(reader.readWord()));
        return true;
      case 's':
        appendTextArgument();
        return true;
      case 'i': {
        const char* text = dictionary.getString(reader.readWord());
        if (!text) return refuse();
        out += text;
        return true;
      }
      case '%':
        out += '%';
        return true;
      default:
        return false;
    }
  }

  void appendTextArgument() {
    std::size_t length = 0;
    const char* text = reader.readText(length);
    out.append(text, length);
  }

  template <class Number>
  void appendNumber(Number number) {
    char digits[12];
    const char* end = std::to_chars(digits, std::end(digits), number).ptr;
    out.append(digits, static_cast<std::size_t>(end - digits));
  }

  bool refuse() {
    out = notLoaded;
    return false;
  }

  IDLocLoader** slots;
  cc::MessageReader reader;
  std::string& out;
  bool multi;
};

}  // namespace

void TTT::makeMulti(std::string& out) const { make(dictionaries, bag, out, true); }

void TTT::make(IDLocLoader& dictionary, std::string& out) const {
  IDLocLoader* slots[] = {&dictionary};
  make(slots, bag, out, false);
}

void TTT::make(IDLocLoader** slots, const Bag& message, std::string& out, bool multi) {
  out.clear();
  Rendering(slots, message, out, multi).run();
}
