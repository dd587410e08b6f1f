// The stream and path operations of UTF8File, against real faults, and the bytes of each failure.

#include "fileproc.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <functional>

#include "tests/files/messages.h"
#include "tests/support/alloc_sweep.h"
#include "tests/support/temp_folder.h"

namespace {

using cc::test::failure;
using cc::test::fileBytes;
using cc::test::MessageBytes;
using cc::test::putFile;
using cc::test::TempFolder;
using cc::test::thrownBy;

TEST(FileMessages, EachFailureThrowsItsBytesAndOnlyReturnsWithoutExceptions) {
  const TempFolder folder;
  const std::string file = folder / "file";
  const std::string missing = folder / "missing/x";
  const std::string directory = folder / "";
  using Action = std::function<bool(UTF8File&)>;
  struct Row {
    const char* name;
    Action fails;
    std::string message;
  };
  char buffer[16];
  const auto opens = [](const std::string& path, UTF8File::Mode mode) {
    return [path, mode](UTF8File& f) { return f.open(path.c_str(), mode); };
  };
  const auto onFile = [&file](const Action& action) {
    return [&file, action](UTF8File& f) {
      return !f.open(file.c_str(), UTF8File::ModeRead) || action(f);
    };
  };
  const auto onFull = [](const Action& action) {
    return
        [action](UTF8File& f) { return !f.open("/dev/full", UTF8File::ModeUpdate) || action(f); };
  };
  const Action reads = [&](UTF8File& f) { return f.read(buffer, 10); };
  const Action readsLater = [&](UTF8File& f) { return errno = EIO, f.read(buffer, 10); };
  const std::string big(100000, 'x');
  const Action writes = [&](UTF8File& f) { return f.write(big.data(), 100000); };
  const Row rows[] = {
      {"missing, write", opens(missing, UTF8File::ModeWrite), failure(4, missing, ENOENT)},
      {"missing, update", opens(file + "x", UTF8File::ModeUpdate), failure(4, file + "x", ENOENT)},
      {"empty path", opens("", UTF8File::ModeRead), failure(4, "", ENOENT)},
      {"directory, read", opens(directory, UTF8File::ModeRead), failure(4, directory, EISDIR)},
      {"short read", onFile(reads), failure(32, file, -1)},
      {"short read, stale errno", onFile(readsLater), failure(32, file, -1)},
      {"full, write", onFull(writes), failure(35, "/dev/full", ENOSPC)},
      {"full, flush", onFull([&](UTF8File& f) { return f.write("x") && f.flush(); }),
       failure(38, "/dev/full", -1)},
      {"full, close", onFull([&](UTF8File& f) { return f.write("x") && f.close(); }),
       failure(3, "/dev/full", ENOSPC)},
      {"before the start", onFile([](UTF8File& f) { return f.seek(-1, 0); }),
       failure(27, file, EINVAL)},
      {"too large", onFile([](UTF8File& f) { return f.checkSize(3) != -1; }),
       failure(29, file, -1)},
      {"not empty", [&](UTF8File& f) { return f.remove(directory.c_str()); },
       failure(9, directory, ENOTEMPTY)},
  };
  putFile(file, "abcd");
  for (const Row& row : rows) {
    const int descriptors = cc::test::openDescriptors();
    for (const bool throwing : {true, false}) {
      UTF8File f(throwing);
      bool result = false;
      EXPECT_EQ(throwing ? row.message : "(nothing)", thrownBy([&] { result = row.fails(f); }))
          << row.name;
      EXPECT_FALSE(result) << row.name;
    }
    EXPECT_EQ(descriptors, cc::test::openDescriptors()) << row.name;
  }
}

TEST(FileMessages, NamesAndSystemErrors) {
  const TempFolder folder;
  const std::string path = putFile(folder / "file", "");
  UTF8File fresh(true);
  UTF8File named(true);
  named.open(path.c_str(), UTF8File::ModeRead);
  const auto raise = [](UTF8File& file, const char* name, int error) {
    return thrownBy([&] { file.erro(LocDictionaryCommonCore, 26, name, error); });
  };
  const std::string number41 = MessageBytes(26).entry(17).word(41);
  EXPECT_EQ(failure(26, "", -1), raise(fresh, nullptr, -1));
  EXPECT_EQ(failure(26, "", -1), raise(fresh, nullptr, 0));
  EXPECT_EQ(failure(26, path, EIO), raise(named, nullptr, EIO));
  EXPECT_EQ(failure(26, "n", EIO), raise(named, "n", EIO));
  EXPECT_EQ(failure(26, "", EIO), raise(named, "", EIO));
  EXPECT_EQ(number41, raise(fresh, "", 41)) << "a gap among the system's errors";

  TTT custom(LocDictionary1, 7);
  custom << 5;
  EXPECT_EQ("(nothing)", thrownBy([&] { UTF8File(false).erro(custom, "n", EIO); }));
  const std::string thrown = thrownBy([&] { fresh.erro(custom, "n", -1); });
  const std::string own(custom.getBag().getBuffer(), 16);
  EXPECT_EQ(own + MessageBytes(25).text("n").operator std::string(), thrown);
}

TEST(UTF8File, KeepsItsNameThroughItsStates) {
  const TempFolder folder;
  const std::string path = putFile(folder / "a", "abc");
  UTF8File file(false);
  EXPECT_EQ(nullptr, file.getStream());
  EXPECT_EQ(nullptr, file.getName());
  EXPECT_TRUE(file.close());
  EXPECT_TRUE(file.open(path.c_str(), UTF8File::ModeRead));
  EXPECT_TRUE(file.close());
  EXPECT_FALSE(file.open((folder / "none").c_str(), UTF8File::ModeRead));
  EXPECT_STREQ(path.c_str(), file.getName());
  EXPECT_TRUE(file.open(file.getName(), UTF8File::ModeRead)) << "its own name as the path";
}

TEST(UTF8File, ReadsWritesAndMoves) {
  const TempFolder folder;
  const std::string path = folder / "a";
  UTF8File file(true);
  ASSERT_TRUE(file.open(path.c_str(), UTF8File::ModeWrite));
  EXPECT_TRUE(file.write("ab"));
  EXPECT_TRUE(file.write("cXX", 1));
  EXPECT_TRUE(file.write(ChPair("xdex")));
  EXPECT_TRUE(file.write(nullptr, 0));
  EXPECT_TRUE(file.write(ChPair()));
  EXPECT_TRUE(file.write(""));
  EXPECT_EQ(7, file.pos());
  EXPECT_EQ("", fileBytes(path));
  EXPECT_TRUE(file.flush());
  EXPECT_EQ("abcxdex", fileBytes(path));
  EXPECT_TRUE(file.close());

  ASSERT_TRUE(file.open(path.c_str(), UTF8File::ModeUpdate));
  char buffer[8] = {};
  errno = EXDEV;
  EXPECT_TRUE(file.read(buffer, 0));
  EXPECT_TRUE(file.read(buffer, 3));
  EXPECT_EQ(EXDEV, errno) << "a success keeps it";
  EXPECT_STREQ("abc", buffer);
  EXPECT_EQ(7, file.size());
  EXPECT_EQ(3, file.pos()) << "measuring keeps the position";
  EXPECT_EQ(7, file.checkSize(7));
  EXPECT_TRUE(file.seek(1, 1));
  errno = EXDEV;
  EXPECT_TRUE(file.write("DE"));
  EXPECT_EQ(EXDEV, errno);
  EXPECT_TRUE(file.seek(-1, 2));
  EXPECT_TRUE(file.read(buffer, 1));
  EXPECT_EQ('x', buffer[0]);
  EXPECT_TRUE(file.close());
  EXPECT_EQ("abcxDEx", fileBytes(path));
}

TEST(UTF8File, RefusesOffsetsThatTheSystemCannotCarry) {
  const TempFolder folder;
  const std::string path = putFile(folder / "a", "abcd");
  UTF8File file(true);
  file.open(path.c_str(), UTF8File::ModeRead);
  constexpr bool narrow = sizeof(long) < sizeof(long long);
  const long long offset = 1LL << 32;  // 0 when cut to 32 bits
  EXPECT_EQ(narrow ? failure(27, path, EOVERFLOW) : "(nothing)",
            thrownBy([&] { file.seek(offset, 0); }));
  EXPECT_EQ(narrow ? 0 : offset, file.pos());
}

TEST(UTF8File, PathOperationsThatSucceed) {
  const TempFolder folder;
  const std::string dir = folder / "d";
  const std::string a = putFile(folder / "a", "1");
  const std::string b = folder / "b";
  UTF8File file(true);
  EXPECT_FALSE(UTF8File::exist(nullptr));
  EXPECT_FALSE(UTF8File::exist(""));
  EXPECT_FALSE(UTF8File::exist(dir.c_str()));
  EXPECT_TRUE(file.mkdir(dir.c_str()));
  EXPECT_TRUE(file.mkdir(a.c_str())) << "exists, as a file";
  EXPECT_TRUE(UTF8File::exist(dir.c_str()));
  UTF8File::Info info{};
  ASSERT_TRUE(UTF8File::info(dir.c_str(), info));
  EXPECT_TRUE(S_ISDIR(info.st_mode));
  EXPECT_EQ(0U, info.st_mode & ~0755U & 07777U);
  ASSERT_TRUE(UTF8File::info(a.c_str(), info));
  EXPECT_EQ(1, info.st_size);
  EXPECT_FALSE(UTF8File::info(b.c_str(), info));
  EXPECT_FALSE(UTF8File::info(nullptr, info));

  EXPECT_TRUE(file.rename(a.c_str(), b.c_str()));
  EXPECT_EQ("1", fileBytes(b));
  EXPECT_FALSE(file.rename(a.c_str(), b.c_str())) << "a failure is not thrown";
  for (int i = 0; i < 2; ++i) {  // missing the second time
    EXPECT_TRUE(file.remove(b.c_str()));
    EXPECT_TRUE(file.rmdir(dir.c_str()));
  }
  EXPECT_TRUE(file.mkdir(dir.c_str()));
  EXPECT_TRUE(file.remove(dir.c_str())) << "an empty directory";
  EXPECT_EQ(0, folder.count());
}

TEST(UTF8File, FailedAllocationLeavesItClosedOrOpen) {
  const TempFolder folder;
  const std::string path = folder / "a";
  const int descriptors = cc::test::openDescriptors();
  cc::test::sweepAllocations([&](cc::test::AllocSweep& sweep) {
    UTF8File file(true);
    putFile(path, "old");
    const bool opened = sweep.attempt([&] { file.open(path.c_str(), UTF8File::ModeWrite); });
    EXPECT_EQ(opened, file.getStream() != nullptr);
    EXPECT_EQ(opened ? "" : "old", fileBytes(path)) << "emptied, but not opened";
    EXPECT_EQ(opened, file.getName() != nullptr);
  });
  EXPECT_EQ(descriptors, cc::test::openDescriptors());
}

}  // namespace
