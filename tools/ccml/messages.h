// The messages that the tool prints: its own dictionary, in slot 0, and the library's.
#pragma once

#include <string>
#include <string_view>

#include "tttproc.h"

namespace ccml {

// Numbers of the tool's own dictionary, data/ccml.<language>.xml.
enum Message : int {
  MsgEndTagMismatch = 0,  // %s the name in the end tag, %s that of the start tag
  MsgEndTagStray = 1,     // %s the name in the end tag
  MsgAttributeTwice = 2,  // %s the attribute's name
  MsgDoctype = 3,         // no arguments
  MsgCdata = 4,           // no arguments
  MsgNotUtf8 = 5,         // no arguments
  MsgZeroByte = 6,        // no arguments
  MsgTooDeep = 7,         // %d the limit
  MsgUnreadInTag = 8,     // no arguments
  MsgTextOutside = 9,     // no arguments
  MsgSummary = 10,        // %d documents, %d with findings, %d errors, %d warnings
  MsgNotFormatted = 11,   // no arguments
};

// Numbers of the library's dictionary that the tool raises itself.
enum LibraryMessage : int {
  LibElementUnclosed = 7,
  LibControlByte = 16,
};

// Loads both dictionaries for `language`; without one, for the language of the environment, or in
// English when there are no texts for that. False, with the reason in `error`, when that fails.
bool loadTexts(std::string_view language, std::string& error);

// The text of a message, in the language loaded.
std::string textOf(const TTT& message);

// The text of a message of the library (dictionary 3) or of the tool, with its placeholders.
std::string plainText(int dictionary, int number);

// A message of the tool's own dictionary.
TTT own(Message number);

}  // namespace ccml
