// Places, and the bytes of the messages that tell them.

#include <gtest/gtest.h>

#include "tests/files/messages.h"
#include "tests/markup/reader_trace.h"

namespace {

using cc::test::MessageBytes;
using cc::test::OpenDoc;
using cc::test::thrownBy;

std::string bytesOf(const TTT& message) {
  const Bag& bag = message.getBag();
  return {bag.getBuffer(), static_cast<std::size_t>(bag.getSize())};
}

TEST(Position, CountsLinesAndCharacters) {
  const struct {
    const char* text;
    unsigned int position;
    const char* place;
  } rows[] = {
      {"abc", 0, "1:1"},          {"abc", 3, "1:4"},
      {"ab\n\tx", 4, "2:5"},      {"ab\n\tx", 5, "2:6"},
      {"\t", 1, "1:5"},           {"a\t", 2, "1:5"},
      {"abc\t", 4, "1:5"},        {"abcd\t", 5, "1:9"},
      {"\t\t", 2, "1:9"},         {"\xC3\xA9", 2, "1:2"},
      {"\xC3\xA9", 1, "1:2"},     {"\xF0\x9F\x98\x80x", 5, "1:3"},
      {"\x80\xBF\xC0", 3, "1:2"}, {"\r\n\r\n", 4, "3:1"},
      {"a\rb", 3, "1:3"},         {"\xEF\xBB\xBFx", 3, "1:2"},
      {"a\n", 2, "2:1"},          {"abc", 99, "1:4"},  // a derived class went too far
  };
  for (const auto& row : rows) {
    OpenDoc doc(row.text);
    doc.moveTo(row.position);
    EXPECT_EQ(row.place, doc.place()) << row.text << " @" << row.position;
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
}

}  // namespace
