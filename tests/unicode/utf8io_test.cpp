// Console output and the command line, on streams in memory.

#include "utf8io.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/alloc_sweep.h"
#include "tests/support/guarded_buffer.h"

namespace {

using namespace std::string_view_literals;

// What `print` writes to a stream.
template <class Print>
std::string printed(Print print) {
  char* text = nullptr;
  std::size_t n = 0;
  FILE* stream = open_memstream(&text, &n);
  print(stream);
  std::fclose(stream);
  std::string result(text, n);
  std::free(text);
  return result;
}

TEST(Console, PlainTextAndSlices) {
  const char plain[] = "100 %d \xC3\xA9\n";
  EXPECT_EQ(plain, printed([&](FILE* stream) { utf8printf_s(stream, plain); }));
  EXPECT_EQ("", printed([](FILE* stream) { utf8printf_s(stream, nullptr); }));
  const auto print = [](std::string_view slice) {
    const cc::test::GuardedBuffer memory(slice);
    return printed([&](FILE* stream) { utf8printf_s(stream, memory.begin(), memory.end()); });
  };
  EXPECT_EQ("", print(""));
  EXPECT_EQ("abc", print("abc"));
  EXPECT_EQ("a", print("a\0b"sv));
  EXPECT_EQ("", print("\0b"sv));
  const char text[] = "x";
  EXPECT_EQ("", printed([&](FILE* s) { utf8printf_s(s, nullptr, text); }));
  EXPECT_EQ("", printed([&](FILE* s) { utf8printf_s(s, text + 1, text); }));
}

TEST(Console, Formats) {
  EXPECT_EQ("7 x", printed([](FILE* s) { utf8printf(s, "%d %s", 7, "x"); }));
  const std::string wide(40000, 'w');
  EXPECT_EQ(wide.substr(0, 32767), printed([&](FILE* s) { utf8printf(s, "%s", wide.c_str()); }));
  EXPECT_EQ(wide.substr(0, 32767),
            printed([&](FILE* s) { utf8printf(s, "%s", wide.c_str() + 40000 - 32767); }));
  // A short text after a long one; nothing is allocated any more.
  EXPECT_EQ("", printed([](FILE* s) { utf8printf(s, "%s", ""); }));
  EXPECT_EQ("x", printed([](FILE* s) {
              const cc::test::AllocCount count;
              utf8printf(s, "%s", "x");
              EXPECT_EQ(0U, count.blocks());
            }));
}

TEST(Console, StandardOutput) {
  testing::internal::CaptureStdout();
  utf8printf("%s-%d", "out", 5);
  EXPECT_EQ("out-5", testing::internal::GetCapturedStdout());
}

TEST(Console, Arguments) {
  char program[] = "prog";
  char word[] = "\xC3\xA9";
  char empty[] = "";
  char* argv[] = {program, word, empty, nullptr};
  StringVector<char> args;
  for (const int argc : {3, 0, 99}) {  // what it says does not matter
    EXPECT_EQ(args.getData() == nullptr, argc == 3);
    char** array = utf8args(argc, argv, args);
    EXPECT_EQ(args.getData(), array);
    ASSERT_EQ(3, args.getCount());
    EXPECT_STREQ("prog", array[0]);
    EXPECT_NE(program, array[0]);
    EXPECT_STREQ("\xC3\xA9", array[1]);
    EXPECT_STREQ("", array[2]);
  }
  EXPECT_EQ(nullptr, utf8args(1, argv + 3, args));
  EXPECT_EQ(0, args.getCount());
}

TEST(Console, ArgumentsWithoutMemory) {
  char one[] = "one";
  char two[] = "two";
  char* argv[] = {one, two, nullptr};
  cc::test::sweepAllocations([&](cc::test::AllocSweep& sweep) {
    StringVector<char> args;
    const bool done = sweep.attempt([&] { utf8args(2, argv, args); });
    EXPECT_EQ(done, args.getCount() == 2);
    for (int i = 0; i < args.getCount(); ++i) EXPECT_STREQ(argv[i], args[i]);
  });
}

}  // namespace
