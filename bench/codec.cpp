// Checking, counting and converting text, and changing its case.

#include <iconv.h>

#include <cstring>

#include "charproc.h"
#include "families.h"
#include "harness.h"
#include "inputs.h"
#include "limits.h"
#include "peers.h"
#include "utf8proc.h"

namespace bench {
namespace {

unsigned int sizeOf(const Text& text) { return static_cast<unsigned int>(text.bytes.size()); }

void checking(Bench& bench, const Text& text, double bar) {
  Row row("strchk_utf8", text.name);
  row.bytes(text.bytes.size());
  row.ours([&text] {
    const char* bad = strchk_utf8(text.bytes.data(), sizeOf(text));
    return bad ? static_cast<std::size_t>(bad - text.bytes.data()) : text.bytes.size();
  });
  addValidationPeers(row, text);
  row.limit("read", [&text] { return sum(text.bytes.data(), text.bytes.size()); });
  bench.run(std::move(row.atLeast(bar, "read")));
}

void counting(Bench& bench, const Text& text, double bar) {
  Row row("strlen_utf8, characters", text.name);
  row.bytes(text.bytes.size());
  row.ours([&text] {
    return static_cast<std::size_t>(strlen_utf8(text.bytes.begin(), text.bytes.end()));
  });
  addCharacterPeers(row, text);
  row.limit("read", [&text] { return sum(text.bytes.data(), text.bytes.size()); });
  bench.run(std::move(row.atLeast(bar, "read")));
}

void sizing(Bench& bench, const Text& text, double bar) {
  Row row("strlen_utf8, bytes of UTF-16", text.name);
  row.bytes(text.units.view().size());
  row.ours([&text] {
    return static_cast<std::size_t>(strlen_utf8(text.units.begin(), text.units.end()));
  });
  addEncodedSizePeers(row, text);
  row.limit("read", [&text] { return sum(text.units.data(), text.units.view().size()); });
  bench.run(std::move(row.atLeast(bar, "read")));
}

// The C library's converter, kept open.
class Iconv {
 public:
  Iconv(const char* to, const char* from) : handle(iconv_open(to, from)) {}
  Iconv(const Iconv&) = delete;
  Iconv& operator=(const Iconv&) = delete;
  ~Iconv() { iconv_close(handle); }

  // Bytes written.
  std::size_t convert(std::string_view source, void* out, std::size_t room) const {
    char* in = const_cast<char*>(source.data());
    char* to = static_cast<char*>(out);
    std::size_t inLeft = source.size(), outLeft = room;
    iconv(handle, &in, &inLeft, &to, &outLeft);
    return room - outLeft;
  }

