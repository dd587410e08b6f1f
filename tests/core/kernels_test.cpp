// The hot loops, every form of them, against the slow models: at every length up to 300, at every
// alignment, at the edge of unreadable pages.

#include "core/kernels.h"

#include <gtest/gtest.h>

#include <cctype>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>

#include "charproc.h"
#include "tests/reference/text_model.h"
#include "tests/support/guarded_buffer.h"
#include "tests/support/kernel_forms.h"
#include "utf8proc.h"

namespace {

using namespace cc::kernels;
using namespace cc::test;
using reference::at;
using reference::sizeOf;
using std::string_view;

constexpr std::size_t longest = 300;

// Calls `check` with texts of every kind and length, in guarded memory.
template <class Check>
void withTexts(std::size_t alignments, Check check) {
  const GuardedBuffer memory(1024);
  Random random(1);
  for (const TextKind& kind : textKinds) {
    for (std::size_t n = 0; n <= longest; ++n) {
      const std::string text = kind.text(random, n);
      SCOPED_TRACE(std::string(kind.name) + ", " + std::to_string(n));
      atEachEdge(memory, text, alignments, check);
      if (testing::Test::HasFatalFailure()) return;
    }
  }
}

TEST(Kernels, ThePortableFormComesFirst) {
  const auto forms = supportedLoops();
  ASSERT_FALSE(forms.empty());
  EXPECT_EQ(&plainLoops, forms.front());
  EXPECT_EQ(loops, forms.back());
}

TEST(Kernels, TextsOfEveryLength) {
  withEachForm([](const Loops& form) {
    withTexts(64, [&form](char* s, std::size_t n) {
      const std::string text(s, n);
      ASSERT_EQ(reference::check(text), at(s, strchk_utf8(s, sizeOf(text))));
      ASSERT_EQ(reference::countCharacters(text), strlen_utf8(s, s + n));
      std::string upper = text;
      std::string lower = text;
      for (char& c : upper) c = static_cast<char>(c >= 'a' && c <= 'z' ? c - 0x20 : c);
      for (char& c : lower) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c + 0x20 : c);
      form.upperAscii(s, s + n);
      ASSERT_EQ(upper, string_view(s, n));
      form.lowerAscii(s, s + n);
      ASSERT_EQ(lower, string_view(s, n));
    });
  });
}

// Valid texts with one wrong byte in every place.
TEST(Kernels, CheckFindsTheFirstWrongByte) {
  withEachForm([](const Loops&) {
    const GuardedBuffer memory(longest);
    Random random(2);
    for (const TextKind& kind : textKinds) {
      for (const std::size_t n : std::initializer_list<std::size_t>{7, 33, 64, 100, 259}) {
        const std::string text = kind.text(random, n);
        for (std::size_t i = 0; i < n; ++i) {
          std::string wrong = text;
          wrong[i] = "\x80\xBF\xC3\xE2\xF0\xFFz"[random() % 7];
          const char* s = memory.atEnd(wrong);
          ASSERT_EQ(reference::check(wrong), at(s, strchk_utf8(s, sizeOf(wrong))))
              << kind.name << i;
        }
      }
    }
  });
}

TEST(Kernels, CountingLongTexts) {
  withEachForm([](const Loops& form) {
    const std::string text(100000, '\x80');
    EXPECT_EQ(0U, form.countCharacters(text.data(), text.data() + text.size())) << form.name;
    const std::vector<unsigned short> units(100000, 'a');
    EXPECT_EQ(100000U, form.encodedSize(units.data(), units.data() + units.size()));
  });
}

TEST(Kernels, EncodedSize) {
  withEachForm([](const Loops& form) {
    const GuardedBuffer memory(2 * longest);
    Random random(3);
    for (std::size_t n = 0; n <= longest; ++n) {
      reference::Units units;
      std::size_t expected = 0;
      for (std::size_t i = 0; i < n; ++i) {
        units.push_back(static_cast<unsigned short>(random() >> random() % 16));
        expected += reference::encode(units.back()).size();
      }
      const unsigned short* s = memory.atEnd(units.data(), n);
      ASSERT_EQ(expected, form.encodedSize(s, s + n)) << n;
    }
    for (unsigned int u = 0; u < 65536; ++u) {
      const reference::Units same(40, static_cast<unsigned short>(u));
      ASSERT_EQ(40 * reference::encode(same[0]).size(),
                form.encodedSize(same.data(), same.data() + same.size()));
    }
  });
}

