// The language of the environment is that of messages: LC_ALL, LC_MESSAGES or LANG, the first that
// is set. Dictionaries are named by codes of three letters (ISO 639-2/T), locales by two.
#include "messages.h"

#include <cstdlib>
#include <utility>

#include "bag.h"
#include "ccml_loc.h"
#include "id_loc_loader.h"
#include "loc_loader.h"
#include "loc_module.h"

namespace ccml {

namespace {

constexpr std::pair<std::string_view, const char*> languages[] = {
    {"cs", "ces"}, {"de", "deu"}, {"es", "spa"}, {"fr", "fra"}, {"it", "ita"},
    {"nl", "nld"}, {"pl", "pol"}, {"pt", "por"}, {"ru", "rus"}, {"sv", "swe"},
    {"tr", "tur"}, {"uk", "ukr"}, {"zh", "zho"},
};

const char* environmentLanguage() {
  for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const char* value = std::getenv(variable);
    if (!value || !*value) continue;
    for (const auto& [two, three] : languages) {
      if (std::string_view(value).substr(0, 2) == two) return three;
    }
    break;
  }
  return "eng";
}

Loc::Loader& loader() {
  static IDLocLoader dictionary;
  static Loc::Loader modules;
  if (modules.getCount() == 0) {
    modules.expand(2);
    modules.append(new Loc::CommonCoreModule);
    Loc::Module* module = new Loc::IdModule(&ccml_info, &dictionary);
    modules.append(module);
    module->name = "ccml";
    module->mandatory = true;
    TTT::dictionaries[LocDictionary0] = &dictionary;
  }
  return modules;
}

}  // namespace

bool loadTexts(std::string_view language, std::string& error) {
  if (!language.empty()) return loader().load(std::string(language).c_str(), &error);
  return loader().load(environmentLanguage(), nullptr) || loader().load("eng", &error);
}

std::string textOf(const TTT& message) {
  std::string text;
  try {
    message.makeMulti(text);
  } catch (const Bag::Exception&) {
    // The text ends where the message does.
  }
  return text;
}

TTT own(Message number) { return TTT(LocDictionary0, number); }

}  // namespace ccml
