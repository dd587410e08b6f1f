// Places, and the bytes of the messages that tell them.

#include <gtest/gtest.h>

#include "tests/files/messages.h"
#include "tests/markup/reader_trace.h"
#include "tests/reference/markup_model.h"
#include "tests/support/parts.h"

namespace {

using cc::test::dataOf;
using cc::test::MessageBytes;
using cc::test::OpenDoc;
using cc::test::parts;
using cc::test::thrownBy;

TEST(Position, CountsLinesAndCharacters) {
  for (const std::string& text : parts("abc|ab\n\tx|a\t|abc\t|abcd\t|\t\t|\xC3\xA9|"
                                       "\xF0\x9F\x98\x80x|\x80\xBF\xC0|\r\n\r\n|a\rb|"
                                       "\xEF\xBB\xBFx|a\n")) {
    OpenDoc doc(text);
    cc::reference::MarkupModel model(text);
    for (; model.position <= text.size(); ++model.position) {
      doc.moveTo(static_cast<unsigned int>(model.position));
      EXPECT_EQ(model.place(), doc.place()) << text << " @" << model.position;
    }
  }
  OpenDoc doc("ab\n\tx");
  for (const unsigned int position : {5U, 99U}) {  // where a derived class went too far
    doc.moveTo(position);
    EXPECT_EQ("2:6", doc.place());
    MLDoc::Token token;
    EXPECT_FALSE(doc.step(token));
  }
}

TEST(Error, TellsDocumentAndPlaceBehindTheHeading) {
  OpenDoc doc("<a>");
  TTT own("own text");
  own <= TTT(LocDictionary1, 5) << 7;
  const std::string bytes = dataOf(own.getBag());
  doc.moveTo(2);
  const std::string place = MessageBytes(25).text("doc").entry(21).word(1).word(3);
  EXPECT_EQ(std::string(MessageBytes(37)) + bytes + place, thrownBy([&] { doc.erro(own); }));
  EXPECT_EQ(2U, doc.at()) << "nothing changes";
  doc.formMessage(own);
  EXPECT_EQ(bytes + place, dataOf(own.getBag()));
  doc.moveTo(0);
  EXPECT_EQ(std::string(MessageBytes(37).entry(20).entry(25).text("doc")),
            thrownBy([&] { doc.getInt("x"); }))
      << "no place at the very start";
}

TEST(Error, WithoutANameTellsOnlyTheError) {
  for (const char* name : {static_cast<const char*>(nullptr), ""}) {
    OpenDoc doc;
    doc.load(name, " <>", 3);
    MLDoc::Token token;
    EXPECT_EQ(std::string(MessageBytes(14)), thrownBy([&] { doc.step(token); }));
    doc.moveTo(0);
    TTT unformed("before");
    doc.formMessage(unformed);
    EXPECT_EQ(dataOf(TTT("before").getBag()), dataOf(unformed.getBag()));
  }
}

}  // namespace
