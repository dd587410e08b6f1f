// The message is one Bag whose cursor always stands at the end. Every append reserves all its bytes
// in one step and fills them afterwards, so that a failed allocation leaves the message as it was,
// and so that a source inside the message's own bytes is found again after they moved. The first
// append takes room for a usual message, which is thrown soon and does not live long.
#include "tttproc.h"

#include <climits>
#include <cstring>
#include <functional>
#include <new>
#include <utility>

#include "loc/message_reader.h"

constinit IDLocLoader* TTT::dictionaries[5] = {};

namespace {

using cc::WordAlignment;

constexpr int WordSize = sizeof(int);
constexpr int UsualSize = 128;

// A text to be appended, which may stand in the target itself.
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

// The first append, and what no message can hold.
[[gnu::noinline]] void prepare(Bag& bag, std::size_t n, int more) {
  if (n > static_cast<std::size_t>(INT_MAX - more)) throw std::bad_alloc();
  if (!bag.getBuffer()) bag.setBuffer(new char[UsualSize], 0, UsualSize);
}

// Reserves `n` bytes and `more`.
inline char* reserve(Bag& bag, std::size_t n, int more) {
  const int room = bag.getCapacity() - bag.getPosition() - more;
  if (room < 0 || n > static_cast<std::size_t>(room)) prepare(bag, n, more);
  return bag.putDataPtr(static_cast<int>(n) + more);
}

// The same at the next word.
inline char* reserveAligned(Bag& bag, std::size_t n, int more) {
  const int gap = -bag.getPosition() & (WordAlignment - 1);
  char* bytes = reserve(bag, n, more + gap);
  for (int i = 0; i < gap; ++i) *bytes++ = 0;
  return bytes;
}

void putLiteral(Bag& bag, const char* text, std::size_t n) {
  const Source source(bag, text, n);
  char* entry = reserveAligned(bag, n, WordSize + 1);
  const int form = cc::LiteralEntry;
  std::memcpy(entry, &form, WordSize);
  source.copyTo(entry + WordSize, bag);
  entry[WordSize + n] = 0;
}

void putEntries(Bag& bag, const Bag& bytes) {
  const auto n = static_cast<std::size_t>(bytes.getSize());
  if (n == 0) return;
  char* entries = reserveAligned(bag, n, 0);
  std::memcpy(entries, bytes.getBuffer(), n);  // asked for now: it may be the same bag
}

}  // namespace

TTT::TTT(const TTT& other) : TTT(other.bag) {}

TTT::TTT(TTT&& other) noexcept : bag(std::move(other.bag)) {}

TTT::TTT(const Bag& bytes) : bag(bytes) { bag.setPosition(bag.getSize()); }

TTT::TTT(const char* text) { putLiteral(bag, text, textLength(text)); }

TTT::TTT(const std::string& text) : TTT(text.c_str()) {}

TTT::TTT(LocDictionaryId dictionary, int number) {
  const int words[] = {cc::DictionaryEntry, dictionary, number};
  char* entry = new char[UsualSize];
  std::memcpy(entry, words, sizeof words);
  bag.setBuffer(entry, sizeof words, UsualSize);
  bag.setPosition(sizeof words);
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

TTT& TTT::operator<=(const TTT& other) {
  putEntries(bag, other.bag);
  return *this;
}

TTT& TTT::operator<=(const Bag& bytes) {
  putEntries(bag, bytes);
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
  std::memcpy(reserveAligned(bag, WordSize, 0), &value, WordSize);
  return *this;
}

TTT& TTT::operator<<(const char* text) {
  const std::size_t n = textLength(text);
  const Source source(bag, text, n);
  char* argument = reserve(bag, n, 1);
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
