// Conversion and case of UTF-8, every form of the loops against the slow models: texts of every
// kind and length, at the edge of unreadable pages, into too little room, and all short strings.

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "charproc.h"
#include "core/case_tables.h"
#include "tests/reference/text_model.h"
#include "tests/support/guarded_buffer.h"
#include "tests/support/kernel_forms.h"
#include "utf8proc.h"

namespace {

using cc::test::GuardedBuffer;
using cc::test::Random;
using cc::test::TextKind;
using cc::test::textKinds;
using cc::test::withEachForm;
using reference::Units;
using std::string_view;

constexpr std::size_t longest = 300;

class Converter {
 public:
  // Into `room` units that end at the unreadable page. What is not reached keeps its value.
  void decode(string_view text, std::size_t room) {
    Units expected = reference::toUtf16(text);
    expected.resize(std::min(expected.size(), room));
    const char* s = source.atEnd(text);
    const Units blank(room, 0x2323);
    unsigned short* to = target.atEnd(blank.data(), room);
    unsigned short* reached = utf8_to_utf16(s, s + text.size(), to, to + room);
    ASSERT_EQ(expected.size(), static_cast<std::size_t>(reached - to));
    ASSERT_TRUE(std::equal(expected.begin(), expected.end(), to));
    ASSERT_TRUE(std::all_of(reached, to + room, [](unsigned short u) { return u == 0x2323; }));
  }

  void encode(const Units& units, std::size_t room) {
    const std::string expected = reference::toUtf8(units).substr(0, room);
    const unsigned short* s = source.atEnd(units.data(), units.size());
    char* to = target.atEnd(std::string(room, '#'));
    char* reached = utf16_to_utf8(s, s + units.size(), to, to + room);
    ASSERT_EQ(expected, string_view(to, static_cast<std::size_t>(reached - to)));
    ASSERT_TRUE(std::all_of(reached, to + room, [](char c) { return c == '#'; }));
  }

  // In place, at both edges.
  void mapCase(string_view text) {
    const std::string upper = reference::mapCase(text, chr_upper_table_utf16);
    const std::string lower = reference::mapCase(text, chr_lower_table_utf16);
    for (char* s : {source.atEnd(text), target.atBegin(text)}) {
      strup_utf8(s, s + text.size());
      ASSERT_EQ(upper, string_view(s, text.size()));
      std::copy(text.begin(), text.end(), s);
      strlw_utf8(s, s + text.size());
      ASSERT_EQ(lower, string_view(s, text.size()));
    }
  }

 private:
  GuardedBuffer source{64 << 10};
  GuardedBuffer target{64 << 10};
};

TEST(Utf8Forms, TextsOfEveryLength) {
  Converter converter;
  withEachForm([&converter](const cc::kernels::Loops&) {
    Random random(21);
    for (const TextKind& kind : textKinds) {
      for (std::size_t n = 0; n <= longest; n += cc::test::stride) {
        SCOPED_TRACE(std::string(kind.name) + ", " + std::to_string(n));
        const std::string text = kind.text(random, n);
        const Units units = reference::toUtf16(text);
        converter.mapCase(text);
        // Room for all, for less and for more.
        for (const std::size_t room :
             {units.size(), units.size() + 50, units.size() / 2, random() % (n + 1)}) {
          converter.decode(text, room);
        }
        const std::size_t size = reference::toUtf8(units).size();
        for (const std::size_t room : {size, size + 50, size / 2, random() % (n + 1)}) {
          converter.encode(units, room);
        }
        if (testing::Test::HasFatalFailure()) return;
      }
    }
  });
}

// Texts longer than the pieces that the loops work in, valid and with a wrong byte here and there.
TEST(Utf8Forms, LongTexts) {
  Converter converter;
  withEachForm([&converter](const cc::kernels::Loops&) {
    Random random(23);
    for (const TextKind& kind : textKinds) {
      SCOPED_TRACE(kind.name);
      for (const std::size_t n :
           std::initializer_list<std::size_t>{4093, 4096, 4097, 4099, 13000}) {
        std::string text = kind.text(random, n);
        converter.decode(text, text.size());
        converter.mapCase(text);
        for (int wrong = 0; wrong < 8; wrong += cc::test::stride) {
          text[random() % n] = static_cast<char>(random());
          converter.decode(text, text.size());
          converter.mapCase(text);
        }
        converter.encode(reference::toUtf16(text), 3 * text.size());
      }
      if (testing::Test::HasFatalFailure()) return;
    }
    // The first piece ends behind what would be a character, were it not for the byte that follows.
    const std::string continued = std::string(4094, 'x') + "\xC3\xA9\x80\xC3\xA9";
    for (const std::string& text : {std::string(10000, '\x80'), continued}) {
      converter.decode(text, 10);
      converter.decode(text, text.size());
      converter.mapCase(text);
    }
  });
}

TEST(Utf8Forms, RandomUnits) {
  Converter converter;
  withEachForm([&converter](const cc::kernels::Loops&) {
    Random random(24);
    for (std::size_t n = 0; n <= longest; ++n) {
      Units units;
      const std::size_t least = random() % 9;
      while (units.size() < n) {
        units.push_back(static_cast<unsigned short>((random() & 0xFFFF) >> (least + random() % 3)));
      }
      const std::string text = reference::toUtf8(units);
      converter.encode(units, text.size());
      converter.decode(text, units.size());
      converter.mapCase(text);
      if (testing::Test::HasFatalFailure()) return;
    }
  });
}

// Every unit and every string of two bytes and of three of each kind, in the middle of a block.
TEST(Utf8Forms, SmallDomainsInsideOfBlocks) {
  Converter converter;
  withEachForm([&converter](const cc::kernels::Loops&) {
    const auto checkInside = [&converter](string_view middle) {
      const std::string around(61, 'x');
      const std::string text = around + std::string(middle) + around;
      converter.mapCase(text);
      converter.decode(text, text.size());
    };
    for (int u = 0; u < 65536; u += cc::test::stride) {
      checkInside(reference::encode(static_cast<unsigned short>(u)));
      const char two[] = {static_cast<char>(u >> 8), static_cast<char>(u)};
      checkInside(string_view(two, 2));
      if (testing::Test::HasFatalFailure()) return;
    }
    const string_view kinds = "\x0A\x61Z\x80\x8A\xA1\xBF\xC0\xC1\xC3\xDF\xE0\xE1\xEF\xF0\xFF";
    const std::size_t count = kinds.size();
    for (std::size_t n = 0; n < count * count * count; n += cc::test::stride) {
      checkInside(
          std::string{kinds[n / count / count], kinds[n / count % count], kinds[n % count]});
      if (testing::Test::HasFatalFailure()) return;
    }
  });
}

// A locale that maps letters of ASCII elsewhere, as the Turkish one does.
TEST(Utf8Forms, TablesThatMapAsciiElsewhere) {
  chr_upper_table_utf16[0x69] = 0x130;
  chr_upper_table_utf16[0x71] = 'Z';
  cc::deriveCaseTables();
  Converter converter;
  Random random(25);
  for (const TextKind& kind : textKinds) converter.mapCase(kind.text(random, 200) + "iqa");
  chr_tables_prepare();
  converter.mapCase("iqa");
}

}  // namespace
