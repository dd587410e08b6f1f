// Checking, counting and converting, with every set of hot loops, beside the plain models. The
// first byte is the room that a conversion has.
#include <memory>

#include "fuzz/fuzz.h"
#include "tests/reference/text_model.h"
#include "utf8proc.h"

namespace {

void check(const std::string& text, std::size_t room) {
  const char* const end = text.data() + text.size();
  const char* const wrong = strchk_utf8(text.data(), static_cast<unsigned int>(text.size()));
  fuzz::expect(fuzz::offsetIn(text, wrong) == reference::check(text));
  fuzz::expect(strlen_utf8(text.data(), end) == reference::countCharacters(text));

  auto units = reference::toUtf16(text);
  const unsigned short* const unitsEnd = units.data() + units.size();
  const std::string again = reference::toUtf8(units);
  fuzz::expect(strlen_utf8(units.data(), unitsEnd) == again.size());
  const std::unique_ptr<char[]> bytes(new char[room]);
  const char* const last = utf16_to_utf8(units.data(), unitsEnd, bytes.get(), bytes.get() + room);
  fuzz::expect(std::string_view(bytes.get(), static_cast<std::size_t>(last - bytes.get())) ==
               std::string_view(again).substr(0, room));
  const std::unique_ptr<unsigned short[]> decoded(new unsigned short[room]);
  unsigned short* const stop = utf8_to_utf16(text.data(), end, decoded.get(), decoded.get() + room);
  units.resize(std::min(units.size(), room));
  fuzz::expect(reference::Units(decoded.get(), stop) == units);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  fuzz::Input input(data, size);
  const std::size_t room = input.byte();
  const std::string text(input.rest());
  fuzz::withEachForm([&] { check(text, room); });
  return 0;
}
