// UTF8File::readLine: tables of pieces and line ends, and a model that reads byte by byte.

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "fileproc.h"
#include "tests/support/temp_folder.h"

namespace {

using cc::test::putFile;
using cc::test::TempFolder;

using Lines = std::vector<std::string>;

/// All lines of the file up to the one that came with the end-of-file flag. Zero bytes in a line
/// hide its length: the text is taken up to where the expected line would end, if it ends there.
Lines linesOf(UTF8File& file, int size, const Lines& expected) {
  Lines lines;
  bool eof = false;
  const auto room = static_cast<std::size_t>(size);
  while (!eof && lines.size() <= expected.size()) {
    std::string buffer(room + 8, '\x7F');
    EXPECT_TRUE(file.readLine(buffer.data(), size, &eof));
    EXPECT_EQ(std::string(8, '\x7F'), buffer.substr(room)) << "written behind the buffer";
    const std::size_t i = lines.size();
    const std::size_t end = i < expected.size() ? expected[i].size() : 0;
    lines.push_back(buffer[end] == 0 ? buffer.substr(0, end) : buffer.substr(0, room));
  }
  return lines;
}

/// The same by the plainest means.
Lines model(const std::string& bytes, std::size_t size) {
  Lines lines(1);
  std::string kept;
  for (const char c : bytes) {
    if (c != '\r') kept += c;
  }
  for (std::size_t i = 0; i < kept.size(); ++i) {
    if (kept[i] == '\n') {
      lines.emplace_back();
    } else {
      if (lines.back().size() == size - 1) lines.emplace_back();
      lines.back() += kept[i];
    }
  }
  return lines;
}

TEST(ReadLine, Table) {
  using namespace std::string_literals;
  struct Row {
    std::string bytes;
    int size;
    Lines lines;
  };
  const Row rows[] = {
      {"ab\r\ncd", 100, {"ab", "cd"}},
      {"", 100, {""}},
      {"a\rb\r\rc\r", 100, {"abc"}},
      {"a\0b\n\0"s, 100, {"a\0b"s, "\0"s}},
      // pieces; the last takes the line end with it
      {"abcdef\ngh", 4, {"abc", "def", "gh"}},
      {"abc\r\r\nd", 4, {"abc", "d"}},
      {"ab\rc\n", 4, {"abc", ""}},
      {"ab\nc\r\n", 2, {"a", "b", "c", ""}},
  };
  const TempFolder folder;
  for (const Row& row : rows) {
    UTF8File file(true);
    file.open(putFile(folder / "a", row.bytes).c_str(), UTF8File::ModeRead);
    EXPECT_EQ(row.lines, linesOf(file, row.size, row.lines)) << testing::PrintToString(row.bytes);
    EXPECT_EQ(row.lines, model(row.bytes, static_cast<std::size_t>(row.size)))
        << "the model, " << testing::PrintToString(row.bytes);
  }
}

TEST(ReadLine, LikeTheModelOnRandomBytes) {
  const TempFolder folder;
  std::mt19937 random(20240611);
  const char alphabet[] = {'a', 'b', '\n', '\r', '\0', '\xFF'};
  for (int round = 0; round < 300; ++round) {
    std::string bytes(random() % (round % 10 == 0 ? 20000 : 200), 'x');
    const auto plain = random() % 300;
    for (char& c : bytes) {
      if (random() % 300 >= plain) c = alphabet[random() % sizeof(alphabet)];
    }
    const int size = static_cast<int>(2 + random() % (round % 3 == 0 ? 9000 : 12));
    UTF8File file(true);
    file.open(putFile(folder / "a", bytes).c_str(), UTF8File::ModeRead);
    const Lines expected = model(bytes, static_cast<std::size_t>(size));
    ASSERT_EQ(expected, linesOf(file, size, expected)) << "round " << round;
  }
}

TEST(ReadLine, GoesOnWhereOtherReadsStopped) {
  const TempFolder folder;
  const std::string path = putFile(folder / "a", "1234ab\ncd\nef");
  UTF8File file(true);
  file.open(path.c_str(), UTF8File::ModeUpdate);
  char buffer[100];
  bool eof = false;
  EXPECT_TRUE(file.read(buffer, 4));
  EXPECT_TRUE(file.readLine(buffer, 100, &eof));
  EXPECT_STREQ("ab", buffer);
  EXPECT_EQ(7, file.pos());
  EXPECT_TRUE(file.read(buffer, 3));
  EXPECT_TRUE(file.readLine(buffer, 100, nullptr)) << "the flag is optional";
  EXPECT_STREQ("ef", buffer);
  EXPECT_FALSE(eof);
  // The end is no obstacle: what is written there can be read.
  EXPECT_TRUE(file.seek(0, 2));
  EXPECT_TRUE(file.write("\ngh"));
  EXPECT_TRUE(file.seek(12, 0));
  EXPECT_TRUE(file.readLine(buffer, 100, nullptr));
  EXPECT_TRUE(file.readLine(buffer, 100, nullptr));
  EXPECT_STREQ("gh", buffer);
}

TEST(ReadLine, FollowsAFileThatGrows) {
  const TempFolder folder;
  const std::string path = putFile(folder / "a", "one");
  UTF8File file(true);
  file.open(path.c_str(), UTF8File::ModeRead);
  char buffer[100];
  bool eof = false;
  EXPECT_TRUE(file.readLine(buffer, 4, &eof));
  EXPECT_TRUE(eof) << "the last line fills the buffer exactly";
  putFile(path, "onetwo\n");
  eof = false;
  EXPECT_TRUE(file.readLine(buffer, 100, &eof));
  EXPECT_STREQ("two", buffer);
  EXPECT_FALSE(eof);
}

}  // namespace
