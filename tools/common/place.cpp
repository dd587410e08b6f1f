// Columns are those of the library's errors.
#include "place.h"

namespace tools {

Place PlaceCounter::placeOf(const char* byte) {
  if (byte < at) {
    if (byte < line) line = start;
    place = {line == start ? 1 : place.line, 1, 1};
    at = line;
  }
  for (; at < byte; ++at) {
    if (*at == '\n') {
      place = {place.line + 1, 1, 1};
      line = at + 1;
    } else if ((*at & 0xC0) != 0x80) {
      ++place.character;
      if (*at == '\t') {
        place.column = (place.column - 1) / 4 * 4 + 5;
      } else if (*at != '\r') {
        ++place.column;
      }
    }
  }
  return place;
}

}  // namespace tools
