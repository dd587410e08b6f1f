// MLDoc: where reading stopped, and how that is told.

#include <algorithm>

#include "loc/message_numbers.h"
#include "mlproc.h"

void MLDoc::getPosition(int& line, int& column) const {
  line = 1;
  column = 1;
  if (!text) return;
  const char* const end = text + std::min(position, textSize);
  for (const char* p = text; p != end; ++p) {
    const unsigned char c = static_cast<unsigned char>(*p);
    if (c == '\n') {
      ++line;
      column = 1;
    } else if (c == '\t') {
      column = (column - 1) / 4 * 4 + 5;
    } else if (c != '\r' && (c & 0xC0) != 0x80) {
      ++column;
    }
  }
}

void MLDoc::formMessage(TTT& message) const {
  if (!name.isEmpty()) {
    message <= TTT(LocDictionaryCommonCore, cc::MsgFileName);
    message << name.get();
  }
  if (position == 0) return;
  int line = 0;
  int column = 0;
  getPosition(line, column);
  message <= TTT(LocDictionaryCommonCore, cc::MsgPosition);
  message << line << column;
}

void MLDoc::erro(const TTT& message) const {
  if (name.isEmpty()) throw TTT(message);
  TTT full(LocDictionaryCommonCore, cc::MsgDocumentHeading);
  full <= message;
  formMessage(full);
  throw full;
}

void MLDoc::erro(LocDictionaryId dictionary, int code) const { erro(TTT(dictionary, code)); }
