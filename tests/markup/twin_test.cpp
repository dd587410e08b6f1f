// The reader against the plain model: the same tokens, attributes, warnings, errors and places.

#include <gtest/gtest.h>

#include <random>

#include "tests/markup/model_trace.h"
#include "tests/markup/reader_trace.h"
#include "tests/support/parts.h"
#include "tests/support/stride.h"

namespace {

using cc::test::modelTraceOf;
using cc::test::parts;
using cc::test::traceOf;

// The text alone, and with so much behind it that it is read in blocks.
void compare(const std::string& text) {
  const std::string longer = text + std::string(100, ' ');
  ASSERT_EQ(modelTraceOf(text), traceOf(text)) << text;
  ASSERT_EQ(modelTraceOf(longer), traceOf(longer)) << longer;
}

TEST(ReaderTwin, ShapesAndErrors) {
  // One walk word for word; all others are what the model makes of them.
  EXPECT_EQ(
      "I  d0  [0,8)\nC  d0  [8,15)\nE a d1 o [15,26) w x x=a b\nE d1 o [26,29) !0 @29 1:30\n"
      "E c d0 c [30,34)\nend @34 d0 </c>",
      traceOf("<?&\">\"?><!----><a x=\"a\tb\"><b&></c>"));
  for (const std::string& text :
       parts("text > & ]]> \x80|<a x=\"1\" />|<a x=\"1\"/ >|<a><b/></c>|x<a\r\n>y|<0.-:_Z/>|<a "
             "b='>'>|"
             "<a/b=\">\"/>|<?a \">\" ?>|<!--><b/>-->|<!--->-->|<!-- a -- > -->|<!abcd-->|"
             "<![CDATA[<x/>]]>--><a/>|<!DOCTYPE x>|<\xC3\xA9/>|<a&b><c/>|<a x = \"1\" >|"
             "<a\tx\r\n=\n\"1\"/>|<a b=\"1\"c=\"2\">|<a/b x=\"1\">|</a x=\"1\">|<a x=\"'<>/=?\">|"
             "<a x=\"&quot;\" x=\"2\">|<?xml a=\"1\" b=\"U\" ?>|<a 0=\"1\" .:_=\"2\" <=\"3\">|"
             "<a x=\"1\"/y=\"2\">|<a x=\"1\" -y=\"2\">|<a x=\"1\" !y=\"2\">|<a x=\"1\" ?y=\"2\">|"
             "<a x&=\"1\">|<a x\xC3\xA9=\"1\">|<a ='1'>|<a x=\"1\" &>|<a x y=\"1\">|<a x \"1\">|"
             "<a x==\"1\">|<a x= =\"1\">|<a x = = \"1\">|<a x='\" y=\">'>|<a x=\"\r\nabc\r\n\">|"
             "<a x=\"\r\n\n\r\">|<a x=\"\n a \n\">|<a x=\"a\tb\tc\">|<a x=\"\tabc\t\">|"
             "<a x=\"\n\t\n\">|<a x=\"\x01\" y=\"\x1F\" z=\"\x7F\x80\">")) {
    compare(text);
  }
  compare(std::string("<a\0>", 4));
  compare(std::string("<a x=\"\0\">", 9));
  for (const char* tag : {"<", "</", "<a ", "<a <"}) {
    // Names around the sizes of blocks and windows, and the longest ones.
    for (std::size_t n = 1; n < 515; n = n == 70 ? 508 : n + 1) {
      for (const char* end : {"", "/>", "=\"1\"><b/>"}) compare(tag + std::string(n, 'n') + end);
    }
  }
}

// Sequences of pieces of markup: of the first ones, which are whole, or of all.
TEST(ReaderTwin, RandomDocuments) {
  const std::vector<std::string> pieces = parts(
      "<a>|<b.c-1:_/>|</a>|<a x=\"1\" y = \"&lt;>'\" >|text \xC3\xA9|\n\t|<!-- > \" -->|"
      "<?do it=\"now\"?>|<a b=\"\r\nx\ty\"\n c=\"\"/>|</b >|"
      "<a|<|>|/>|/| x=\"1|=| |\n|\t|\r|\"|'|<!--|-->|-|<?|?|!|b:|&|\x01|\x80|\xC3");
  std::mt19937 random(1);
  for (int round = 0; round < 20'000 / cc::test::stride; ++round) {
    const std::size_t kinds = round % 4 == 0 ? 10 : pieces.size();
    std::string text;
    for (std::size_t n = 1 + random() % 40; n > 0; --n) text += pieces[random() % kinds];
    if (round % 3 == 0) text[random() % text.size()] = static_cast<char>(random());
    compare(text);
    ASSERT_FALSE(HasFatalFailure()) << "round " << round;
  }
}

TEST(ReaderTwin, EveryTextOfMarkupBytes) {
  const std::string bytes = "</>a=\" !-?&";
  for (const std::string& frame : {std::string("<a "), std::string("<"), std::string()}) {
    const std::size_t texts = bytes.size() * bytes.size() * bytes.size() * bytes.size();
    for (std::size_t n = 0; n < texts; n += cc::test::stride) {
      std::string text = frame;
      for (std::size_t rest = n, i = 0; i < 4; ++i, rest /= bytes.size()) {
        text += bytes[rest % bytes.size()];
      }
      compare(text);
    }
  }
}

TEST(ReaderTwin, EveryPrefix) {
  const std::string text =
      "\xEF\xBB\xBF<?xml version=\"1.0\"?>\n<!-- c --><r a = \"1\" b=\"\r\nx\ty\n\">t &amp; u"
      "<e/><f g=\">\" ></f></r>";
  for (std::size_t n = 0; n <= text.size(); ++n) compare(text.substr(0, n));
}

}  // namespace
