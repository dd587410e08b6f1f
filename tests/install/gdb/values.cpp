// Values for gdb to show. It stops in `stop`, called once for each step.

#include <bag.h>
#include <charproc.h>
#include <charr.h>
#include <mlproc.h>

#include <string>

static void stop(int step) { asm volatile("" : : "r"(step) : "memory"); }

int main() {
  const ChArr text("caf\xC3\xA9 \"1\"");
  const ChArr none;
  ChArr16 wide;
  wide = "caf\xC3\xA9";
  const ChArr16 noWide;
  const ChPair pair("name=value");
  ChPair part;
  ChPair rest;
  pair.split(part, '=', rest);
  [[maybe_unused]] const ChPair noSlice;

  Bag bag;
  const int version = 2;
  bag.putString("ab");
  bag.putDataAligned(&version, sizeof version, 4);
  const Bag empty;

  TTT message(LocDictionaryCommonCore, 37);
  message <= TTT(LocDictionaryCommonCore, 25) << "a.xml";
  message <= TTT(LocDictionaryCommonCore, 21) << 3 << -14;
  message <= "as it is\n";
  TTT foreign(LocDictionary1, 7);
  foreign << 5;
  const TTT nothing;

  SimpleVector<int> numbers;
  for (int n = 1; n <= 3; ++n) numbers.append(n * n);
  StringVector<char> names;
  names.append(strnew("Ada", 3));
  names.append(nullptr);

  const char source[] = "<a><!-- c --><b c=\"1\"/></a>";
  MLDoc doc;
  doc.load("source", source, sizeof source - 1);
  [[maybe_unused]] const MLDoc::Token fresh;
  MLDoc::Token start;
  doc.step(start);
  MLDoc::Token comment = start;
  doc.step(comment);
  MLDoc::Token whole = comment;
  doc.step(whole);
  MLDoc::Token end = whole;
  doc.step(end);

  stop(1);
  std::string rendered;
  message.makeMulti(rendered);
  stop(2);
  return 0;
}
