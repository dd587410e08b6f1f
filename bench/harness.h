// The measuring. A row of the table is one operation on one input, worked by several contestants:
// ours, its peers, and the physical limit. Their runs are interleaved in rounds, so that a noisy
// moment of the machine meets all of them; time is the processor time of the thread. Before
// anything is timed, every contestant's result is compared with ours.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace bench {

// Nanoseconds of processor time that this thread has used.
double threadTime();

// Makes the compiler believe that `value` is used and that all memory may have changed.
inline void keep(std::size_t value) { asm volatile("" : : "r"(value) : "memory"); }

enum class Role { Ours, Peer, Limit };

struct Statistics {
  double best = 0;    // nanoseconds of one run
  double median = 0;  // nanoseconds of one run
  double spread = 0;  // distance of the quartiles, as a part of the median
};

struct Contestant {
  Role role;
  std::string name;
  std::function<double(long)> time;     // nanoseconds for that many runs
  std::function<std::string()> result;  // what one run gives; not set: nothing to compare
  Statistics statistics;
};

// "At least `factor` times the speed of `against`"; an empty name stands for the best peer.
struct Bar {
  double factor;
  std::string against;
};

// What one run works on; it tells how a time is shown.
struct Work {
  double amount = 1;
  bool inBytes = false;  // bytes, shown as bytes per second; otherwise items, as time per item
};

class Row {
 public:
  Row(std::string operationName, std::string inputName)
      : operation(std::move(operationName)), input(std::move(inputName)) {}

  Row& bytes(std::size_t n);
  Row& items(std::size_t n);
  // Runs untimed before every run of the contestants added from now on, which are then timed one
  // by one: for runs that last microseconds.
  Row& before(std::function<void()> prepare);
  // What a run left behind, compared together with the value that it returned.
  Row& output(std::function<std::string()> view);
  // No more than this many runs of each contestant in all.
  Row& atMost(long runs);

  template <class Run>
  Row& ours(Run run) {
    return add(Role::Ours, "ours", run, true);
  }
  template <class Run>
  Row& peer(const char* name, Run run) {
    return add(Role::Peer, name, run, true);
  }
  // A peer whose result has another form, so that it is not compared.
  template <class Run>
  Row& unlikePeer(const char* name, Run run) {
    return add(Role::Peer, name, run, false);
  }
  template <class Run>
  Row& limit(const char* name, Run run) {
    return add(Role::Limit, name, run, false);
  }
  // A contestant that measures itself.
  Row& selfTimed(Role role, const char* name, std::function<double(long)> time);

  Row& atLeast(double factor, std::string against = "");

  const Contestant* find(Role role, const std::string& name) const;
  const Contestant* ours() const { return find(Role::Ours, ""); }
  const Contestant* bestPeer() const;
  const Contestant* limit() const { return find(Role::Limit, ""); }
  // How many times as fast as the contestant of the bar we are; 0 when it does not take part.
  double reached(const Bar& bar) const;

  std::string operation;
  std::string input;
  Work work;
  std::vector<Bar> bars;
  std::vector<Contestant> contestants;
  long mostRuns = 0;  // 0: as many as the time allows

 private:
  template <class Run>
  Row& add(Role role, const char* name, Run run, bool compared);

  std::function<void()> prepare;
  std::function<std::string()> view;
};

struct Options {
  bool quick = false;
  bool checkOnly = false;
  bool oursOnly = false;
  bool detail = false;
  std::vector<std::string> filters;
};

class Bench {
 public:
  explicit Bench(Options wanted) : options(std::move(wanted)) {}

  // Whether a row is asked for: ask before making a costly input.
  bool wants(const std::string& operation, const std::string& input) const;
  // Compares the contestants, measures them and keeps the row.
  void run(Row row);

  const std::vector<Row>& rows() const { return measured; }
  int mismatches() const { return failures; }

 private:
  bool agree(const Row& row);
  void measure(Row& row) const;

  Options options;
  std::vector<Row> measured;
  int failures = 0;
};

template <class Run>
Row& Row::add(Role role, const char* name, Run run, bool compared) {
  Contestant contestant;
  contestant.role = role;
  contestant.name = name;
  if (prepare) {
    contestant.time = [run, prepare = prepare](long runs) mutable {
      double sum = 0;
      for (long i = 0; i < runs; ++i) {
        prepare();
        const double start = threadTime();
        keep(run());
        sum += threadTime() - start;
      }
      return sum;
    };
  } else {
    contestant.time = [run](long runs) mutable {
      const double start = threadTime();
      for (long i = 0; i < runs; ++i) keep(run());
      return threadTime() - start;
    };
  }
  if (compared) {
    contestant.result = [run, prepare = prepare, view = view]() mutable {
      if (prepare) prepare();
      const std::size_t value = run();
      std::string result = "value " + std::to_string(value);
      if (view) result += ", output " + view();
      return result;
    };
  }
  contestants.push_back(std::move(contestant));
  return *this;
}

}  // namespace bench
