// RunDetector among processes that start, leave and die at the same moment.
//
// CC_RACE_ROUNDS sets the number of rounds of each race, 24 when unset.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <vector>

#include "rundetector.h"
#include "tests/process/pid_folder.h"

namespace {

using cc::test::exitCode;
using cc::test::fileBytes;
using cc::test::Gate;
using cc::test::PidFolder;
using cc::test::putFile;
using cc::test::startChild;

int rounds() {
  const char* text = std::getenv("CC_RACE_ROUNDS");
  return text ? std::atoi(text) : 24;
}

class StartRace : public testing::TestWithParam<int> {};

TEST_P(StartRace, ExactlyOneCopySucceeds) {
  const PidFolder folder;
  const std::string path = folder / "app.pid";
  const std::string name = cc::test::nameSeenByOthers();
  for (int round = 0; round < rounds(); ++round) {
    SCOPED_TRACE(round);
    // What the copies find: nothing, garbage, an id above all others, the previous winner's file.
    if (round % 4 == 0) ::unlink(path.c_str());
    if (round % 4 == 1) putFile(path, "garbage that is longer than a number");
    if (round % 4 == 2) putFile(path, "2147483646");
    const bool winnerUnlocks = round % 8 >= 4;
    // All lock at the same moment, and live until all have tried.
    Gate start, tried, end;
    std::vector<pid_t> children(static_cast<std::size_t>(GetParam()));
    for (pid_t& child : children) {
      child = startChild([&] {
        RunDetector detector("app", name.c_str());
        end.open();
        start.wait();
        const bool won = detector.lock();
        tried.open();
        end.wait();
        if (winnerUnlocks) detector.unlock();
        return won ? 1 : 0;
      });
    }
    start.open();
    tried.wait();
    const std::string holder = fileBytes(path);
    end.open();
    int winners = 0;
    for (const pid_t child : children) {
      const int code = exitCode(child);
      ASSERT_TRUE(code == 0 || code == 1) << code;
      winners += code;
      EXPECT_EQ(code == 1, holder == std::to_string(child));
    }
    ASSERT_EQ(1, winners);
    ASSERT_EQ(winnerUnlocks ? 0 : 1, folder.count());
  }
}

TEST_P(StartRace, NeverTwoCopiesAtOnceWhileOthersLeaveAndDie) {
  const PidFolder folder;
  const std::string held = folder / "held";
  const std::string name = cc::test::nameSeenByOthers();
  // A copy that succeeded proves that it is alone by a file that only one can create. Now and then
  // it dies without unlocking. Its exit code tells how often it succeeded.
  constexpr int none = 3;
  const auto copy = [&](int seed) {
    int successes = 0;
    for (int i = 0; i < 200; ++i) {
      RunDetector detector("app", name.c_str());
      if (!detector.lock()) continue;
      const int fd = ::open(held.c_str(), O_CREAT | O_EXCL | O_WRONLY, 0600);
      if (fd < 0) return 1;
      ::close(fd);
      if (fileBytes(folder / "app.pid") != std::to_string(::getpid())) return 2;
      ::unlink(held.c_str());
      if (++successes % 16 == seed % 16) break;
      detector.unlock();
    }
    return none + successes;
  };
  Gate start;
  const auto startCopy = [&](int seed) {
    return startChild([&] {
      start.wait();
      return copy(seed);
    });
  };
  // A loaded machine may give most copies no chance: one that died is in the way until it is waited
  // for. More are started then, until enough succeeded.
  const int copies = rounds() * 2;
  const int wanted = copies / 4;
  int successes = 0;
  int started = 0;
  for (; started < GetParam(); ++started) startCopy(started);
  start.open();
  for (int running = started; running != 0; --running) {
    int status = -1;
    ASSERT_GT(::wait(&status), 0);
    EXPECT_NE(1 << 8, status) << "two at once";
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) >= none)
        << "its file was removed, or it was killed";
    successes += WEXITSTATUS(status) - none;
    if (started < copies || (successes < wanted && started < 100 * copies)) {
      startCopy(started++);
      ++running;
    }
  }
  EXPECT_GE(successes, wanted) << "too few to have tried anything";
  EXPECT_FALSE(std::filesystem::exists(held));
}

INSTANTIATE_TEST_SUITE_P(Copies, StartRace, testing::Values(2, 4, 8));

}  // namespace
