// Whole-file load and save into every kind of target, the record stream, and what each failure
// leaves of the target.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>

#include "fileproc.h"
#include "tests/files/messages.h"
#include "tests/support/alloc_sweep.h"
#include "tests/support/temp_folder.h"

namespace {

using cc::test::dataOf;
using cc::test::failure;
using cc::test::fileBytes;
using cc::test::putFile;
using cc::test::TempFolder;
using cc::test::thrownBy;

using namespace std::string_literals;

TEST(Load, FillsEveryTarget) {
  const TempFolder folder;
  const std::string contents[] = {"", "a\0b\r\n"s, std::string(200000, 'y'),
                                  std::string(5 << 20, 'z')};
  for (const std::string& content : contents) {
    const std::string path = putFile(folder / "a", content);
    const auto size = static_cast<unsigned int>(content.size());
    for (const bool terminated : {false, true}) {
      SCOPED_TRACE(testing::Message() << size << " bytes, terminated " << terminated);
      const std::string stored = terminated ? content + '\0' : content;
      ArrayHolder<char> holder(new char[3]);
      ChArr text("old");
      EXPECT_EQ(size, UTF8File::load(path.c_str(), holder, size, terminated));
      EXPECT_EQ(size, UTF8File::load(path.c_str(), text, UINT_MAX, terminated));
      for (const char* const loaded :
           std::initializer_list<const char*>{holder.get(), text.get()}) {
        EXPECT_EQ(stored, loaded ? std::string(loaded, stored.size()) : "");
        EXPECT_EQ(stored.empty(), !loaded);
      }
      Bag bag("old", 3);
      bag.setPosition(2);
      EXPECT_EQ(size, UTF8File::load(path.c_str(), bag, size, terminated));
      EXPECT_EQ(content, dataOf(bag));
      EXPECT_EQ(static_cast<int>(size), bag.getCapacity());
      EXPECT_EQ(0, bag.getPosition());
      if (terminated) {
        EXPECT_EQ(0, bag.getBuffer()[size]);
      }
    }
    std::string string = "old";
    EXPECT_EQ(size, UTF8File::load(path.c_str(), string, size));
    EXPECT_EQ(content, string);
  }
}

TEST(Load, TakesItsPathFromTheTarget) {
  const TempFolder folder;
  std::string string = putFile(folder / "a", "abc");
  ChArr text(string.c_str());
  UTF8File::load(text.get(), text, 100, true);
  EXPECT_STREQ("abc", text.get());
  ArrayHolder<char> holder(new char[string.size() + 1]);
  std::strcpy(holder.get(), string.c_str());
  UTF8File::load(holder.get(), holder, 100, true);
  EXPECT_STREQ("abc", holder.get());
  UTF8File::load(string.c_str(), string, 100);
  EXPECT_EQ("abc", string);
}

TEST(Load, FailuresAndWhatTheyLeave) {
  const TempFolder folder;
  const std::string five = putFile(folder / "five", "12345");
  const std::string missing = folder / "missing";
  const std::string huge = putFile(folder / "huge", "");
  ASSERT_EQ(0, ::truncate(huge.c_str(), INT_MAX));
  struct Row {
    std::string path;
    unsigned int most;
    std::string message;
  };
  const Row rows[] = {
      {missing, 10, failure(4, missing, ENOENT)},
      {folder / "", 10, failure(4, folder / "", EISDIR)},
      {five, 4, failure(29, five, -1)},
      {huge, INT_MAX - 1, failure(29, huge, -1)},
  };
  for (const Row& row : rows) {
    const char* const path = row.path.c_str();
    ArrayHolder<char> holder(new char[3]);
    EXPECT_EQ(row.message, thrownBy([&] { UTF8File::load(path, holder, row.most, true); }));
    EXPECT_EQ(nullptr, holder.get());
    std::string string = "old";
    EXPECT_EQ(row.message, thrownBy([&] { UTF8File::load(path, string, row.most); }));
    EXPECT_EQ("", string);
    ChArr text("old");
    EXPECT_EQ(row.message, thrownBy([&] { UTF8File::load(path, text, row.most, true); }));
    EXPECT_STREQ("old", text.get());
    Bag bag("old", 3);
    EXPECT_EQ(row.message, thrownBy([&] { UTF8File::load(path, bag, row.most, false); }));
    EXPECT_EQ("old", dataOf(bag));
  }
  std::string string;
  EXPECT_EQ(failure(4, "", EFAULT), thrownBy([&] { UTF8File::load(nullptr, string, 10); }));
}

TEST(Load, FileAboveTheLargestIntDoesNotFitABag) {
  if (sizeof(long) == 4) GTEST_SKIP() << "32-bit calls cannot open such a file";
  const TempFolder folder;
  const std::string path = putFile(folder / "huge", "");
  ASSERT_EQ(0, ::truncate(path.c_str(), (off_t{1} << 31)));
  Bag bag("old", 3);
  EXPECT_EQ(failure(23, path, -1),
            thrownBy([&] { UTF8File::load(path.c_str(), bag, UINT_MAX, false); }));
  EXPECT_EQ("old", dataOf(bag));
  EXPECT_EQ(failure(29, path, -1),
            thrownBy([&] { UTF8File::load(path.c_str(), bag, INT_MAX, false); }));
}

TEST(Load, FailedAllocationIsMessage23) {
  const TempFolder folder;
  const std::string path = putFile(folder / "a", std::string(1000, 'x'));
  const std::string noMemory = failure(23, path, -1);
  const int descriptors = cc::test::openDescriptors();
  int reported = 0;
  cc::test::sweepAllocations([&](cc::test::AllocSweep& sweep) {
    ArrayHolder<char> holder;
    std::string string;
    ChArr text("old");
    Bag bag("old", 3);
    TTT message;
    const auto fails = [&](auto&& load) {
      return !sweep.attempt([&] {
        try {
          load();
        } catch (TTT& thrown) {
          message = std::move(thrown);
          throw std::bad_alloc();
        }
      });
    };
    const bool bagFailed = fails([&] { UTF8File::load(path.c_str(), bag, 1000, true); });
    EXPECT_EQ(bagFailed ? "old" : std::string(1000, 'x'), dataOf(bag));
    const bool textFailed = fails([&] { UTF8File::load(path.c_str(), text, 1000, true); });
    EXPECT_EQ(textFailed ? "old" : std::string(1000, 'x'), text.get());
    fails([&] { UTF8File::load(path.c_str(), holder, 1000, false); });
    fails([&] { UTF8File::load(path.c_str(), string, 1000); });
    if (message.getBag().getSize() != 0) {
      EXPECT_EQ(noMemory, dataOf(message.getBag()));
      ++reported;
    }
  });
  EXPECT_GE(reported, 4) << "once for each target";
  EXPECT_EQ(descriptors, cc::test::openDescriptors());
}

TEST(Save, WritesInPlace) {
  const TempFolder folder;
  const std::string path = folder / "a";
  UTF8File::save(path.c_str(), "abc\0d", 5);
  EXPECT_EQ("abc\0d"s, fileBytes(path));
  Bag bag("12345", 5);
  bag.setPosition(3);
  UTF8File::save(path.c_str(), bag);
  EXPECT_EQ("12345", fileBytes(path));
  EXPECT_EQ(3, bag.getPosition());
  UTF8File::save(path.c_str(), "xy\0z"s);
  EXPECT_EQ("xy\0z"s, fileBytes(path));
  UTF8File::save(path.c_str(), nullptr, 0);
  EXPECT_EQ("", fileBytes(path));
}

TEST(Records, BytesOnTheStream) {
  const TempFolder folder;
  const std::string path = folder / "a";
  UTF8File file(true);
  file.open(path.c_str(), UTF8File::ModeWrite);
  Bag abc("abc", 3);
  abc.setPosition(1);
  Bag empty;
  EXPECT_TRUE(file.push(abc));
  EXPECT_TRUE(file.push(empty));
  EXPECT_TRUE(file.push(abc));
  EXPECT_EQ(1, abc.getPosition());
  file.close();
  EXPECT_EQ("\3\0\0\0abc\0\0\0\0\3\0\0\0abc"s, fileBytes(path));

  file.open(path.c_str(), UTF8File::ModeRead);
  Bag bag("old", 3);
  EXPECT_TRUE(file.pop(bag));
  EXPECT_EQ("abc", dataOf(bag));
  EXPECT_EQ(3, bag.getCapacity());
  EXPECT_EQ(0, bag.getPosition());
  EXPECT_TRUE(file.pop(bag));
  EXPECT_EQ(nullptr, bag.getBuffer());
  EXPECT_TRUE(file.pop(bag));
  EXPECT_EQ("abc", dataOf(bag));
  EXPECT_EQ(failure(32, path, -1), thrownBy([&] { file.pop(bag); }));
  EXPECT_EQ("abc", dataOf(bag));
}

TEST(Records, CutOnesLeaveTheBag) {
  const TempFolder folder;
  const std::string path = folder / "a";
  const std::pair<std::string, int> rows[] = {
      {"", 32}, {"\3\0\0"s, 32}, {"\3\0\0\0ab"s, 32}, {"\0\0\0\x80"s, 23},  // above the largest int
  };
  for (const auto& [bytes, message] : rows) {
    putFile(path, bytes);
    for (const bool throwing : {false, true}) {
      UTF8File file(throwing);
      file.open(path.c_str(), UTF8File::ModeRead);
      Bag bag("old", 3);
      bool result = false;
      const std::string thrown = thrownBy([&] { result = file.pop(bag); });
      EXPECT_EQ(throwing ? failure(message, path, -1) : "(nothing)", thrown);
      EXPECT_FALSE(result);
      EXPECT_EQ("old", dataOf(bag));
    }
  }
}

TEST(Records, FailedAllocationLeavesTheBag) {
  const TempFolder folder;
  const std::string path = folder / "a";
  cc::test::sweepAllocations([&](cc::test::AllocSweep& sweep) {
    putFile(path, "\3\0\0\0abc"s);
    UTF8File file(false);
    file.open(path.c_str(), UTF8File::ModeUpdate);
    Bag bag("old", 3);
    bool popped = false;
    EXPECT_TRUE(sweep.attempt([&] { popped = file.pop(bag); })) << "reported, not thrown";
    EXPECT_EQ(!sweep.hasFailed(), popped);
    EXPECT_EQ(popped ? "abc" : "old", dataOf(bag));
    file.seek(0, 0);
    EXPECT_TRUE(sweep.attempt([&] { popped = file.push(bag); })) << "nothing to allocate";
    EXPECT_TRUE(popped);
    EXPECT_EQ(3, bag.getSize());
  });
}

}  // namespace
