// Any bytes read as a record: strings, lists, bags and blocks, in an order that the first part of
// the input decides. What was read is written and read again.
#include "fuzz/round_trip.h"

static void read(Bag& bag, fuzz::Input& program) {
  const int choice = program.number(0, 4);
  if (choice == 0) {
    StringVector<char> list;
    bag >> list;
    fuzz::expectRoundTrip(list);
  } else if (choice == 1) {
    Bag inner;
    bag >> inner;
    fuzz::expectRoundTrip(inner);
    if (inner.getSize() > 0) read(inner, program);
  } else if (choice == 2) {
    const int saved = bag.beginBlock();
    if (!program.isEmpty()) read(bag, program);
    program.byte() % 2 ? bag.passBlock(saved) : bag.endBlock(saved);
  } else if (choice == 3) {
    const std::string_view text = bag.getStringPtr();
    fuzz::expect(text.end() + 1 == bag.getBuffer() + bag.getPosition());
  } else {
    int word = 0;
    bag.getDataAligned(&word, program.number(-1, 4), 1 << program.number(0, 3));
  }
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  fuzz::Input input(data, size), program(input.part());
  const int length = static_cast<int>(input.rest().size());
  Bag bag(input.rest().data(), length);
  try {
    while (!program.isEmpty()) read(bag, program);
  } catch (const Bag::Exception&) {  // the bytes are no such record
  }
  fuzz::expect(bag.getPosition() <= bag.getSize() + 8 && bag.getSize() <= length);
  return 0;
}
