// The byte examples of messages and dictionaries in the documentation, against what the code writes
// and reads.
#include <gtest/gtest.h>

#include "loc_support.h"
#include "tests/support/doc_examples.h"
#include "tttproc.h"

namespace {

using cc::test::hexExample;
using loc_test::bytesOf;
using loc_test::LngFile;
using loc_test::MemoryFile;

TEST(Formats, MessageExample) {
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

TEST(Formats, LngExamples) {
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

}  // namespace
