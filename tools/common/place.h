// Places in the text of a document.
#pragma once

namespace tools {

// All count from 1; a line of 0 is no place.
struct Place {
  int line = 0;
  int column = 0;     // as on a screen, with TABs going to the columns 1, 5, 9 and so on
  int character = 0;  // as in the text, with every TAB a character
};

// Turns bytes of a text into places. As long as they do not go back to an earlier line, all of them
// together cost one pass.
class PlaceCounter {
 public:
  explicit PlaceCounter(const char* text) : start(text), line(text), at(text) {}
  Place placeOf(const char* byte);

 private:
  const char* start;
  const char* line;  // the first byte of the line of `at`
  const char* at;
  Place place = {1, 1, 1};
};

}  // namespace tools
