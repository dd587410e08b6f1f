// The byte examples of docs/formats.md, against what the library writes and reads.

#include <gtest/gtest.h>

#include <fstream>
#include <iomanip>
#include <sstream>

#include "charproc.h"
#include "fileproc.h"
#include "tests/loc/loc_support.h"

namespace {

using loc_test::bytesOf;
using loc_test::LngFile;
using loc_test::MemoryFile;

// The bytes of the fenced block "```hex name=NAME".
//
// Each line is an offset of four hexadecimal digits, the bytes in pairs of digits, and perhaps a
// remark after a '#'. Throws `std::runtime_error` for a block that is not there, a line that reads
// otherwise, or an offset that is not the number of bytes before it.
std::string hexExample(const std::string& name) {
  std::ifstream in(CC_SOURCE_DIR "docs/formats.md");
  std::string line;
  while (std::getline(in, line) && line != "```hex name=" + name) {
  }
  if (!in) throw std::runtime_error("docs/formats.md has no example " + name);
  std::string bytes;
  while (std::getline(in, line) && line != "```") {
    std::istringstream words(line.substr(0, line.find('#')));
    unsigned int offset = 0;
    std::string digits;
    words >> std::hex >> offset;
    if (!words || offset != bytes.size()) throw std::runtime_error("offset of " + line);
    while (words >> digits) {
      std::size_t used = 0;
      const unsigned long byte = std::stoul(digits, &used, 16);
      if (digits.size() != 2 || used != 2) throw std::runtime_error("bytes of " + line);
      bytes += static_cast<char>(byte);
    }
  }
  return bytes;
}

TEST(Formats, Bag) {
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

TEST(Formats, RecordStream) {
  const cc::test::TempFolder folder;
  Bag records[3];
  records[0].putStringNZ("abc");
  records[2].putString("z");

  UTF8File file(true);
  const std::string path = folder / "records";
  file.open(path.c_str(), UTF8File::ModeWrite);
  for (Bag& record : records) file.push(record);
  file.close();
  EXPECT_EQ(hexExample("record-stream-example"), cc::test::fileBytes(path));

  file.open(path.c_str(), UTF8File::ModeRead);
  for (const Bag& record : records) {
    Bag read("old", 3);
    EXPECT_TRUE(file.pop(read));
    EXPECT_EQ(bytesOf(record), bytesOf(read));
  }
  file.close();
}

TEST(Formats, Message) {
  // [message-example]
  TTT message(LocDictionaryCommonCore, 4);
  message <= TTT(LocDictionaryCommonCore, 25);
  message << "ab";
  message <= TTT(LocDictionaryCommonCore, 28);
  message << "No such file or directory";
  message <= " in settings.xml";
  message <= TTT(LocDictionaryCommonCore, 21);
  message << 1 << 3;
  // [/message-example]
  EXPECT_EQ(hexExample("message-example"), bytesOf(message.getBag()));
}

TEST(Formats, Dictionary) {
  const LngFile file({"ab", "cd %s"}, 0x11223344);
  EXPECT_EQ(hexExample("lng-example"), file.bytes(false));
  EXPECT_EQ(hexExample("lng-reversed-example"), file.bytes(true));
  for (const char* example : {"lng-example", "lng-reversed-example"}) {
    MemoryFile stream(hexExample(example));
    IDLocLoader::Localization record = {2, 8, 0x11223344};
    IDLocLoader dictionary;
    ASSERT_EQ(0, dictionary.load(stream.get(), record)) << example;
    EXPECT_STREQ("ab", dictionary.getString(0)) << example;
    EXPECT_STREQ("cd %s", dictionary.getString(1)) << example;
  }
}

TEST(Formats, PidFile) { EXPECT_EQ(hexExample("pid-file-example"), std::to_string(4711)); }

}  // namespace
