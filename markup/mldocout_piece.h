// What one call of the writer puts out, assembled on the stack.
#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

#include "mlproc.h"

class COMMON_CORE_HIDDEN MLDocOut::Piece {
 public:
  explicit Piece(MLDocOut& target) : out(target) {}
  Piece(const Piece&) = delete;
  Piece& operator=(const Piece&) = delete;

  void add(std::string_view text) {
    if (text.size() > left || text.size() > sizeof bytes - used) return addAnyway(text);
    std::memcpy(bytes + used, text.data(), text.size());
    used += text.size();
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
  void startCut() { left = 4095; }
  void endCut() { left = NoCut; }
  // Adds what stands before an attribute, its name and the opening quote, and leaves the cut open,
  // so that it also counts what follows.
  void beginAttribute(const char* name);
  // Adds the closing quote, ends a cut, adds what stands behind an attribute and writes it all.
  void endAttribute();
  // Writes what was added. Nothing is written without it.
  void flush();

 private:
  static constexpr std::size_t NoCut = SIZE_MAX;

  // Cuts a text, and makes room for it or writes it by itself.
  void addAnyway(std::string_view text);

  MLDocOut& out;
  std::size_t left = NoCut;  // without a cut never used up
  std::size_t used = 0;
  char bytes[1024];
};
