// One table serves both directions.
#include "languages.h"

namespace tools {

namespace {

constexpr struct {
  std::string_view locale, code;
} languages[] = {
    {"cs", "ces"}, {"de", "deu"}, {"en", "eng"}, {"es", "spa"}, {"fr", "fra"},
    {"it", "ita"}, {"nl", "nld"}, {"pl", "pol"}, {"pt", "por"}, {"ru", "rus"},
    {"sv", "swe"}, {"tr", "tur"}, {"uk", "ukr"}, {"zh", "zho"},
};

}  // namespace

std::string_view dictionary_language(std::string_view locale) {
  locale = locale.substr(0, locale.find_first_of("_.@"));
  for (const auto& language : languages) {
    if (language.locale == locale) return language.code;
  }
  return {};
}

std::string_view locale_language(std::string_view code) {
  for (const auto& language : languages) {
    if (language.code == code) return language.locale;
  }
  return {};
}

}  // namespace tools
