// RunDetector on one process: contents of the pid file, what else may stand at its path, whose
// process counts as a copy.

#include "rundetector.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>

#include "tests/process/pid_folder.h"

namespace {

using cc::test::fileBytes;
using cc::test::openDescriptors;
using cc::test::PidFolder;
using cc::test::putFile;

/// A copy of a small program of the system under another name, which runs until the end.
class OtherProgram {
 public:
  explicit OtherProgram(const std::string& path) {
    std::filesystem::copy_file("/bin/sleep", path);
    cc::test::Gate started;
    id = cc::test::startChild([&] { return ::execl(path.c_str(), path.c_str(), "600", nullptr); });
    started.wait();
  }
  OtherProgram(const OtherProgram&) = delete;
  OtherProgram& operator=(const OtherProgram&) = delete;
  ~OtherProgram() { stop(); }
  void stop() {
    if (id > 0 && ::kill(id, SIGKILL) == 0) cc::test::exitCode(id);
    id = -1;
  }

  pid_t id;
};

/// This process's id between other texts.
std::string own(const std::string& before = "", const std::string& after = "") {
  return before + std::to_string(::getpid()) + after;
}

TEST(RunDetector, LocksAndUnlocks) {
  const PidFolder folder;
  const std::string path = folder / "viewer.pid";
  RunDetector detector("viewer", nullptr);
  EXPECT_EQ(RunDetector::NoPidFile, detector.getState());
  EXPECT_EQ(0, folder.count()) << "looking changes nothing";
  EXPECT_TRUE(detector.lock());
  EXPECT_EQ(own(), fileBytes(path));
  EXPECT_EQ(RunDetector::Running, detector.getState());
  EXPECT_FALSE(detector.lock());
  RunDetector second("viewer", nullptr);
  EXPECT_EQ(RunDetector::Running, second.getState());
  EXPECT_FALSE(second.lock());
  second.unlock();
  EXPECT_EQ(own(), fileBytes(path)) << "removed by one that never locked";
  detector.unlock();
  EXPECT_EQ(RunDetector::NoPidFile, detector.getState());
  EXPECT_EQ(0, folder.count());
  EXPECT_TRUE(second.lock());
  detector.unlock();
  EXPECT_EQ(own(), fileBytes(path)) << "unlocked twice";
  second.unlock();
  { EXPECT_TRUE(RunDetector("viewer", nullptr).lock()); }
  EXPECT_EQ(own(), fileBytes(path)) << "removed by destruction";
}

TEST(RunDetector, ContentsOfThePidFile) {
  const PidFolder folder;
  const std::string path = folder / "a.pid";
  const std::string wrapped32 = std::to_string((1LL << 32) + ::getpid());
  const std::string wrapped64 = std::to_string(~0ULL / 10) + "9" + own();
  // What other writers may add, and what is no number or no process id.
  const std::string running[] = {own(" \t\r\n\v\f"), own(std::string(1000, ' ')), own("+000"),
                                 own("", "\n"),      own("", " other text"),      own("", "x")};
  const std::string stale[] = {
      "",       "   ",        own("x"),  own("+ "), own(std::string(1, '\0')), "0",
      own("-"), "2147483648", wrapped32, wrapped64, std::string(5000, '9')};
  const auto check = [&](const std::string& content, int state) {
    SCOPED_TRACE(testing::PrintToString(content));
    putFile(path, content);
    RunDetector detector("a", nullptr);
    EXPECT_EQ(state, detector.getState());
    EXPECT_EQ(content, fileBytes(path));
    EXPECT_EQ(state != RunDetector::Running, detector.lock());
    EXPECT_EQ(state == RunDetector::Running ? content : own(), fileBytes(path));
  };
  for (const std::string& content : running) check(content, RunDetector::Running);
  for (const std::string& content : stale) check(content, RunDetector::StalePidFile);
}

TEST(RunDetector, WhoseProcessCounts) {
  const PidFolder folder;
  const std::string path = folder / "a.pid";
  OtherProgram viewer(folder / "viewer");
  const auto stateFor = [](const char* name) { return RunDetector("a", name).getState(); };
  putFile(path, std::to_string(viewer.id));
  EXPECT_EQ(RunDetector::Running, stateFor("viewer"));
  EXPECT_EQ(RunDetector::Running, stateFor("")) << "any process counts";
  for (const char* name : {"Viewer", "viewe", "viewer2", "/viewer", "viewer (deleted)"}) {
    EXPECT_EQ(RunDetector::StalePidFile, stateFor(name)) << name;
  }
  EXPECT_EQ(RunDetector::StalePidFile, stateFor(nullptr)) << "another program";

  // The running copy was updated: its file is another one now, or gone.
  std::filesystem::copy_file("/bin/sleep", folder / "new");
  ASSERT_EQ(0, ::rename((folder / "new").c_str(), (folder / "viewer").c_str()));
  EXPECT_EQ(RunDetector::Running, stateFor("viewer"));
  ASSERT_EQ(0, ::unlink((folder / "viewer").c_str()));
  EXPECT_EQ(RunDetector::Running, stateFor("viewer"));
  EXPECT_EQ(RunDetector::StalePidFile, stateFor("other"));

  viewer.stop();
  EXPECT_EQ(RunDetector::StalePidFile, stateFor(""));
  const OtherProgram marked(folder / "odd (deleted)");
  putFile(path, std::to_string(marked.id));
  EXPECT_EQ(RunDetector::Running, stateFor("odd (deleted)")) << "its very name";
}

TEST(RunDetector, ProcessOfAnotherUserCounts) {
  if (::geteuid() != 0) GTEST_SKIP() << "needs two users";
  const PidFolder folder;
  putFile(folder / "a.pid", own());
  ASSERT_EQ(0, ::chmod((folder / "").c_str(), 0755));
  // What another user finds, who cannot lock.
  const auto stateForOther = [](const char* name) {
    return cc::test::inChild([name] {
      if (::setgid(65534) != 0 || ::setuid(65534) != 0) return 99;
      RunDetector detector("a", name);
      return detector.lock() ? 98 : static_cast<int>(detector.getState());
    });
  };
  EXPECT_EQ(RunDetector::Running, stateForOther("x")) << "its executable cannot be read";
  putFile(folder / "a.pid", "1");
  ASSERT_EQ(0, ::chmod((folder / "a.pid").c_str(), 0600));
  EXPECT_EQ(RunDetector::NoPidFile, stateForOther(nullptr)) << "the pid file cannot be read";
  EXPECT_EQ("1", fileBytes(folder / "a.pid"));
}

TEST(RunDetector, OnlyARegularFileIsAPidFile) {
  const PidFolder folder;
  const std::string victim = putFile(folder / "victim", "victim");
  const auto at = [&](const std::string& name) { return folder / (name + ".pid"); };
  EXPECT_EQ(0, ::symlink("victim", at("link").c_str()));
  EXPECT_EQ(0, ::symlink("fresh", at("dangling").c_str()));
  EXPECT_EQ(0, ::symlink("loop.pid", at("loop").c_str()));
  EXPECT_EQ(0, ::mkfifo(at("pipe").c_str(), 0666));
  EXPECT_EQ(0, ::mkdir(at("directory").c_str(), 0777));
  ::mknod(at("device").c_str(), S_IFCHR | 0666, 0x103);
  for (const char* name : {"link", "dangling", "loop", "pipe", "directory", "device"}) {
    SCOPED_TRACE(name);
    const std::string path = at(name);
    const auto type = std::filesystem::symlink_status(path).type();
    if (type == std::filesystem::file_type::not_found) continue;  // a device needs privileges
    const int descriptors = openDescriptors();
    ::alarm(20);  // ends a test that waits for a pipe's other end
    RunDetector detector(name, nullptr);
    EXPECT_EQ(RunDetector::NoPidFile, detector.getState());
    EXPECT_FALSE(detector.lock());
    detector.unlock();
    ::alarm(0);
    EXPECT_EQ(type, std::filesystem::symlink_status(path).type());
    EXPECT_EQ(descriptors, openDescriptors());
  }
  EXPECT_EQ("victim", fileBytes(victim));
  EXPECT_EQ("(no file)", fileBytes(folder / "fresh"));
}

TEST(RunDetector, UnlockRemovesOnlyItsOwnFile) {
  const PidFolder folder;
  const std::string path = folder / "a.pid";
  {
    RunDetector detector("a", nullptr);
    ASSERT_TRUE(detector.lock());
    EXPECT_EQ(0, cc::test::inChild([&] {
                detector.unlock();
                return 0;
              }));
    EXPECT_EQ(own(), fileBytes(path)) << "removed by a child";
    putFile(path, "1");
    detector.unlock();
    EXPECT_EQ("1", fileBytes(path)) << "taken over by somebody else";
  }
  {
    RunDetector detector("b", nullptr);
    ASSERT_TRUE(detector.lock());
    ASSERT_EQ(0, ::unlink((folder / "b.pid").c_str()));
    ASSERT_EQ(0, ::symlink("a.pid", (folder / "b.pid").c_str()));
    detector.unlock();
    EXPECT_EQ("1", fileBytes(path));
    EXPECT_EQ("1", fileBytes(folder / "b.pid"));
  }
}

TEST(RunDetector, WaitsForTheAdvisoryLockButNotForEver) {
  using Clock = std::chrono::steady_clock;
  const PidFolder folder;
  const std::string path = putFile(folder / "a.pid", "");
  const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_EQ(0, ::flock(fd, LOCK_EX));
  RunDetector detector("a", nullptr);
  EXPECT_EQ(RunDetector::StalePidFile, detector.getState()) << "looking needs no lock";
  const Clock::time_point start = Clock::now();
  EXPECT_FALSE(detector.lock());
  EXPECT_GE(Clock::now() - start, std::chrono::milliseconds(1900));
  EXPECT_EQ("", fileBytes(path));

  // What is locked at last is no longer the file at the path.
  const std::string other = putFile(folder / "other", "");
  const int otherFd = ::open(other.c_str(), O_RDONLY | O_CLOEXEC);
  const pid_t child = cc::test::startChild([&] {
    ::usleep(100000);
    ::rename(other.c_str(), path.c_str());
    return ::flock(fd, LOCK_UN);
  });
  EXPECT_TRUE(detector.lock());
  EXPECT_EQ(0, cc::test::exitCode(child));
  EXPECT_EQ(own(), fileBytes(path));
  for (const int each : {fd, otherFd}) {
    EXPECT_EQ(0, ::flock(each, LOCK_EX | LOCK_NB)) << "the lock is kept after `lock` returned";
    ::close(each);
  }
  detector.unlock();
  EXPECT_EQ(0, folder.count());
}

}  // namespace
