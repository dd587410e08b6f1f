// Short texts are copied behind one another; a long one is written by itself.

#include "markup/mldocout_piece.h"

#include <algorithm>
#include <climits>
#include <cstring>

#include "core/kernels.h"
#include "markup/escape.h"

void MLDocOut::Piece::addAnyway(std::string_view text) {
  text = text.substr(0, left);
  if (text.size() > room()) flush();
  if (text.size() <= roomOfPiece) return add(text);
  left -= text.size();
  while (!text.empty()) {
    const std::size_t n = std::min<std::size_t>(text.size(), INT_MAX);
    out.write(text.data(), static_cast<int>(n));
    text.remove_prefix(n);
  }
  start();
}

void MLDocOut::Piece::addEscaped(const char* begin, const char* end) {
  while (begin != end) {
    const char* const stop = cc::kernels::findEscapable(begin, end);
    add(std::string_view(begin, static_cast<std::size_t>(stop - begin)));
    if (stop == end) break;
    const cc::Escaped& entity = cc::escaped(*stop);
    add(std::string_view(entity.bytes.data(), entity.size));
    begin = stop + 1;
  }
}

void MLDocOut::Piece::addIndent() {
  const int perLevel = out.indentSize > 0 ? out.indentSize : 1;
  if (out.level <= 0) return;
  if (out.level > static_cast<int>(room()) / perLevel) {
    flush();
    out.writeIndent();
    return start();
  }
  const std::size_t count =
      static_cast<std::size_t>(out.level) * static_cast<std::size_t>(perLevel);
  std::memset(at, out.indentSize > 0 ? ' ' : '\t', count);
  at += count;
}

void MLDocOut::Piece::beginAttribute(const char* name) {
  if (out.multiLine) {
    addIndent();
  } else {
    add(" ");
  }
  startCut();
  add(name);
  add("=\"");
}

void MLDocOut::Piece::endAttribute() {
  add("\"");
  endCut();
  if (out.multiLine) add(out.newLine);
  finish();
}