TEST(Kernels, MatchWithoutCase) {
  withEachForm([](const Loops& form) {
    const GuardedBuffer left(longest);
    const GuardedBuffer right(longest);
    Random random(4);
    for (std::size_t n = 0; n <= longest; ++n) {
      std::string a;
      std::string b;
      for (std::size_t i = 0; i < n; ++i) {
        const char c = "abzAYZ[{@`\x80\xFF"[random() % 12];
        const bool letter = (c | 0x20) >= 'a' && (c | 0x20) <= 'z';
        a += c;
        b += static_cast<char>(letter && random() % 2 == 0 ? c ^ 0x20 : c);
      }
      const char* p = left.atEnd(a);
      ASSERT_EQ(n, form.matchNoCase(p, right.atEnd(b), n));
      for (std::size_t i = 0; i < n; ++i) {
        std::string other = b;
        other[i] = static_cast<char>(random());
        std::size_t expected = 0;
        while (expected < n && reference::sameNoCase(a[expected], other[expected])) ++expected;
        const char* q = right.atEnd(other);
        ASSERT_EQ(expected, form.matchNoCase(p, q, n)) << n << ' ' << i;
        for (const auto& [na, nb] : {std::pair(n, n), std::pair(n, i), std::pair(i, n)}) {
          const int order = reference::compareNoCase(string_view(p, na), string_view(q, nb));
          ASSERT_EQ(order, form.compareNoCase(p, na, q, nb)) << na << ' ' << nb;
        }
      }
    }
  });
}

struct Finder {
  const char* name;
  std::function<const char*(const char*, const char*)> find;
  std::function<bool(unsigned char)> finds;
};

bool isNameByte(unsigned char c) {
  return c < 0x80 && (std::isalnum(c) != 0 || (c != 0 && strchr("._-:", c) != nullptr));
}

const Finder finders[] = {
    {"byte", [](const char* p, const char* e) { return findByte(p, e, '<'); },
     [](unsigned char c) { return c == '<'; }},
    {"high byte", [](const char* p, const char* e) { return findByte(p, e, '\xC3'); },
     [](unsigned char c) { return c == 0xC3; }},
    {"either", [](const char* p, const char* e) { return findEither(p, e, '"', '>'); },
     [](unsigned char c) { return c == '"' || c == '>'; }},
    {"control", findControl, [](unsigned char c) { return c < 0x20; }},
    {"escapable", findEscapable,
     [](unsigned char c) { return c != 0 && strchr("\"'&<>", c) != nullptr; }},
    {"non-space", findNonSpace,
     [](unsigned char c) { return c == 0 || strchr(" \t\r\n", c) == nullptr; }},
    {"name end", findNameEnd, [](unsigned char c) { return !isNameByte(c); }},
};

// Every byte in every place of ranges of every short length, among bytes that are not found, with
// and without others behind it that are.
TEST(Kernels, ShortRanges) {
  const GuardedBuffer memory(256);
  for (const Finder& finder : finders) {
    SCOPED_TRACE(finder.name);
    unsigned char other = 0;
    unsigned char wanted = 0;
    while (finder.finds(other)) ++other;
    while (!finder.finds(wanted)) ++wanted;
    for (std::size_t n = 0; n <= 130; n += n < 40 ? 1 : 9) {
      for (const unsigned char behind : {other, wanted}) {
        char* s = memory.atEnd(std::string(n, static_cast<char>(other)));
        ASSERT_EQ(n, at(s, finder.find(s, s + n)));
        for (std::size_t i = n; i-- > 0;) {
          const std::size_t next = behind == other ? n : i + 1;
          for (unsigned int c = 0; c < 256; c += stride) {
            s[i] = static_cast<char>(c);
            const std::size_t expected = finder.finds(static_cast<unsigned char>(c)) ? i : next;
            ASSERT_EQ(expected, at(s, finder.find(s, s + n))) << n << ' ' << i << ' ' << c;
          }
          s[i] = static_cast<char>(behind);
        }
      }
    }
  }
}

}  // namespace
