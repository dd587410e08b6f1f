// A catalogue of messages in one language, as its document holds it, and the checks of it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "findings.h"

namespace cclng {

struct Message {
  int number = 0;
  Place place;
  std::string text;  // entities decoded, as in the note
  std::string note;  // for translators
};

struct Catalogue {
  Place place;          // of the root element
  std::string comment;  // what stands in front of it; the space around each line is left out
  std::string name;
  std::string language;
  std::optional<std::uint32_t> givenStamp;
  std::vector<Message> messages;  // in the order of the document

  // The stamp that the document gives, else one made from what a program depends on: the name, the
  // numbers and the placeholders of every message.
  std::uint32_t stamp() const;
  // The messages by number; of those with the same number, by place.
  std::vector<const Message*> sorted() const;
  // The texts by number; the catalogue has passed `check_numbers`.
  std::vector<std::string> texts() const;
  // The message with this number, or null.
  const Message* find(int number) const;
};

// The largest message number that a dictionary can hold for rendering.
constexpr int LastNumber = 99999;

// The letters after "%" of the placeholders of `text` that consume an argument, in their order.
// `unknown`, unless null, becomes the first placeholder that rendering does not know, else empty.
std::string placeholders(std::string_view text, std::string* unknown = nullptr);

// Reads the document at `path`. What is wrong with it goes to `findings`; what could be read of it
// is in the result all the same. Throws `TTT` when the file cannot be read.
Catalogue read_catalogue(const std::string& path, Findings& findings);

// The document of a catalogue, which reading turns into the same catalogue again. Messages without
// a note and a catalogue without a comment have none.
std::string write_catalogue(const Catalogue& catalogue);

enum class Gaps { Wrong, Allowed };

// Every number from 0 up to `count` once, none above. A negative `count` means the largest number
// that the catalogue holds. With gaps allowed, numbers may be missing.
void check_numbers(const Catalogue& catalogue, int count, Gaps gaps, Findings& findings);
// The same name as the reference.
void check_name(const Catalogue& catalogue, const Catalogue& reference, Findings& findings);
// Every placeholder is one that rendering knows.
void check_placeholders(const Catalogue& catalogue, Findings& findings);
// The same name, stamp, numbers and placeholders as the reference, which is without findings.
void check_against(const Catalogue& catalogue, const Catalogue& reference, Findings& findings);
// A file called "name.language.xml" holds what it says.
void check_file_name(const Catalogue& catalogue, std::string_view path, Findings& findings);

// 8 hexadecimal digits.
std::string hex(std::uint32_t stamp);

}  // namespace cclng
