// The byte examples of the documentation, against what the code writes and reads.

#include <gtest/gtest.h>

#include "bag.h"
#include "charproc.h"
#include "fileproc.h"
#include "tests/core/bag_model.h"
#include "tests/support/doc_examples.h"
#include "tests/support/temp_folder.h"

using cc::test::bytesOf;
using cc::test::fileBytes;
using cc::test::hexExample;
using cc::test::TempFolder;

namespace {

TEST(Formats, BagExample) {
  // [bag-example]
  Bag bag;
  const int five = 5;
  bag.putDataAligned(&five, 4, 4);

  const int content = bag.markBeginOfBlock();
  bag.putString("ab");
  const int seven = 7;
  bag.putDataAligned(&seven, 4, 4);
  bag.markEndOfBlock(content);

  StringVector<char> names;
  names.append(strnew("x", 1));
  names.append(nullptr);
  names.append(strnew("yz", 2));
  bag << names;
  bag << Bag("\x01\x02\x03", 3);
  bag.putFormatStringNZ("%d", 42);
  // [/bag-example]
  EXPECT_EQ(hexExample("bag-example"), bytesOf(bag));
}

TEST(Formats, RecordStreamExample) {
  const TempFolder folder;
  Bag records[3];
  records[0].putStringNZ("abc");
  records[2].putString("z");

  UTF8File file(true);
  const std::string path = folder / "records";
  file.open(path.c_str(), UTF8File::ModeWrite);
  for (Bag& record : records) file.push(record);
  file.close();
  EXPECT_EQ(hexExample("record-stream-example"), fileBytes(path));

  file.open(path.c_str(), UTF8File::ModeRead);
  for (const Bag& record : records) {
    Bag read("old", 3);
    EXPECT_TRUE(file.pop(read));
    EXPECT_EQ(bytesOf(record), bytesOf(read));
  }
  file.close();
}

}  // namespace
