// Values go into a bag one after another and come out in the same order: numbers aligned to four
// bytes, texts with their terminator, and blocks that a reader may skip without knowing them.

#include <cstdio>

#include "bag.h"
#include "chpair.h"

int main() {
  Bag bag;
  const int version = 2;
  bag.putDataAligned(&version, sizeof version, 4);

  const int unknown = bag.markBeginOfBlock();
  bag.putString("something that only newer readers understand");
  bag.markEndOfBlock(unknown);

  bag << ChPair("a name");

  bag.setPosition(0);
  int read = 0;
  bag.getDataAligned(&read, sizeof read, 4);
  bag.passBlock(bag.beginBlock());
  std::printf("version %d, %s, %d bytes\n", read, bag.getStringPtr(), bag.getSize());

  try {
    bag.getStringPtr();
  } catch (const Bag::Exception&) {
    std::printf("nothing is left\n");
  }
}

// Prints:
// version 2, a name, 60 bytes
// nothing is left
