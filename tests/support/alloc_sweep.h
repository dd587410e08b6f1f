/// @file
/// Counts and fails allocations.
///
/// Linking this replaces the global `operator new` and `operator delete` of the test program. Each
/// block remembers whether it came from the plain or from the array form; freeing it with the other
/// form, or something that is no block, ends the program with a message. Fresh and freed memory is
/// overwritten, so that nothing reads what it should not by luck.
///
///     sweepAllocations([](AllocSweep& sweep) {
///       ChArr text("abc");
///       const bool done = sweep.attempt([&] { text = "a longer text"; });
///       EXPECT_STREQ(done ? "a longer text" : "abc", text.get());
///     });
#pragma once

#include <cstddef>
#include <functional>
#include <new>

namespace cc::test {

/// What this thread has allocated since the object was made, by any form of `new`.
class AllocCount {
 public:
  AllocCount();
  /// Number of allocations.
  std::size_t blocks() const;
  /// The sum of their sizes in bytes: a bound for what growing storage has copied.
  std::size_t bytes() const;

 private:
  std::size_t blocksBefore;
  std::size_t bytesBefore;
};

/// Number of blocks of the whole program that are not freed yet.
std::size_t liveBlocks();

/// One run of a scenario, in which one allocation (or that and each one after it) fails.
class AllocSweep {
 public:
  /// Calls `action` with allocations counted and the chosen one failing. True when it returned,
  /// false when it threw `std::bad_alloc`; any other exception passes through. Checks belong
  /// outside of the action, since they allocate too. A scenario may attempt several actions: the
  /// count runs on.
  template <class Action>
  bool attempt(Action&& action) {
    const Armed armed(*this);
    try {
      action();
    } catch (const std::bad_alloc&) {
      return false;
    }
    return true;
  }
  /// True once an allocation of this run has failed.
  bool hasFailed() const;

 private:
  friend void sweepAllocations(const std::function<void(AllocSweep&)>& scenario);
  struct Armed {
    explicit Armed(AllocSweep& sweep);
    ~Armed();
    Armed(const Armed&) = delete;
    Armed& operator=(const Armed&) = delete;
  };
  AllocSweep(std::size_t index, bool persistent);
};

/// Runs `scenario` with the 0th, 1st, 2nd … allocation of its attempts failing, until a run needs
/// none; first with just that one failing, then with all from there on. After each run every block
/// that the scenario allocated must be freed; a lost one is a failure of the test, so what is kept
/// for good (a dictionary loaded on first use) must be there before. Failures of the
/// scenario's own checks are shown with the number of the allocation.
void sweepAllocations(const std::function<void(AllocSweep&)>& scenario);

}  // namespace cc::test
