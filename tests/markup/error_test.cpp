// Places, and the bytes of the messages that tell them.

#include <gtest/gtest.h>

#include "tests/files/messages.h"
#include "tests/markup/reader_trace.h"
#include "tests/reference/markup_model.h"
#include "tests/support/parts.h"

namespace {

using cc::test::MessageBytes;
using cc::test::OpenDoc;
using cc::test::parts;
using cc::test::thrownBy;

std::string bytesOf(const TTT& message) {
  const Bag& bag = message.getBag();
  return {bag.getBuffer(), static_cast<std::size_t>(bag.getSize())};
}

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

TEST(Error, WithANameTellsDocumentAndPlace) {
  OpenDoc doc(" <>");
  MLDoc::Token token;
  const std::string expected =
      MessageBytes(37).entry(14).entry(25).text("doc").entry(21).word(1).word(4);
  EXPECT_EQ(expected, thrownBy([&] { doc.step(token); }));

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
  }
}

TEST(Error, CarriesACallersMessage) {
  OpenDoc doc("<a>");
  TTT own("own text");
  own <= TTT(LocDictionary1, 5);
  own << 7;
  EXPECT_EQ(bytesOf(own), thrownBy([&] {
              OpenDoc nameless;
              nameless.erro(own);
            }));
  doc.moveTo(2);
  const auto withPlace = [](TTT message) {
    message <= TTT(LocDictionaryCommonCore, 25);
    message << "doc";
    message <= TTT(LocDictionaryCommonCore, 21);
    message << 1 << 3;
    return message;
  };
  TTT heading(LocDictionaryCommonCore, 37);
  heading <= own;
  EXPECT_EQ(bytesOf(withPlace(heading)), thrownBy([&] { doc.erro(own); }));
  EXPECT_EQ(2U, doc.at()) << "nothing changes";
  TTT formed("before");
  doc.formMessage(formed);
  EXPECT_EQ(bytesOf(withPlace(TTT("before"))), bytesOf(formed));
  TTT unformed("before");
  OpenDoc().formMessage(unformed);
  EXPECT_EQ(bytesOf(TTT("before")), bytesOf(unformed)) << "neither name nor place";
}

}  // namespace
