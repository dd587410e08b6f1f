// GLib, libunistring, ICU and PCRE2 on text. Converters, collators and compiled patterns are made
// once, outside the timed runs, and handles live as long as the row that holds them.

#define PCRE2_CODE_UNIT_WIDTH 8

#include <glib.h>
#include <pcre2.h>
#include <unicode/ucasemap.h>
#include <unicode/ucol.h>
#include <unicode/usearch.h>
#include <unicode/ustring.h>
#include <unistr.h>

#include <cstring>
#include <memory>

#include "peers.h"

namespace bench {
namespace {

static_assert(sizeof(UChar) == sizeof(unsigned short));

const UChar* uchars(const Buffer<unsigned short>& units) {
  return reinterpret_cast<const UChar*>(units.data());
}

const std::uint8_t* octets(const Text& text) {
  return reinterpret_cast<const std::uint8_t*>(text.bytes.data());
}

template <class T>
std::int32_t length(const Buffer<T>& buffer) {
  return static_cast<std::int32_t>(buffer.size());
}

struct Pattern {
  explicit Pattern(std::string_view text, bool utf) {
    int error;
    PCRE2_SIZE offset;
    const std::uint32_t options =
        PCRE2_CASELESS | PCRE2_LITERAL | (utf ? PCRE2_UTF | PCRE2_NO_UTF_CHECK : 0u);
    code = pcre2_compile(reinterpret_cast<PCRE2_SPTR>(text.data()), text.size(), options, &error,
                         &offset, nullptr);
    pcre2_jit_compile(code, PCRE2_JIT_COMPLETE);
    match = pcre2_match_data_create_from_pattern(code, nullptr);
  }
  Pattern(const Pattern&) = delete;
  Pattern& operator=(const Pattern&) = delete;
  ~Pattern() {
    pcre2_match_data_free(match);
    pcre2_code_free(code);
  }

  std::size_t find(const Buffer<char>& text) const {
    const int found = pcre2_jit_match(code, reinterpret_cast<PCRE2_SPTR>(text.data()), text.size(),
                                      0, PCRE2_NO_UTF_CHECK, match, nullptr);
    return found > 0 ? pcre2_get_ovector_pointer(match)[0] : text.size();
  }

  pcre2_code* code;
  pcre2_match_data* match;
};

struct Search {
  Search(const Text& text, std::string_view pattern) : units(unitsOf(pattern)) {
    UErrorCode error = U_ZERO_ERROR;
    collator = ucol_open("root", &error);
    ucol_setStrength(collator, UCOL_SECONDARY);  // accents count, case does not
    search = usearch_openFromCollator(uchars(units), length(units), uchars(text.units),
                                      length(text.units), collator, nullptr, &error);
  }
  Search(const Search&) = delete;
  Search& operator=(const Search&) = delete;
  ~Search() {
    usearch_close(search);
    ucol_close(collator);
  }

  Buffer<unsigned short> units;
  UCollator* collator;
  UStringSearch* search;
};

}  // namespace

void addValidationPeers(Row& row, const Text& text) {
  row.peer("GLib", [&text] {
    const gchar* end = nullptr;
    g_utf8_validate_len(text.bytes.data(), text.bytes.size(), &end);
    return static_cast<std::size_t>(end - text.bytes.data());
  });
  row.peer("libunistring", [&text] {
    const std::uint8_t* bad = u8_check(octets(text), text.bytes.size());
    return bad ? static_cast<std::size_t>(bad - octets(text)) : text.bytes.size();
  });
}

void addCharacterPeers(Row& row, const Text& text) {
  row.peer("GLib", [&text] {
    return static_cast<std::size_t>(
        g_utf8_strlen(text.bytes.data(), static_cast<gssize>(text.bytes.size())));
  });
  row.peer("libunistring", [&text] { return u8_mbsnlen(octets(text), text.bytes.size()); });
}

void addEncodedSizePeers(Row& row, const Text& text) {
  row.peer("ICU", [&text] {
    UErrorCode error = U_ZERO_ERROR;
    std::int32_t size = 0;
    u_strToUTF8(nullptr, 0, &size, uchars(text.units), length(text.units), &error);
    return static_cast<std::size_t>(size);
  });
}

void addDecodingPeers(Row& row, const Text& text, Buffer<unsigned short>& out) {
  row.peer("ICU", [&] {
    UErrorCode error = U_ZERO_ERROR;
    std::int32_t count = 0;
    u_strFromUTF8(reinterpret_cast<UChar*>(out.data()), length(out), &count, text.bytes.data(),
                  length(text.bytes), &error);
    return static_cast<std::size_t>(count);
  });
}

void addEncodingPeers(Row& row, const Text& text, Buffer<char>& out) {
  row.peer("ICU", [&] {
    UErrorCode error = U_ZERO_ERROR;
    std::int32_t count = 0;
    u_strToUTF8(out.data(), length(out), &count, uchars(text.units), length(text.units), &error);
    return static_cast<std::size_t>(count);
  });
}

void addCasePeers(Row& row, const Text& text, bool upper, Buffer<char>& out) {
  UErrorCode error = U_ZERO_ERROR;
  const std::shared_ptr<UCaseMap> map(ucasemap_open("", U_FOLD_CASE_DEFAULT, &error),
                                      ucasemap_close);
  row.peer("ICU", [&, map, upper]() -> std::size_t {
    UErrorCode failure = U_ZERO_ERROR;
    const auto convert = upper ? ucasemap_utf8ToUpper : ucasemap_utf8ToLower;
    convert(map.get(), out.data(), length(out), text.bytes.data(), length(text.bytes), &failure);
    return 0;
  });
  row.peer("GLib", [&, upper]() -> std::size_t {
    const auto convert = upper ? g_utf8_strup : g_utf8_strdown;
    gchar* made = convert(text.bytes.data(), static_cast<gssize>(text.bytes.size()));
    std::memcpy(out.data(), made, out.size());
    g_free(made);
    return 0;
  });
}

void addCaselessSearchPeers(Row& row, const Text& text, std::string_view pattern) {
  const auto compiled = std::make_shared<Pattern>(pattern, !text.ascii);
  row.peer("PCRE2", [&text, compiled] { return compiled->find(text.bytes); });
  const auto search = std::make_shared<Search>(text, pattern);
  // The one match is at the end, so an index in units is told as what is left behind it in bytes.
  const std::size_t place = text.bytes.size() - pattern.size();
  const std::size_t index = text.units.size() - search->units.size();
  row.peer("ICU usearch", [search, place, index, &text] {
    UErrorCode error = U_ZERO_ERROR;
    usearch_reset(search->search);
    const std::int32_t found = usearch_first(search->search, &error);
    return static_cast<std::size_t>(found) == index ? place : text.bytes.size();
  });
}

void addCaselessEqualityPeers(Row& row, const Text& a, const Text& b) {
  row.peer("ICU", [&a, &b]() -> std::size_t {
    UErrorCode error = U_ZERO_ERROR;
    return u_strCaseCompare(uchars(a.units), length(a.units), uchars(b.units), length(b.units),
                            U_FOLD_CASE_DEFAULT, &error) == 0;
  });
}

const char* libraryPeer() { return "libicuuc.so.72"; }

}  // namespace bench
