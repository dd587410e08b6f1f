// MLDocOut: elements, raw output and escaped text. Attributes stand in mldocout_attributes.cpp.
//
// What one call writes is assembled in a piece on the stack and goes to the targets in one write;
// only what does not fit takes several.

#include <climits>
#include <cstdarg>
#include <cstring>
#include <new>

#include "core/formatted_text.h"
#include "core/kernels.h"
#include "markup/escape.h"
#include "markup/mldocout_piece.h"
#include "mlproc.h"

MLDocOut::MLDocOut() : file(true) {}

MLDocOut::~MLDocOut() = default;

bool MLDocOut::begin(const char* path) {
  end();
  return file.open(path, UTF8File::ModeWrite);
}

void MLDocOut::begin(Bag* target) { bag = target; }

void MLDocOut::end() {
  if (file.getStream()) file.close();
}

void MLDocOut::write(const char* data, int size) {
  if (size <= 0) return;
  if (file.getStream()) file.write(data, size);
  if (bag) bag->putData(data, size);
}

void MLDocOut::write(const char* text) {
  Piece piece(*this);
  piece.add(text);
  piece.finish();
}

void MLDocOut::writeLn(const char* text) {
  Piece piece(*this);
  piece.add(text);
  piece.add(newLine);
  piece.finish();
}

void MLDocOut::writef(const char* format, ...) {
  va_list args;
  va_start(args, format);
  const cc::FormattedText text(format, args);
  va_end(args);
  write(text.get());
}

void MLDocOut::writeIndent() {
  if (level <= 0) return;
  const long long wanted = indentSize > 0 ? 1LL * indentSize * level : level;
  if (wanted > INT_MAX) throw std::bad_alloc();
  const int count = static_cast<int>(wanted);
  const int cached = indentCache.getSize();
  if (cached < count) {
    const int missing = count - cached;
    std::memset(indentCache.putDataPtr(missing), indentSize > 0 ? ' ' : '\t',
                static_cast<std::size_t>(missing));
  }
  write(indentCache.getBuffer(), count);
}

void MLDocOut::writeEscaped(const char* begin, const char* end) {
  Piece piece(*this);
  piece.addEscaped(begin, end);
  piece.finish();
}

void MLDocOut::writeEscaped(const char* text) {
  const ChPair all(text);
  writeEscaped(all.begin, all.end);
}

void MLDocOut::escapeString(const ChPair& source, ChArr& out) {
  if (source.isEmpty()) return out.adopt(nullptr);
  const unsigned long long length = cc::escapedLength(source.begin, source.end);
  if (length >= PTRDIFF_MAX) throw std::bad_alloc();
  const std::size_t size = static_cast<std::size_t>(source.end - source.begin);
  char* const escaped = new char[static_cast<std::size_t>(length) + 1];
  char* const end = length == size ? cc::kernels::copyShort(source.begin, size, escaped)
                                   : cc::escapeText(source.begin, source.end, escaped);
  *end = 0;
  out.adopt(escaped);
}

void MLDocOut::beginItem(const char* name) {
  Piece piece(*this);
  piece.addIndent();
  piece.add("<");
  piece.add(name);
  if (multiLine) piece.add(newLine);
  piece.finish();
  ++level;
}

void MLDocOut::beginChildren() {
  Piece piece(*this);
  if (multiLine) piece.addIndent();
  piece.add(">");
  piece.add(newLine);
  piece.finish();
}

void MLDocOut::endItem(const char* name) {
  --level;
  Piece piece(*this);
  if (name || multiLine) piece.addIndent();
  if (name) {
    piece.startCut();
    piece.add("</");
    piece.add(name);
    piece.add(">");
    piece.endCut();
  } else {
    piece.add("/>");
  }
  piece.add(newLine);
  piece.finish();
}
