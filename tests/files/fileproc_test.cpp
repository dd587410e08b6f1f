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

TEST(FileMessages, ExampleByteForByte) {
  // Opening 'ab' fails with error 2; the same 66 bytes on 32 and 64 bits.
  const unsigned char expected[] = {
      0xFE, 0xFF, 0xFF, 0xFF, 3,   0,   0,   0,   4,   0,   0,   0,  // -2, 3, 4
      0xFE, 0xFF, 0xFF, 0xFF, 3,   0,   0,   0,   25,  0,   0,   0,  // -2, 3, 25
      0x61, 0x62, 0x00, 0x00,                                        // "ab", fill
      0xFE, 0xFF, 0xFF, 0xFF, 3,   0,   0,   0,   28,  0,   0,   0,  // -2, 3, 28
      'N',  'o',  ' ',  's',  'u', 'c', 'h', ' ', 'f', 'i', 'l', 'e', ' ',
      'o',  'r',  ' ',  'd',  'i', 'r', 'e', 'c', 't', 'o', 'r', 'y', 0};
  const TempFolder folder;
  ASSERT_EQ(0, ::chdir((folder / "").c_str()));
  const std::string thrown = thrownBy([] { UTF8File(true).open("ab", UTF8File::ModeRead); });
  ASSERT_EQ(0, ::chdir("/"));
  EXPECT_EQ(66U, thrown.size());
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(expected), sizeof(expected)), thrown);
}

