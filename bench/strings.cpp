// Searching and comparing.

#include <strings.h>

#include <cstring>

#include "charproc.h"
#include "families.h"
#include "harness.h"
#include "inputs.h"
#include "peers.h"
#include "utf8proc.h"

namespace bench {
namespace {

unsigned int length(std::string_view s) { return static_cast<unsigned int>(s.size()); }

std::size_t offset(std::string_view text, const void* found) {
  return found ? static_cast<std::size_t>(static_cast<const char*>(found) - text.data())
               : text.size();
}

// A 1 MB text with `pattern` at its end only.
Text textEndingIn(Language language, std::string_view pattern) {
  Text text = makeText(language, megabyte - pattern.size(), "1 MB");
  std::string whole(text.bytes.view());
  whole += pattern;
  return {text.name, text.ascii, bufferOf(whole), unitsOf(whole)};
}

void exactSearch(Bench& bench, const char* kind, const Text& text, std::string_view pattern,
                 double bar) {
  Row row("strfind", kind);
  const std::string_view bytes = text.bytes.view();
  row.bytes(bytes.size());
  row.ours([=] {
    return offset(bytes, strfind(bytes.data(), length(bytes), pattern.data(), length(pattern)));
  });
  row.peer("memmem", [=] {
    return offset(bytes, memmem(bytes.data(), bytes.size(), pattern.data(), pattern.size()));
  });
  row.peer("string_view", [=] {
    const std::size_t found = bytes.find(pattern);
    return found == bytes.npos ? bytes.size() : found;
  });
  row.limit("memchr", [=] { return offset(bytes, std::memchr(bytes.data(), 1, bytes.size())); });
  bench.run(std::move(row.atLeast(bar)));
}

// Text a…a and pattern a…ab, half as long: every wrong place matches long before it fails. Four
// quarters of the size should take as long as the whole.
void worstCase(Bench& bench) {
  Row row("strfind, worst case", "a…ab in a…a, 1 MB against 4 × 256 KB");
  const std::string whole(megabyte, 'a');
  const std::string pattern = std::string(megabyte / 2, 'a') + "b";
  const std::string_view quarterText = std::string_view(whole).substr(0, megabyte / 4);
  const std::string quarterPattern = std::string(megabyte / 8, 'a') + "b";
  const auto find = [](std::string_view text, std::string_view part) {
    return offset(text, strfind(text.data(), length(text), part.data(), length(part)));
  };
  row.bytes(whole.size());
  row.ours([&] { return find(whole, pattern); });
  row.peer("memmem", [&] {
    return offset(whole, memmem(whole.data(), whole.size(), pattern.data(), pattern.size()));
  });
  row.limit("quarters", [&] {
    std::size_t found = 0;
    for (int i = 0; i < 4; ++i) found += find(quarterText, quarterPattern);
    return found;
  });
  bench.run(std::move(row.atLeast(0.8, "quarters")));
}

void caselessSearch(Bench& bench, Language language, std::string_view written,
                    std::string_view sought) {
  const Text text = textEndingIn(language, written);
  const std::string_view bytes = text.bytes.view();
  const char* end = text.bytes.end();
  if (text.ascii) {
    Row row("strfind_i_ascii", text.name);
    row.bytes(bytes.size());
    row.ours([=] {
      return offset(bytes,
                    strfind_i_ascii(bytes.data(), length(bytes), sought.data(), length(sought)));
    });
    row.peer("strcasestr", [=] { return offset(bytes, strcasestr(bytes.data(), sought.data())); });
    addCaselessSearchPeers(row, text, sought);
    row.limit("memchr", [=] { return offset(bytes, std::memchr(bytes.data(), 1, bytes.size())); });
    bench.run(std::move(row.atLeast(10, "strcasestr").atLeast(0.5, "PCRE2")));
  }
  Row row("strfind_i_utf8", text.name);
  row.bytes(bytes.size());
  row.ours([=] {
    return offset(bytes,
                  strfind_i_utf8(bytes.data(), end, sought.data(), sought.data() + sought.size()));
  });
  // It does not fold what is not ASCII; it is measured on what it reads.
  row.unlikePeer("strcasestr",
                 [=] { return offset(bytes, strcasestr(bytes.data(), sought.data())); });
  addCaselessSearchPeers(row, text, sought);
  row.limit("memchr", [=] { return offset(bytes, std::memchr(bytes.data(), 1, bytes.size())); });
  bench.run(std::move(row.atLeast(10, "strcasestr").atLeast(0.5, "PCRE2")));
}

// The same letters with about every third in the other case.
Text otherCase(const Text& text) {
  std::string bytes(text.bytes.view());
  Random random(3);
  for (std::size_t i = 0; i < bytes.size();) {
    std::size_t next = i + 1;
    while (next < bytes.size() && (bytes[next] & 0xC0) == 0x80) ++next;
    if (random.below(3) == 0) strup_utf8(&bytes[i], &bytes[next]);
    i = next;
  }
  return {text.name, text.ascii, bufferOf(bytes), unitsOf(bytes)};
}

std::size_t compareLoop(std::string_view a, std::string_view b) {
  std::size_t i = 0;
  while (i < a.size() && i < b.size() &&
         chr_upper_table_ascii[static_cast<unsigned char>(a[i])] ==
             chr_upper_table_ascii[static_cast<unsigned char>(b[i])]) {
    ++i;
  }
  return i == a.size() && i == b.size();
}

std::size_t compareCharactersLoop(std::string_view a, std::string_view b) {
  const char *p = a.data(), *pEnd = p + a.size(), *q = b.data(), *qEnd = q + b.size();
  while (p < pEnd && q < qEnd) {
    unsigned short u, v;
    p = getch_utf8(u, p, pEnd);
    q = getch_utf8(v, q, qEnd);
    if (chr_upper_table_utf16[u] != chr_upper_table_utf16[v]) return 0;
  }
  return p == pEnd && q == qEnd;
}

void comparison(Bench& bench, const Text& text, bool sameBytes) {
  const Text other = otherCase(text);
  const Text& second = sameBytes ? text : other;
  const Buffer<char> copy = bufferOf(second.bytes.view());
  const std::string_view a = text.bytes.view(), b = copy.view();
  const std::string input = text.name + (sameBytes ? ", same bytes" : ", other case");
  if (text.ascii) {
    Row row("strcmp_i_ascii", input);
    row.bytes(a.size());
    row.ours([=]() -> std::size_t {
      return strcmp_i_ascii(a.data(), a.data() + a.size(), b.data(), b.data() + b.size()) == 0;
    });
    row.peer("strncasecmp",
             [=]() -> std::size_t { return strncasecmp(a.data(), b.data(), a.size()) == 0; });
    row.peer("table loop", [=] { return compareLoop(a, b); });
    bench.run(std::move(row.atLeast(0.9, "strncasecmp")));
  }
  Row row("strcmp_i_utf8", input);
  row.bytes(a.size());
  row.ours([=]() -> std::size_t {
    return strcmp_i_utf8(a.data(), a.data() + a.size(), b.data(), b.data() + b.size()) == 0;
  });
  row.peer("table loop", [=] { return compareCharactersLoop(a, b); });
  addCaselessEqualityPeers(row, text, second);
  if (text.ascii) {
    row.peer("strncasecmp",
             [=]() -> std::size_t { return strncasecmp(a.data(), b.data(), a.size()) == 0; });
    row.atLeast(0.9, "strncasecmp");
  }
  bench.run(std::move(row.atLeast(5, "ICU")));
}

}  // namespace

void stringRows(Bench& bench) {
  const Text rare = textEndingIn(Ascii, "Zanzibar harbour");
  exactSearch(bench, "rare first byte, ASCII, 1 MB", rare, "Zanzibar harbour", 0.95);
  const Text frequent = textEndingIn(Ascii, "eternal harbour");
  exactSearch(bench, "frequent first byte, ASCII, 1 MB", frequent, "eternal harbour", 2);
  const Text cyrillic = textEndingIn(Cyrillic, "охотник");
  exactSearch(bench, "frequent first byte, Cyrillic, 1 MB", cyrillic, "охотник", 2);
  worstCase(bench);
  caselessSearch(bench, Ascii, "Eternal HARBOUR", "eternal harbour");
  caselessSearch(bench, French, "Éternelle ÉCOLE", "éternelle école");
  caselessSearch(bench, Cyrillic, "Охотник ПРИШЁЛ", "охотник пришёл");
  caselessSearch(bench, Chinese, "猎人来", "猎人来");
  for (const Text& text : longTexts()) {
    comparison(bench, text, true);
    comparison(bench, text, false);
  }
  for (const Text& text : shortTexts()) comparison(bench, text, false);
}

}  // namespace bench