 private:
  iconv_t handle;
};

void decoding(Bench& bench, const Text& text) {
  Row row("utf8_to_utf16", text.name);
  Buffer<unsigned short> out(text.bytes.size()), twin(text.bytes.size());
  const std::size_t result = text.units.view().size();
  const Iconv converter("UTF-16LE", "UTF-8");
  std::memset(twin.data(), 1, twin.view().size());
  row.bytes(text.bytes.size()).output([&] { return std::string(out.view().substr(0, result)); });
  row.ours([&] {
    return static_cast<std::size_t>(
        utf8_to_utf16(text.bytes.begin(), text.bytes.end(), out.begin(), out.end()) - out.begin());
  });
  row.peer("iconv",
           [&] { return converter.convert(text.bytes.view(), out.data(), out.view().size()) / 2; });
  addDecodingPeers(row, text, out);
  row.limit("memcpy", [&] {
    return reinterpret_cast<std::size_t>(std::memcpy(out.data(), twin.data(), result));
  });
  if (text.ascii) {
    row.atLeast(0.5, "memcpy");
  } else {
    row.atLeast(2, "ICU");
  }
  bench.run(std::move(row));
}

void encoding(Bench& bench, const Text& text) {
  Row row("utf16_to_utf8", text.name);
  Buffer<char> out(3 * text.units.size());
  const std::size_t result = text.bytes.size();
  const Iconv converter("UTF-8", "UTF-16LE");
  row.bytes(result).output([&] { return std::string(out.view().substr(0, result)); });
  row.ours([&] {
    return static_cast<std::size_t>(
        utf16_to_utf8(text.units.begin(), text.units.end(), out.begin(), out.end()) - out.begin());
  });
  row.peer("iconv", [&] { return converter.convert(text.units.view(), out.data(), out.size()); });
  addEncodingPeers(row, text, out);
  row.limit("memcpy", [&] {
    return reinterpret_cast<std::size_t>(std::memcpy(out.data(), text.bytes.data(), result));
  });
  if (text.ascii) {
    row.atLeast(0.5, "memcpy");
  } else {
    row.atLeast(2, "ICU");
  }
  bench.run(std::move(row));
}

// Character by character through the table, as one would write it down.
std::size_t caseLoop(char* s, const char* end, const unsigned short* table) {
  auto* p = reinterpret_cast<unsigned char*>(s);
  const auto* last = reinterpret_cast<const unsigned char*>(end);
  while (p < last) {
    if (*p < 0x80) {
      *p = static_cast<unsigned char>(table[*p]);
      ++p;
    } else if (*p < 0xE0) {
      const unsigned int unit = (p[0] & 31u) << 6 | (p[1] & 63u);
      const unsigned int other = table[unit];
      if (other >= 0x80 && other < 0x800) {
        p[0] = static_cast<unsigned char>(0xC0 | other >> 6);
        p[1] = static_cast<unsigned char>(0x80 | (other & 63));
      }
      p += 2;
    } else {
      const unsigned int unit = (p[0] & 15u) << 12 | (p[1] & 63u) << 6 | (p[2] & 63u);
      const unsigned int other = table[unit];
      if (other >= 0x800) {
        p[0] = static_cast<unsigned char>(0xE0 | other >> 12);
        p[1] = static_cast<unsigned char>(0x80 | (other >> 6 & 63));
        p[2] = static_cast<unsigned char>(0x80 | (other & 63));
      }
      p += 3;
    }
  }
  return 0;
}

void changingCase(Bench& bench, const Text& text, bool upper) {
  Row row(upper ? "strup_utf8" : "strlw_utf8", text.name);
  Buffer<char> work(text.bytes.size());
  row.bytes(text.bytes.size());
  row.before([&] { std::memcpy(work.data(), text.bytes.data(), text.bytes.size()); });
  row.output([&] { return std::string(work.view()); });
  row.ours([&, upper]() -> std::size_t {
    upper ? strup_utf8(work.begin(), work.end()) : strlw_utf8(work.begin(), work.end());
    return 0;
  });
  row.peer("table loop", [&, upper] {
    return caseLoop(work.begin(), work.end(),
                    upper ? chr_upper_table_utf16 : chr_lower_table_utf16);
  });
  addCasePeers(row, text, upper, work);
  row.limit("memcpy", [&] {
    return reinterpret_cast<std::size_t>(
        std::memcpy(work.data(), text.bytes.data(), text.bytes.size()));
  });
  bench.run(std::move(row.atLeast(text.ascii ? 5 : 2)));
}

}  // namespace

void codecRows(Bench& bench) {
  constexpr double shortBar = 1.0 / 3;
  for (const Text& text : longTexts()) checking(bench, text, text.ascii ? 0.9 : 0.3);
  for (const Text& text : shortTexts()) checking(bench, text, shortBar);
  for (const Text& text : longTexts()) counting(bench, text, 0.9);
  for (const Text& text : shortTexts()) counting(bench, text, shortBar);
  for (const Text& text : longTexts()) sizing(bench, text, 0.9);
  for (const Text& text : longTexts()) decoding(bench, text);
  for (const Text& text : shortTexts()) decoding(bench, text);
  for (const Text& text : longTexts()) encoding(bench, text);
  for (const Text& text : shortTexts()) encoding(bench, text);
  for (const Text& text : longTexts()) changingCase(bench, text, true);
  for (const Text& text : longTexts()) changingCase(bench, text, false);
}

}  // namespace bench