TEST(FileMessages, EachFailureThrowsItsBytesAndOnlyReturnsWithoutExceptions) {
  const TempFolder folder;
  const std::string file = putFile(folder / "file", "abcd");
  const std::string missing = folder / "missing/x";
  const std::string directory = folder / "dir";
  putFile(folder / "dir2", "");
  ASSERT_TRUE(UTF8File(false).mkdir(directory.c_str()));
  putFile(folder / "dir/inside", "");
  struct Row {
    const char* name;
    std::function<bool(UTF8File&)> fails;
    std::string message;
  };
  char buffer[16];
  const auto opens = [](const std::string& path, UTF8File::Mode mode) {
    return [path, mode](UTF8File& f) { return f.open(path.c_str(), mode); };
  };
  const auto onFile = [&](UTF8File::Mode mode, const std::function<bool(UTF8File&)>& action) {
    return [&file, mode, action](UTF8File& f) { return !f.open(file.c_str(), mode) || action(f); };
  };
  const auto onFull = [](const std::function<bool(UTF8File&)>& action) {
    return
        [action](UTF8File& f) { return !f.open("/dev/full", UTF8File::ModeUpdate) || action(f); };
  };
  const std::string big(100000, 'x');
  const Row rows[] = {
      // opening
      {"missing, read", opens(missing, UTF8File::ModeRead), failure(4, missing, ENOENT)},
      {"missing, write", opens(missing, UTF8File::ModeWrite), failure(4, missing, ENOENT)},
      {"missing, update", opens(folder / "no", UTF8File::ModeUpdate),
       failure(4, folder / "no", ENOENT)},
      {"empty path", opens("", UTF8File::ModeRead), failure(4, "", ENOENT)},
      {"directory, read", opens(directory, UTF8File::ModeRead), failure(4, directory, EISDIR)},
      {"directory, write", opens(directory, UTF8File::ModeWrite), failure(4, directory, EISDIR)},
      {"directory, update", opens(directory, UTF8File::ModeUpdate), failure(4, directory, EISDIR)},
      // reading and writing
      {"short read", onFile(UTF8File::ModeRead, [&](UTF8File& f) { return f.read(buffer, 10); }),
       failure(32, file, -1)},
      {"short read, stale errno",
       onFile(UTF8File::ModeRead,
              [&](UTF8File& f) {
                errno = EIO;
                return f.read(buffer, 10);
              }),
       failure(32, file, -1)},
      {"write to a full device",
       onFull([&](UTF8File& f) { return f.write(big.data(), static_cast<int>(big.size())); }),
       failure(35, "/dev/full", ENOSPC)},
      {"flush to a full device", onFull([&](UTF8File& f) { return f.write("x") && f.flush(); }),
       failure(38, "/dev/full", -1)},
      {"close of a full device", onFull([&](UTF8File& f) { return f.write("x") && f.close(); }),
       failure(3, "/dev/full", ENOSPC)},
      // positions and sizes
      {"seek before the start",
       onFile(UTF8File::ModeRead, [](UTF8File& f) { return f.seek(-1, 0); }),
       failure(27, file, EINVAL)},
      {"too large",
       [&](UTF8File& f) {
         putFile(file, std::string(101, 'x'));
         return !f.open(file.c_str(), UTF8File::ModeRead) || f.checkSize(100) != -1;
       },
       failure(29, file, -1)},
      // directories and paths
      {"mkdir", [&](UTF8File& f) { return f.mkdir(missing.c_str()); }, failure(8, missing, ENOENT)},
      {"rmdir, not empty", [&](UTF8File& f) { return f.rmdir(directory.c_str()); },
       failure(10, directory, ENOTEMPTY)},
      {"remove, not empty", [&](UTF8File& f) { return f.remove(directory.c_str()); },
       failure(9, directory, ENOTEMPTY)},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    putFile(file, "abcd");
    const int descriptors = cc::test::openDescriptors();
    {
      UTF8File loud(true);
      EXPECT_EQ(row.message, thrownBy([&] { row.fails(loud); }));
    }
    putFile(file, "abcd");
    {
      UTF8File quiet(false);
      EXPECT_FALSE(row.fails(quiet));
    }
    EXPECT_EQ(descriptors, cc::test::openDescriptors());
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
  const std::string number9999 = MessageBytes(26).entry(17).word(9999);
  EXPECT_EQ(failure(26, "", -1), raise(fresh, nullptr, -1));
  EXPECT_EQ(failure(26, "", -1), raise(fresh, nullptr, 0));
  EXPECT_EQ(failure(26, "n", ENOSPC), raise(fresh, "n", ENOSPC));
  EXPECT_EQ(failure(26, path, EIO), raise(named, nullptr, EIO));
  EXPECT_EQ(failure(26, "n", EIO), raise(named, "n", EIO));
  EXPECT_EQ(failure(26, "", EIO), raise(named, "", EIO));
  EXPECT_EQ(failure(26, path, EIO), raise(named, named.getName(), EIO));
  EXPECT_EQ(number41, raise(fresh, "", 41)) << "a gap among the system's errors";
  EXPECT_EQ(number9999, raise(fresh, "", 9999));

  TTT custom(LocDictionary1, 7);
  custom << 5;
  EXPECT_EQ("(nothing)", thrownBy([&] { UTF8File(false).erro(custom, "n", EIO); }));
  const std::string thrown = thrownBy([&] { fresh.erro(custom, "n", -1); });
  const std::string own(custom.getBag().getBuffer(), 16);
  EXPECT_EQ(own + MessageBytes(25).text("n").operator std::string(), thrown);
}

TEST(UTF8File, KeepsItsNameAndStreamThroughItsStates) {
  const TempFolder folder;
  const std::string path = putFile(folder / "a", "abc");
  UTF8File file(false);
  EXPECT_EQ(nullptr, file.getStream());
  EXPECT_EQ(nullptr, file.getName());
  EXPECT_TRUE(file.close());
  EXPECT_FALSE(file.open((folder / "none").c_str(), UTF8File::ModeRead));
  EXPECT_EQ(nullptr, file.getName());
  EXPECT_TRUE(file.open(path.c_str(), UTF8File::ModeRead));
  EXPECT_STREQ(path.c_str(), file.getName());
  EXPECT_NE(nullptr, file.getStream());
  EXPECT_TRUE(file.close());
  EXPECT_EQ(nullptr, file.getStream());
  EXPECT_STREQ(path.c_str(), file.getName());
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
  EXPECT_TRUE(file.read(buffer, 0));
  EXPECT_TRUE(file.read(buffer, 3));
  EXPECT_STREQ("abc", buffer);
  EXPECT_EQ(7, file.size());
  EXPECT_EQ(3, file.pos()) << "measuring keeps the position";
  EXPECT_EQ(7, file.checkSize(7));
  EXPECT_TRUE(file.seek(1, 1));
  EXPECT_TRUE(file.write("DE"));
  EXPECT_TRUE(file.seek(-1, 2));
  EXPECT_TRUE(file.read(buffer, 1));
  EXPECT_EQ('x', buffer[0]);
  EXPECT_TRUE(file.close());
  EXPECT_EQ("abcxDEx", fileBytes(path));
}

TEST(UTF8File, KeepsTheErrnoOfTheClientOnSuccess) {
  const TempFolder folder;
  UTF8File file(true);
  file.open(putFile(folder / "a", "abcd").c_str(), UTF8File::ModeUpdate);
  char buffer[4];
  errno = EXDEV;
  EXPECT_TRUE(file.read(buffer, 4));
  EXPECT_EQ(EXDEV, errno);
  EXPECT_TRUE(file.seek(0, 0));
  errno = EXDEV;
  EXPECT_TRUE(file.write("efgh"));
  EXPECT_EQ(EXDEV, errno);
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
  EXPECT_TRUE(file.mkdir(dir.c_str())) << "exists already";
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
  EXPECT_TRUE(file.remove(b.c_str()));
  EXPECT_TRUE(file.remove(b.c_str())) << "missing";
  EXPECT_TRUE(file.rmdir(dir.c_str()));
  EXPECT_TRUE(file.rmdir(dir.c_str())) << "missing";
  EXPECT_TRUE(file.mkdir(dir.c_str()));
  EXPECT_TRUE(file.remove(dir.c_str())) << "an empty directory";
  EXPECT_EQ(0, folder.count());
}

TEST(UTF8File, FailedAllocationLeavesItClosedOrOpen) {
  const TempFolder folder;
  const std::string path = putFile(folder / "a", "old");
  const int descriptors = cc::test::openDescriptors();
  cc::test::sweepAllocations([&](cc::test::AllocSweep& sweep) {
    UTF8File file(true);
    putFile(path, "old");
    const bool opened = sweep.attempt([&] { file.open(path.c_str(), UTF8File::ModeWrite); });
    EXPECT_EQ(opened, file.getStream() != nullptr);
    EXPECT_EQ(opened ? "" : "old", fileBytes(path)) << "emptied, but not opened";
    EXPECT_EQ(opened, file.getName() != nullptr);
    UTF8File missing(true);
    bool thrown = false;
    const bool reported = sweep.attempt([&] {
      try {
        missing.open("/nowhere/x", UTF8File::ModeRead);
      } catch (const TTT&) {
        thrown = true;
      }
    });
    EXPECT_EQ(reported, thrown);
  });
  EXPECT_EQ(descriptors, cc::test::openDescriptors());
}

}  // namespace
