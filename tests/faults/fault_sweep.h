/// @file
/// Fails the calls of the platform layer.
///
/// The program that links this has a platform of its own: each function makes the library's own
/// call, or fails as the system could make it fail.
///
///     sweepFaults([&](FaultSweep& sweep) {
///       Bag bag("old", 3);
///       const std::string thrown = sweep.thrownBy([&] { UTF8File::load(path, bag, 100, false); });
///       EXPECT_EQ(sweep.expected({{"openFile", 4}, {"closeFile", 3}, …}, path), thrown);
///     });
///
/// One thread at a time.
#pragma once

#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/files/messages.h"

namespace cc::test {

/// How a call fails, where it is no number of a system error.
enum : int {
  Ended = 0,     ///< nothing more comes or goes, and errno says nothing
  Short = -1,    ///< fewer bytes than asked for, as the system may do at any time
  AnyWay = -2,   ///< in a rule: each of the others
  AnyTurn = -1,  ///< in a rule: whichever call it was
};

/// A call that failed.
struct Failure {
  std::string_view function;
  int error;         ///< a number of a system error, `Ended` or `Short`
  int turn;          ///< how many calls of the function there were before in the run
  const void* site;  ///< where in the library
};

/// What the failure of a call makes of an operation. The first rule that fits counts.
struct Rule {
  const char* function;
  int message;  ///< a message number, `GoesOn`, `Silent`, or `withoutError` of a message number
  int error = AnyWay;
  int turn = AnyTurn;
};
constexpr int GoesOn = -1;  ///< the operation succeeds
constexpr int Silent = -2;  ///< it fails without a message
/// The message that does not tell the system's error.
constexpr int withoutError(int message) { return message + 1000; }

using Rules = std::vector<Rule>;

/// One run of a scenario, in which one call, or more, fail.
class FaultSweep {
 public:
  /// Calls `action` with the calls of the platform counted and the chosen ones failing. Checks
  /// belong outside. The count runs on through the actions of a scenario.
  template <class Action>
  auto during(Action&& action) {
    const Armed armed;
    return action();
  }
  /// The same; the bytes of the message that `action` throws, or "(nothing)".
  template <class Action>
  std::string thrownBy(Action&& action) {
    const Armed armed;
    return cc::test::thrownBy(std::forward<Action>(action));
  }

  /// The calls that failed so far, in their order.
  const std::vector<Failure>& failures() const;
  /// True when a call of the function failed, in that way.
  bool failed(std::string_view function, int error = AnyWay, int turn = AnyTurn) const;
  /// What the failures of this run make of an operation on the file `path` in which they all
  /// happened: the bytes of a message, "(nothing)" when it succeeds or "(silent)". The first
  /// failure with which it does not go on decides. One without a rule is a failure of the test.
  std::string expected(const Rules& rules, const std::string& path) const;

 private:
  struct Armed {
    Armed();
    ~Armed();
    Armed(const Armed&) = delete;
    Armed& operator=(const Armed&) = delete;
  };
};

/// Runs `scenario` with the 0th, 1st, 2nd … call failing, in each way in which it can, until a run
/// needs no more calls: with just that call failing, then with all calls of the same function from
/// there on, then with all calls from there on. After each run as many descriptors are open and as
/// many blocks of memory are in use as before it.
void sweepFaults(const std::function<void(FaultSweep&)>& scenario);

/// The names of the functions that `action` calls, in their order.
std::vector<std::string_view> tracedCalls(const std::function<void()>& action);

/// This process is killed just before its `call`-th call from here.
void killAtCall(int call);

}  // namespace cc::test
