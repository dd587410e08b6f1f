// The state of the sweep is the program's: one run at a time decides what each call does. What a
// run found out is kept for the summary at the end, which demands that each function failed.

#include "tests/faults/fault_sweep.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <set>

#include "tests/faults/platform_calls.h"
#include "tests/support/alloc_sweep.h"
#include "tests/support/temp_folder.h"

namespace cc::test {

namespace {

struct Function {
  const char* name;
  std::vector<int> errors;
  std::size_t failures = 0;  // in all sweeps
};

Function* functions() {
#define CC_FUNCTION(name, ...) Function{#name, {__VA_ARGS__}},
  static Function table[] = {CC_PLATFORM_CALLS(CC_FUNCTION)};
  return table;
}

enum class Extent { Once, Function, All };

/// What happens to the calls: nothing while all is zero, as before this is constructed.
struct {
  bool armed = false;
  bool tracing = false;
  std::vector<std::string_view> trace;
  // failing
  Extent extent = Extent::Once;
  std::size_t way = 0;  // index of the error
  int countdown = 0;    // calls that still succeed
  int firstCall = -1;   // the function of the first failure; -1 before it
  int turns[calls::Count] = {};
  std::vector<Failure> failures;
  // killing
  bool killing = false;
  int callsToLive = 0;
} state;

/// Sums of all sweeps of the program.
struct {
  std::size_t runs = 0;
  std::size_t failures = 0;
  std::set<const void*> sites;
} sums;

bool isChosen(int call) {
  if (state.firstCall < 0) return state.countdown-- == 0;
  return state.extent == Extent::All ||
         (state.extent == Extent::Function && state.firstCall == call);
}

void startRun(Extent extent, int index, std::size_t way) {
  state.extent = extent;
  state.countdown = index;
  state.way = way;
  state.firstCall = -1;
  std::fill(std::begin(state.turns), std::end(state.turns), 0);
  state.failures.clear();
  state.failures.reserve(1);  // grows, but is no new block in the run
}

void addToSums() {
  ++sums.runs;
  sums.failures += state.failures.size();
  for (const Failure& failure : state.failures) {
    sums.sites.insert(failure.site);
    for (int call = 0; call < calls::Count; ++call) {
      if (failure.function == functions()[call].name) ++functions()[call].failures;
    }
  }
}

std::string titleOfRun(Extent extent, int index, std::size_t way) {
  std::string title = "call " + std::to_string(index) + ", way " + std::to_string(way);
  if (extent == Extent::Function) title += ", and all later ones of the function";
  if (extent == Extent::All) title += ", and all later ones";
  return title;
}

bool isSuch(const Failure& failure, std::string_view function, int error, int turn) {
  return failure.function == function && (error == AnyWay || failure.error == error) &&
         (turn == AnyTurn || failure.turn == turn);
}

/// One run; true when a call failed.
bool run(const std::function<void(FaultSweep&)>& scenario) {
  const int descriptors = openDescriptors();
  const std::size_t blocks = liveBlocks();
  {
    FaultSweep sweep;
    scenario(sweep);
  }
  if (testing::Test::HasFailure()) {
    for (const Failure& failure : state.failures) {
      std::printf("%s failed, turn %d, error %d\n", std::string(failure.function).c_str(),
                  failure.turn, failure.error);
    }
  } else {
    EXPECT_EQ(descriptors, openDescriptors()) << "a descriptor is lost";
    EXPECT_EQ(blocks, liveBlocks()) << "a block is lost";
  }
  const bool failed = !state.failures.empty();
  if (failed) addToSums();
  return failed;
}

/// Says at the end what was done, and demands that it was enough where all tests ran.
class Summary : public testing::Environment {
  void TearDown() override {
    const testing::UnitTest& program = *testing::UnitTest::GetInstance();
    const bool whole = program.test_to_run_count() == program.total_test_count();
    for (int call = 0; call < calls::Count; ++call) {
      const Function& function = functions()[call];
      EXPECT_TRUE(function.failures != 0 || !whole) << function.name << " was never made to fail";
    }
    std::printf("[  FAULTS  ] %zu runs, %zu failing calls of %d functions at %zu places\n",
                sums.runs, sums.failures, calls::Count, sums.sites.size());
  }
};

const testing::Environment* const summary = testing::AddGlobalTestEnvironment(new Summary);

}  // namespace

Passage::Passage(calls::Call call, const void* site) {
  if (state.killing && state.callsToLive-- == 0) ::raise(SIGKILL);
  if (!state.armed) return;
  const Function& function = functions()[call];
  if (state.tracing) state.trace.emplace_back(function.name);
  const int turn = state.turns[call]++;
  if (!isChosen(call)) return;
  if (state.firstCall < 0) state.firstCall = call;
  fails = true;
  error = function.errors[state.way % function.errors.size()];
  state.failures.push_back({function.name, error, turn, site});
}

FaultSweep::Armed::Armed() { state.armed = true; }
FaultSweep::Armed::~Armed() { state.armed = false; }

const std::vector<Failure>& FaultSweep::failures() const { return state.failures; }

bool FaultSweep::failed(std::string_view function, int error, int turn) const {
  return std::any_of(state.failures.begin(), state.failures.end(), [&](const Failure& failure) {
    return isSuch(failure, function, error, turn);
  });
}

std::string FaultSweep::expected(const Rules& rules, const std::string& path) const {
  for (const Failure& failure : state.failures) {
    const auto fits = [&](const Rule& rule) {
      return isSuch(failure, rule.function, rule.error, rule.turn);
    };
    const auto rule = std::find_if(rules.begin(), rules.end(), fits);
    if (rule == rules.end()) {
      ADD_FAILURE() << "no rule for a failure of " << failure.function;
      return {};
    }
    if (rule->message == GoesOn) continue;
    if (rule->message == Silent) return "(silent)";
    if (rule->message >= withoutError(0)) {
      return cc::test::failure(rule->message - withoutError(0), path, -1);
    }
    if (failure.error > 0 && failed("errorText")) {
      return MessageBytes(rule->message).entry(25).text(path).entry(17).word(failure.error);
    }
    return cc::test::failure(rule->message, path, failure.error);
  }
  return "(nothing)";
}

void sweepFaults(const std::function<void(FaultSweep&)>& scenario) {
  constexpr int mostCalls = 100'000;
  if (testing::Test::HasFailure()) return;
  functions();  // is there before blocks are counted
  const std::size_t failuresBefore = sums.failures;
  for (const Extent extent : {Extent::Once, Extent::Function, Extent::All}) {
    bool failed = true;
    for (int index = 0; failed; ++index) {
      ASSERT_LT(index, mostCalls) << "the scenario never gets by with the calls it is given";
      std::size_t ways = 1;
      for (std::size_t way = 0; way < ways; ++way) {
        const testing::ScopedTrace trace(__FILE__, __LINE__, titleOfRun(extent, index, way));
        startRun(extent, index, way);
        failed = run(scenario);
        if (testing::Test::HasFailure()) return;
        if (failed) ways = functions()[state.firstCall].errors.size();
      }
    }
  }
  EXPECT_LT(failuresBefore, sums.failures) << "nothing was made to fail";
}

std::vector<std::string_view> tracedCalls(const std::function<void()>& action) {
  state.trace.clear();
  startRun(Extent::Once, -1, 0);
  state.tracing = true;
  FaultSweep().during(action);
  state.tracing = false;
  return state.trace;
}

void killAtCall(int call) {
  state.callsToLive = call;
  state.killing = true;
}

}  // namespace cc::test
