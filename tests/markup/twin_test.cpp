// The reader against the plain model: the same tokens, attributes, warnings, errors and places.

#include <gtest/gtest.h>

#include <random>

#include "tests/markup/model_trace.h"
#include "tests/markup/reader_trace.h"

namespace {

using cc::test::ModelTrace;
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
    static const std::string bytes = std::string(
                                         "<>/\"'=!?-& \t\r\n\x01\x80\xC3"
                                         "aZ9:",
                                         21) +
                                     '\0';
    for (unsigned int n = upTo(3) + 1; n > 0 && !text.empty(); --n) {
      const std::size_t at = random() % text.size();
      const char c = bytes[random() % bytes.size()];
      switch (upTo(4)) {
        case 0:
          text[at] = c;
          break;
        case 1:
          text.insert(at, 1, c);
          break;
        case 2:
          text.erase(at, upTo(3));
          break;
        case 3:
          text.insert(at, text.substr(random() % text.size(), upTo(12)));
          break;
        default:
          text.resize(at);
          break;
      }
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

TEST(ReaderTwin, RandomDocumentsAndDamagedOnes) {
  for (unsigned int seed = 0; seed < 4000; ++seed) {
    Grammar grammar(seed);
    const std::string good = grammar.document();
    ASSERT_EQ(ModelTrace(good).walk(), traceOf(good)) << "seed " << seed << ":\n" << good;
    for (int i = 0; i < 4; ++i) {
      const std::string bad = grammar.damaged(good);
      ASSERT_EQ(ModelTrace(bad).walk(), traceOf(bad)) << "seed " << seed << ":\n" << bad;
    }
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
      ASSERT_EQ(ModelTrace(text).walk(), traceOf(text)) << text;
    }
  }
}

TEST(ReaderTwin, EveryPrefix) {
  const std::string text =
      "\xEF\xBB\xBF<?xml version=\"1.0\"?>\n<!-- c --><r a = \"1\" b=\"\r\nx\ty\n\">t &amp; u"
      "<e/><f g=\">\" ></f></r>";
  for (std::size_t n = 0; n <= text.size(); ++n) {
    const std::string prefix = text.substr(0, n);
    ASSERT_EQ(ModelTrace(prefix).walk(), traceOf(prefix)) << prefix;
  }
}

}  // namespace
