// The language of the environment is that of messages: LC_ALL, LC_MESSAGES or LANG, the first that
// is set.
#include "messages.h"

#include <cstdlib>

#include "bag.h"
#include "ccml_loc.h"
#include "id_loc_loader.h"
#include "languages.h"
#include "loc_loader.h"
#include "loc_module.h"

namespace ccml {

namespace {

std::string_view environmentLanguage() {
  for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const char* value = std::getenv(variable);
    if (!value || !*value) continue;
    const std::string_view code = tools::dictionary_language(value);
    return code.empty() ? "eng" : code;
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
  return loader().load(std::string(environmentLanguage()).c_str(), nullptr) ||
         loader().load("eng", &error);
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

std::string plainText(int dictionary, int number) {
  const char* text = TTT::dictionaries[dictionary]->getString(number);
  return text ? text : "";
}

TTT own(Message number) { return TTT(LocDictionary0, number); }

}  // namespace ccml
