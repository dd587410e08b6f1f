// The message is one Bag whose cursor always stands at the end. Every append reserves all its bytes
// in one step and fills them afterwards, so that a failed allocation leaves the message as it was,
// and so that a source inside the message's own bytes is found again after they moved.
#include "tttproc.h"

#include <climits>
#include <cstring>
#include <functional>
#include <new>
#include <utility>

#include "chpair.h"
#include "loc/message_reader.h"

constinit IDLocLoader* TTT::dictionaries[5] = {};

namespace {

using cc::WordAlignment;

constexpr int WordSize = sizeof(int);

// Bytes to be appended, which may be bytes of the target itself.
class Source {
 public:
  Source(const Bag& target, const char* from, std::size_t count) : bytes(from), n(count) {
    const char* buffer = target.getBuffer();
    const std::less<const char*> before;
    inside = buffer && from && !before(from, buffer) && before(from, buffer + target.getSize());
    if (inside) offset = from - buffer;
  }

  void copyTo(char* dst, const Bag& target) const {
    if (n != 0) std::memcpy(dst, inside ? target.getBuffer() + offset : bytes, n);
  }

 private:
  const char* bytes;
  std::size_t n;
  bool inside;
  std::ptrdiff_t offset = 0;
};

std::size_t textLength(const char* text) { return text ? std::strlen(text) : 0; }

// The count as the bag takes it, with `more` bytes around the text.
int countWith(std::size_t n, int more) {
  if (n > static_cast<std::size_t>(INT_MAX - more)) throw std::bad_alloc();
  return static_cast<int>(n) + more;
}

void putWord(Bag& bag, int word) { bag.putDataAligned(&word, WordSize, WordAlignment); }

void putLiteral(Bag& bag, const char* text, std::size_t n) {
  const Source source(bag, text, n);
  char* entry = bag.putDataPtrAligned(countWith(n, WordSize + 1), WordAlignment);
  const int form = cc::LiteralEntry;
  std::memcpy(entry, &form, WordSize);
  source.copyTo(entry + WordSize, bag);
  entry[WordSize + n] = 0;
}

}  // namespace

TTT::TTT(const TTT& other) : TTT(other.bag) {}

TTT::TTT(TTT&& other) noexcept : bag(std::move(other.bag)) {}

TTT::TTT(const Bag& bytes) : bag(bytes) { bag.setPosition(bag.getSize()); }

TTT::TTT(const char* text) { putLiteral(bag, text, textLength(text)); }

TTT::TTT(const std::string& text) : TTT(text.c_str()) {}

TTT::TTT(LocDictionaryId dictionary, int number) {
  const int words[] = {cc::DictionaryEntry, dictionary, number};
  bag.putDataAligned(words, sizeof words, WordAlignment);
}

TTT& TTT::operator=(const TTT& other) { return *this = other.bag; }

TTT& TTT::operator=(TTT&& other) noexcept {
  if (this != &other) bag = std::move(other.bag);
  return *this;
}

TTT& TTT::operator=(const Bag& bytes) {
  bag = bytes;
  bag.setPosition(bag.getSize());
  return *this;
}

TTT& TTT::operator<=(const TTT& other) { return *this <= other.bag; }

TTT& TTT::operator<=(const Bag& bytes) {
  const int n = bytes.getSize();
  if (n == 0) return *this;
  const Source source(bag, bytes.getBuffer(), static_cast<std::size_t>(n));
  char* entries = bag.putDataPtrAligned(n, WordAlignment);
  source.copyTo(entries, bag);
  return *this;
}

TTT& TTT::operator<=(const char* text) {
  putLiteral(bag, text, textLength(text));
  return *this;
}

TTT& TTT::operator<=(const ChPair& text) {
  putLiteral(bag, text.begin, static_cast<std::size_t>(text.end - text.begin));
  return *this;
}

TTT& TTT::operator<<(int value) {
  putWord(bag, value);
  return *this;
}

TTT& TTT::operator<<(const char* text) {
  const std::size_t n = textLength(text);
  const Source source(bag, text, n);
  char* argument = bag.putDataPtr(countWith(n, 1));
  source.copyTo(argument, bag);
  argument[n] = 0;
  return *this;
}

bool TTT::getErrorCode(int* dictionary, int* code) const {
  int ignored = 0;
  int& slot = dictionary ? *dictionary : ignored;
  int& number = code ? *code : ignored;
  slot = 0;
  number = -1;
  try {
    cc::MessageReader reader(bag);
    const int word = reader.readWord();
    if (word == cc::DictionaryEntry) {
      slot = reader.readWord();
      number = reader.readWord();
    } else {
      number = word;
    }
    return true;
  } catch (const Bag::Exception&) {
    return false;
  }
}
