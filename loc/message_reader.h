// Reads the bytes of a message in place. Words are found at multiples of 4, texts where the last
// read ended; whatever would pass the end throws Bag::Exception. The bag itself, its cursor
// included, is never touched, so nothing has to be put back on any way out.
#pragma once

#include <cstring>

#include "bag.h"

namespace cc {

// What the first word of an entry says when it is no message number of slot 0.
enum EntryForm : int {
  LiteralEntry = -1,     // a ready-made text follows
  DictionaryEntry = -2,  // slot and message number follow
};

constexpr int LastShortNumber = 99999;  // the highest message number that is its own first word
constexpr int WordAlignment = 4;

class MessageReader {
 public:
  explicit MessageReader(const Bag& message)
      : data(message.getBuffer()), size(static_cast<unsigned int>(message.getSize())) {}

  bool atEnd() const { return position >= size; }

  int readWord() {
    constexpr unsigned int low = WordAlignment - 1;
    const unsigned int end = ((position + low) & ~low) + static_cast<unsigned int>(sizeof(int));
    if (end > size) fail();
    int word;
    std::memcpy(&word, data + end - sizeof word, sizeof word);
    position = end;
    return word;
  }

  // The text up to its 0 byte, whose length in bytes goes to `length`.
  const char* readText(std::size_t& length) {
    const char* text = data + position;
    const void* zero = atEnd() ? nullptr : std::memchr(text, 0, size - position);
    if (!zero) fail();
    length = static_cast<std::size_t>(static_cast<const char*>(zero) - text);
    position += static_cast<unsigned int>(length) + 1;
    return text;
  }

 private:
  [[noreturn, gnu::cold, gnu::noinline]] static void fail() { throw Bag::Exception(); }

  const char* data;
  unsigned int size;          // at most the largest int, so that no offset below wraps
  unsigned int position = 0;  // at most `size`
};

}  // namespace cc
