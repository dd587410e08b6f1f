// The two kinds of names for a language: dictionaries are named by codes of three letters (ISO
// 639-2/T), locales and PO files by those of two where there are such.
#pragma once

#include <string_view>

namespace tools {

// The dictionary's code for the language of a locale, as "deu" for "de", "de_AT" or "de_DE.UTF-8";
// empty when the language is not known.
std::string_view dictionary_language(std::string_view locale);

// The language of locales for a dictionary's code, as "de" for "deu"; empty when it is not known.
std::string_view locale_language(std::string_view code);

}  // namespace tools
