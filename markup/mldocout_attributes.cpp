// MLDocOut: attributes.
//
// A number, a date or a name of a table counts towards the cut of a formatted text, together with
// the attribute's name and both quotes; of texts and flags only the beginning does.

#include <charconv>
#include <string_view>

#include "markup/mldocout_piece.h"
#include "markup/number_text.h"
#include "mlproc.h"
#include "platform/locale.h"

namespace {

std::string_view between(const char* begin, const char* end) {
  return {begin, static_cast<std::size_t>(end - begin)};
}

}  // namespace

void MLDocOut::writeUIntAttr(const char* name, unsigned int value, bool skipZero) {
  if (skipZero && value == 0) return;
  char text[16];
  Piece piece(*this);
  piece.beginAttribute(name);
  piece.add(between(text, std::to_chars(text, text + sizeof text, value).ptr));
  piece.endAttribute();
}

void MLDocOut::writeIntAttr(const char* name, int value, bool skipZero) {
  if (skipZero && value == 0) return;
  char text[16];
  Piece piece(*this);
  piece.beginAttribute(name);
  piece.add(between(text, std::to_chars(text, text + sizeof text, value).ptr));
  piece.endAttribute();
}

void MLDocOut::writeDoubleAttr(const char* name, double value, bool skipZero) {
  if (skipZero && value == 0.0) return;
  cc::locale::requireNumericC();
  char text[cc::maxNumberText];
  Piece piece(*this);
  piece.beginAttribute(name);
  piece.add(between(text, cc::writeFixed(text, value)));
  piece.endAttribute();
}

void MLDocOut::writeDateAttr(const char* name, long time, bool skipZero) {
  if (skipZero && time == 0) return;
  char text[cc::maxNumberText];
  const char* const end = cc::writeDate(text, time);
  if (!end) return;
  Piece piece(*this);
  piece.beginAttribute(name);
  piece.add(between(text, end));
  piece.endAttribute();
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
