// The reader against the plain model: the same tokens, attributes, warnings, errors and places.

#include <gtest/gtest.h>

#include <random>

#include "tests/markup/model_trace.h"
#include "tests/markup/reader_trace.h"
#include "tests/support/parts.h"

namespace {

using cc::test::modelTraceOf;
using cc::test::parts;
using cc::test::traceOf;

/// Documents of a small grammar, most of them well made.
class Grammar {
 public:
  explicit Grammar(unsigned int seed) : random(seed) {}

  unsigned int upTo(unsigned int n) { return static_cast<unsigned int>(random() % (n + 1)); }

  std::string document() {
    out.clear();
    if (upTo(1)) out += "<?xml version=\"1.0\"?>\n";
    for (unsigned int n = upTo(2) + 1; n > 0; --n) element(4);
    return out;
  }

  /// Overwrites, removes, doubles or inserts a few bytes.
  std::string damaged(std::string text) {
    static const std::string bytes("<>/\"'=!?-& \t\r\n\x01\x80\xC3\x61Z9:",
                                   22);  // the last one is 0
    for (unsigned int n = upTo(3) + 1; n > 0 && !text.empty(); --n) {
      const std::size_t at = random() % text.size();
      const char c = bytes[random() % bytes.size()];
      const unsigned int choice = upTo(4);
      if (choice == 0) text[at] = c;
      if (choice == 1) text.insert(at, 1, c);
      if (choice == 2) text.erase(at, upTo(3));
      if (choice == 3) text.insert(at, text.substr(random() % text.size(), upTo(12)));
      if (choice == 4) text.resize(at);
    }
    return text;
  }

 private:
  void name() {
    // Now and then one around the limits of a name.
    const std::size_t length = upTo(400) == 0 ? 505 + upTo(10) : 1 + upTo(40) % 7;
    for (std::size_t i = 0; i < length; ++i) out += "abcXYZ019._-:"[upTo(12)];
  }

  void space() {
    for (unsigned int n = upTo(2); n > 0; --n) out += " \t\r\n"[upTo(3)];
  }

  void attributes() {
    for (unsigned int n = upTo(3); n > 0; --n) {
      out += " \n"[upTo(5) == 0];
      space();
      name();
      if (upTo(4) == 0) space();
      out += "=";
      if (upTo(4) == 0) space();
      out += "\"";
      text("><&amp;'/=-! \t\r\n\x02\xC3\xA9xyz");
      out += "\"";
    }
  }

  void text(const char* bytes) {
    const unsigned int last = static_cast<unsigned int>(std::strlen(bytes)) - 1;
    for (unsigned int n = upTo(3) == 0 ? upTo(60) : upTo(6); n > 0; --n) out += bytes[upTo(last)];
  }

  void element(int depth) {
    const std::size_t begin = out.size() + 1;
    out += "<";
    name();
    const std::string own = out.substr(begin);
    attributes();
    space();
    if (depth == 0 || upTo(3) == 0) {
      out += "/>";
      return;
    }
    out += ">";
    for (unsigned int n = upTo(3); n > 0; --n) {
      text("some text, \n\t>\"&quot;\xC3\xA9");
      if (upTo(5) == 0) out += "<!-- a > \" comment -->";
      if (upTo(5) == 0) out += "<?do it=\"now\"?>";
      element(depth - 1);
    }
    out += "</" + own + ">";
  }

  std::mt19937 random;
  std::string out;
};

void compare(const std::string& text) { ASSERT_EQ(modelTraceOf(text), traceOf(text)) << text; }

TEST(ReaderTwin, ShapesAndErrors) {
  // One walk word for word; all others are what the model makes of them.
  EXPECT_EQ(
      "I [0,8)\nC [8,15)\nE a d1 o [15,26) w x x=a b\nE d1 o [26,29) !0 @29 1:30\n"
      "E c d0 c [30,34)\nend @34 d0",
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
    for (std::size_t n = 508; n < 515; ++n) {  // the longest names
      for (const char* end : {"", "/>", "=\"1\"><b/>"}) compare(tag + std::string(n, 'n') + end);
    }
  }
}

TEST(ReaderTwin, RandomDocumentsAndDamagedOnes) {
  for (unsigned int seed = 0; seed < 4000; ++seed) {
    Grammar grammar(seed);
    const std::string good = grammar.document();
    compare(good);
    for (int i = 0; i < 4; ++i) compare(grammar.damaged(good));
    ASSERT_FALSE(HasFatalFailure()) << "seed " << seed;
  }
}

TEST(ReaderTwin, EveryTextOfMarkupBytes) {
  const std::string bytes = "</>a=\" !-?&";
  for (const std::string& frame : {std::string("<a "), std::string("<"), std::string()}) {
    for (std::size_t n = 0; n < bytes.size() * bytes.size() * bytes.size() * bytes.size(); ++n) {
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
