// Bags, slices and lists of strings go into a bag as wholes, each behind what tells its length.

#include <cstdio>

#include "bag.h"
#include "charproc.h"
#include "chpair.h"

int main() {
  StringVector<char> tags;
  tags.append(strnew("red", 3));
  tags.append(strnew("large", 5));

  Bag item;
  item << ChPair("balloon") << tags;

  Bag order;
  const int amount = 12;
  order.putDataAligned(&amount, sizeof amount, 4);
  order << item;

  order.setPosition(0);
  int ordered = 0;
  order.getDataAligned(&ordered, sizeof ordered, 4);
  Bag content;
  order >> content;
  const char* name = content.getStringPtr();
  StringVector<char> words;
  content >> words;
  std::printf("%d times %s:", ordered, name);
  for (const char* word : words) std::printf(" %s", word);
  std::printf("\n%d bytes in %d\n", content.getSize(), order.getSize());
}

// Prints:
// 12 times balloon: red large
// 22 bytes in 30
