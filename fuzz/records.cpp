// Any bytes read as a record: strings, lists, bags and blocks, in an order that the first part of
// the input decides. What was read is written and read again.
#include "bag.h"
#include "fuzz/fuzz.h"

namespace {

template <class T>
void again(const T& value, T& copy) {
  Bag bag;
  bag << value;
  bag.setPosition(0);
  bag >> copy;
  fuzz::expect(bag.getPosition() == bag.getSize());
}

void read(Bag& bag, fuzz::Input& program) {
  const int choice = program.number(0, 4);
  if (choice == 0) {
    StringVector<char> list, copy;
    bag >> list;
    again(list, copy);
    fuzz::expect(list.getCount() == copy.getCount());
    for (int i = 0; i < list.getCount(); ++i) fuzz::expect(!std::strcmp(list[i], copy[i]));
  } else if (choice == 1) {
    Bag inner, copy;
    bag >> inner;
    again(inner, copy);
    fuzz::expect(inner == copy);
    if (inner.getSize() > 0) read(inner, program);
  } else if (choice == 2) {
    const int saved = bag.beginBlock();
    if (!program.isEmpty()) read(bag, program);
    program.byte() % 2 ? bag.passBlock(saved) : bag.endBlock(saved);
  } else if (choice == 3) {
    const char* const text = bag.getStringPtr();
    fuzz::expect(text + std::strlen(text) + 1 == bag.getBuffer() + bag.getPosition());
  } else {
    int word = 0;
    bag.getDataAligned(&word, program.number(-1, 4), 1 << program.number(0, 3));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  fuzz::Input input(data, size);
  const std::string order(input.part());
  fuzz::Input program(reinterpret_cast<const unsigned char*>(order.data()), order.size());
  const std::string_view bytes = input.rest();
  Bag bag(bytes.data(), static_cast<int>(bytes.size()));
  try {
    while (!program.isEmpty()) read(bag, program);
  } catch (const Bag::Exception&) {
    // The bytes are no such record.
  }
  fuzz::expect(bag.getPosition() <= bag.getSize() + 8 &&
               bag.getSize() <= static_cast<int>(bytes.size()));
  return 0;
}
