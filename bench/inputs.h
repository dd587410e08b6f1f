// What the contestants work on. Everything is made from fixed seeds or from files of Debian
// packages, once, when it is first asked for.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

constexpr std::size_t megabyte = 1 << 20;

// Numbers that are the same in every run and on every machine.
class Random {
 public:
  explicit Random(std::uint64_t seed) : state(seed * 2654435769u + 1) {}
  std::uint64_t next() {  // xorshift64*
    state ^= state >> 12;
    state ^= state << 25;
    state ^= state >> 27;
    return state * 2685821657736338717u;
  }
  std::size_t below(std::size_t n) { return static_cast<std::size_t>((next() >> 33) % n); }

 private:
  std::uint64_t state;
};

// Elements that begin at a cache line, so that no contestant meets another alignment.
template <class T>
class Buffer {
 public:
  Buffer() = default;
  explicit Buffer(std::size_t n)
      : elements(static_cast<T*>(std::aligned_alloc(64, (n * sizeof(T) + 127) / 64 * 64))),
        count(n) {}
  T* begin() const { return elements.get(); }
  T* end() const { return elements.get() + count; }
  T* data() const { return elements.get(); }
  std::size_t size() const { return count; }
  std::string_view view() const {
    return {reinterpret_cast<const char*>(elements.get()), count * sizeof(T)};
  }

 private:
  struct Free {
    void operator()(T* p) const { std::free(p); }
  };
  std::unique_ptr<T, Free> elements;
  std::size_t count = 0;
};

Buffer<char> bufferOf(std::string_view bytes);

// Running text, zero-terminated behind its last byte and unit.
struct Text {
  std::string name;  // as the table shows it
  bool ascii;
  Buffer<char> bytes;            // UTF-8
  Buffer<unsigned short> units;  // UTF-16
};

enum Language { Ascii, French, Cyrillic, Chinese, languageCount };

// About `size` bytes of sentences: never more, cut at a character's end.
std::string sentences(Language language, std::size_t size, std::uint64_t seed);
// Texts of 1 MB and of 64 bytes, one of each language.
const std::vector<Text>& longTexts();
const std::vector<Text>& shortTexts();
Text makeText(Language language, std::size_t size, const char* sizeName);
// The units of UTF-8 text without characters beyond 16 bits.
Buffer<unsigned short> unitsOf(std::string_view bytes);

struct Document {
  std::string name;
  Buffer<char> bytes;
};

// Documents from Debian packages: empty where the package is not installed.
const std::vector<Document>& realDocuments();
// Records of 50 MB with ten attributes each, and with paragraphs of text.
const Document& attributeRecords();
const Document& textRecords();

}  // namespace bench
