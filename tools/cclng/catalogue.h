// A catalogue of messages in one language, as its document holds it, and what is wrong with it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cclng {

// Where something stands in a document; both count from 1.
struct Place {
  int line = 0;
  int column = 0;
};

// What is wrong with the documents of one run.
class Findings {
 public:
  explicit Findings(std::string_view document) : path(document) {}

  void add(Place place, std::string text) { list.push_back({place, std::move(text)}); }
  bool isEmpty() const { return list.empty(); }
  // Prints all of them in the order of their places.
  void print();

 private:
  struct Finding {
    Place place;
    std::string text;
  };

  std::string path;
  std::vector<Finding> list;
};

struct Message {
  int number = 0;
  Place place;
  std::string text;  // entities decoded
};

struct Catalogue {
  Place place;  // of the root element
  std::string name;
  std::string language;
  std::optional<std::uint32_t> givenStamp;
  std::vector<Message> messages;  // in the order of the document

  // The stamp that the document gives, else one made from what a program depends on: the name, the
  // numbers and the placeholders of every message.
  std::uint32_t stamp() const;
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

// Every number from 0 up to `count` once, none above. A negative `count` means the largest number
// that the catalogue holds.
void check_numbers(const Catalogue& catalogue, int count, Findings& findings);
// Every placeholder is one that rendering knows.
void check_placeholders(const Catalogue& catalogue, Findings& findings);
// The same name, stamp, numbers and placeholders as the reference, which is without findings.
void check_against(const Catalogue& catalogue, const Catalogue& reference, Findings& findings);
// A file called "name.language.xml" holds what it says.
void check_file_name(const Catalogue& catalogue, std::string_view path, Findings& findings);

}  // namespace cclng
