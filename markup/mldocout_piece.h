// What one call of the writer puts out, assembled on the stack.
#pragma once

#include <cstdint>
#include <string_view>

#include "mlproc.h"

class COMMON_CORE_HIDDEN MLDocOut::Piece {
 public:
  explicit Piece(MLDocOut& target) : out(target) {}
  Piece(const Piece&) = delete;
  Piece& operator=(const Piece&) = delete;

  void add(std::string_view text);
  void add(const char* text) {
    if (text) add(std::string_view(text));
  }
  // Adds the bytes with entities.
  void addEscaped(const char* begin, const char* end);
  // Adds the indentation of the current level.
  void addIndent();
  // Between these two, at most as many bytes are added as one formatting call puts out.
  void startCut() { left = 4095; }
  void endCut() { left = SIZE_MAX; }
  // Adds what stands before an attribute, its name and the opening quote, and leaves the cut open,
  // so that it also counts what follows.
  void beginAttribute(const char* name);
  // Adds the closing quote, ends a cut, adds what stands behind an attribute and writes it all.
  void endAttribute();
  // Writes what was added. Nothing is written without it.
  void flush();

 private:
  MLDocOut& out;
  std::size_t left = SIZE_MAX;
  std::size_t used = 0;
  char bytes[1024];
};
