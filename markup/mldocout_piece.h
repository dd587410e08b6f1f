// What one call of the writer puts out, assembled where it is to stand: in the room behind the
// data of the bag where the bag is the only target and has it, else on the stack.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "core/kernels.h"
#include "markup/number_text.h"
#include "mlproc.h"

class COMMON_CORE_HIDDEN MLDocOut::Piece {
 public:
  explicit Piece(MLDocOut& target) : out(target) { start(); }
  Piece(const Piece&) = delete;
  Piece& operator=(const Piece&) = delete;

  void add(std::string_view text) {
    if (text.size() > left || text.size() > room()) return addAnyway(text);
    at = cc::kernels::copyShort(text.data(), text.size(), at);
    left -= text.size();
  }
  void add(const char* text) {
    if (text) add(std::string_view(text));
  }
  // Adds the bytes with entities.
  void addEscaped(const char* begin, const char* end);
  // Adds the indentation of the current level.
  void addIndent();
  // Between these two, at most as many bytes are added as one formatting call puts out.
  void startCut() { left = mostFormatted; }
  void endCut() { left = NoCut; }
  // Adds what stands before an attribute, its name and the opening quote, and leaves the cut open,
  // so that it also counts what follows.
  void beginAttribute(const char* name);
  // Adds the closing quote, ends a cut, adds what stands behind an attribute and writes it all.
  void endAttribute();
  // Adds a whole attribute, whose value `write` puts at a place with room for the longest number;
  // it returns the end.
  template <class Write>
  void addNumber(const char* name, Write write);
  // Writes what was added. Nothing is written without it, and nothing is added behind it.
  void finish() {
    const int n = static_cast<int>(at - place);
    if (isDirect && n != 0) {
      out.bag->putDataPtr(n);
    } else {
      out.write(place, n);
    }
  }

 private:
  static constexpr std::size_t NoCut = SIZE_MAX;
  static constexpr std::size_t mostFormatted = 4095;
  static constexpr int roomOfPiece = 1024;

  // Begins an empty piece.
  void start() {
    const Bag* const only = out.file.getStream() ? nullptr : out.bag;
    isDirect = only && only->getPosition() == only->getSize() &&
               only->getCapacity() - only->getSize() >= roomOfPiece;
    place = at = isDirect ? only->getBuffer() + only->getSize() : bytes;
  }
  std::size_t room() const { return static_cast<std::size_t>(roomOfPiece - (at - place)); }
  // Writes what was added and goes on with an empty piece.
  void flush() {
    finish();
    start();
  }
  // Cuts a text, and makes room for it or writes it by itself.
  void addAnyway(std::string_view text);

  MLDocOut& out;
  std::size_t left = NoCut;  // without a cut never used up
  char* place = nullptr;
  char* at = nullptr;
  bool isDirect = false;
  char bytes[roomOfPiece];
};

template <class Write>
void MLDocOut::Piece::addNumber(const char* name, Write write) {
  const std::size_t length = name ? std::strlen(name) : 0;
  constexpr std::size_t around = 4;  // a space, an equals sign and both quotes
  if (!out.multiLine && length <= roomOfPiece - around - cc::maxNumberText) {
    // Neither cut nor full: the piece is empty.
    *at++ = ' ';
    at = cc::kernels::copyShort(name, length, at);
    *at++ = '=';
    *at++ = '"';
    at = write(at);
    *at++ = '"';
    return finish();
  }
  char text[cc::maxNumberText];
  const char* const end = write(text);
  beginAttribute(name);
  add(std::string_view(text, static_cast<std::size_t>(end - text)));
  endAttribute();
}
