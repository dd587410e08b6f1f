// MLDocOut: attributes.
//
// A number, a date or a name of a table counts towards the cut of a formatted text, together with
// the attribute's name and both quotes; of texts and flags only the beginning does.

#include <charconv>

#include "markup/mldocout_piece.h"
#include "markup/number_text.h"
#include "mlproc.h"
#include "platform/locale.h"

void MLDocOut::writeUIntAttr(const char* name, unsigned int value, bool skipZero) {
  if (skipZero && value == 0) return;
  Piece(*this).addNumber(
      name, [value](char* to) { return std::to_chars(to, to + cc::maxNumberText, value).ptr; });
}

void MLDocOut::writeIntAttr(const char* name, int value, bool skipZero) {
  if (skipZero && value == 0) return;
  Piece(*this).addNumber(
      name, [value](char* to) { return std::to_chars(to, to + cc::maxNumberText, value).ptr; });
}

void MLDocOut::writeDoubleAttr(const char* name, double value, bool skipZero) {
  if (skipZero && value == 0.0) return;
  cc::locale::requireNumericC();
  Piece(*this).addNumber(name, [value](char* to) { return cc::writeFixed(to, value); });
}

void MLDocOut::writeDateAttr(const char* name, long time, bool skipZero) {
  if (skipZero && time == 0) return;
  cc::CalendarTime calendar;
  if (!cc::toCalendar(time, calendar)) return;
  Piece(*this).addNumber(name, [&](char* to) { return cc::writeDate(to, calendar); });
}

void MLDocOut::writeStrAttr(const char* name, const char* value, bool skipEmpty) {
  const ChPair text(value);
  if (skipEmpty && text.isEmpty()) return;
  writePairAttr(name, text);
}

void MLDocOut::writePairAttr(const char* name, const ChPair& value) {
  Piece piece(*this);
  piece.beginAttribute(name);
  piece.endCut();
  piece.addEscaped(value.begin, value.end);
  piece.endAttribute();
}

void MLDocOut::writeEnumAttr(const char* name, unsigned int value, const PairTag* table) {
  const char* const text = table->translate(static_cast<int>(value));
  if (!text) return;
  Piece piece(*this);
  piece.beginAttribute(name);
  piece.add(text);
  piece.endAttribute();
}

void MLDocOut::writeFlagsAttr(const char* name, unsigned int flags, const PairTag* table) {
  Piece piece(*this);
  piece.beginAttribute(name);
  piece.endCut();
  bool first = true;
  for (const PairTag* entry = table; entry->name; ++entry) {
    const unsigned int bits = static_cast<unsigned int>(entry->value);
    if ((flags & bits) == 0) continue;
    flags &= ~bits;
    if (!first) piece.add(" ");
    first = false;
    piece.add(entry->name);
  }
  piece.endAttribute();
}
