// Rounds: each contestant is calibrated to a number of runs that lasts a few hundred microseconds
// or more, then all of them take turns until the row's share of time is used up.

#include "harness.h"

#include <time.h>

#include <algorithm>
#include <cstdio>

namespace bench {
namespace {

struct Pace {
  double sample;  // nanoseconds that one contestant's turn should last at least
  double budget;  // nanoseconds for each contestant of a row
  std::size_t leastRounds;
  std::size_t mostRounds;
};

constexpr Pace quickPace = {0.3e6, 12e6, 3, 15};
constexpr Pace fullPace = {2e6, 250e6, 7, 101};

// Runs that last about `sample`; they double as the warm-up.
long calibrate(Contestant& contestant, double sample, long most) {
  long runs = 1;
  for (;;) {
    const double time = std::max(contestant.time(runs), 1.0);
    if (time >= sample || (most > 0 && runs >= most)) return runs;
    const double wanted = 1.2 * sample / time * static_cast<double>(runs);
    runs =
        std::max(runs + 1, static_cast<long>(std::min(wanted, 100.0 * static_cast<double>(runs))));
    if (most > 0) runs = std::min(runs, most);
  }
}

Statistics statisticsOf(std::vector<double> times) {
  std::sort(times.begin(), times.end());
  const std::size_t n = times.size();
  Statistics statistics;
  statistics.best = times[0];
  statistics.median = times[n / 2];
  statistics.spread = (times[(3 * n) / 4] - times[n / 4]) / statistics.median;
  return statistics;
}

// The place where two results part, with its surroundings, for the report of a mismatch.
std::string excerpt(const std::string& result, std::size_t place) {
  const std::size_t start = place > 20 ? place - 20 : 0;
  return "'" + result.substr(start, 60) + "' at " + std::to_string(place);
}

}  // namespace

double threadTime() {
  timespec now;
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec);
}

Row& Row::bytes(std::size_t n) {
  work = {static_cast<double>(n), true};
  return *this;
}

Row& Row::items(std::size_t n) {
  work = {static_cast<double>(n), false};
  return *this;
}

Row& Row::before(std::function<void()> p) {
  prepare = std::move(p);
  return *this;
}

Row& Row::output(std::function<std::string()> v) {
  view = std::move(v);
  return *this;
}

Row& Row::atMost(long runs) {
  mostRuns = runs;
  return *this;
}

Row& Row::selfTimed(Role role, const char* name, std::function<double(long)> time) {
  contestants.push_back({role, name, std::move(time), {}, {}});
  return *this;
}

Row& Row::atLeast(double factor, std::string against) {
  bars.push_back({factor, std::move(against)});
  return *this;
}

const Contestant* Row::find(Role role, const std::string& name) const {
  for (const Contestant& contestant : contestants) {
    if (contestant.role == role && (name.empty() || contestant.name == name)) return &contestant;
  }
  return nullptr;
}

const Contestant* Row::bestPeer() const {
  const Contestant* best = nullptr;
  for (const Contestant& contestant : contestants) {
    if (contestant.role != Role::Peer) continue;
    if (!best || contestant.statistics.best < best->statistics.best) best = &contestant;
  }
  return best;
}

double Row::reached(const Bar& bar) const {
  const Contestant* other = bestPeer();
  if (!bar.against.empty()) {
    other = find(Role::Peer, bar.against);
    if (!other) other = find(Role::Limit, bar.against);
  }
  if (!other || !ours() || ours()->statistics.best <= 0) return 0;
  return other->statistics.best / ours()->statistics.best;
}

bool Bench::wants(const std::string& operation, const std::string& input) const {
  if (options.filters.empty()) return true;
  const std::string name = operation + ", " + input;
  return std::any_of(options.filters.begin(), options.filters.end(),
                     [&](const std::string& part) { return name.find(part) != std::string::npos; });
}

bool Bench::agree(const Row& row) {
  bool same = true;
  std::string expected;
  for (const Contestant& contestant : row.contestants) {
    if (!contestant.result) continue;
    const std::string result = contestant.result();
    if (contestant.role == Role::Ours) {
      expected = result;
    } else if (result != expected) {
      std::size_t place = 0;
      while (place < result.size() && place < expected.size() && result[place] == expected[place]) {
        ++place;
      }
      std::printf("MISMATCH %s, %s: ours %s, %s %s\n", row.operation.c_str(), row.input.c_str(),
                  excerpt(expected, place).c_str(), contestant.name.c_str(),
                  excerpt(result, place).c_str());
      ++failures;
      same = false;
    }
  }
  return same;
}

void Bench::measure(Row& row) const {
  const Pace& pace = options.quick ? quickPace : fullPace;
  std::vector<Contestant*> turns;
  for (Contestant& contestant : row.contestants) {
    if (!options.oursOnly || contestant.role == Role::Ours) turns.push_back(&contestant);
  }
  const long share = row.mostRuns / 2;  // the other half is for the calibration
  std::vector<long> runs;
  runs.reserve(turns.size());
  for (Contestant* contestant : turns) {
    runs.push_back(calibrate(*contestant, pace.sample, row.mostRuns > 0 ? 1 : 0));
  }
  std::vector<std::vector<double>> times(turns.size());
  double used = 0;
  const double budget = pace.budget * static_cast<double>(turns.size());
  for (std::size_t round = 0; round < pace.mostRounds; ++round) {
    if (round >= pace.leastRounds && used > budget) break;
    if (share > 0 && static_cast<long>(round) >= share) break;
    for (std::size_t i = 0; i < turns.size(); ++i) {
      const double time = turns[i]->time(runs[i]);
      used += time;
      times[i].push_back(time / static_cast<double>(runs[i]));
    }
  }
  for (std::size_t i = 0; i < turns.size(); ++i) {
    turns[i]->statistics = statisticsOf(std::move(times[i]));
  }
}

void Bench::run(Row row) {
  if (!wants(row.operation, row.input)) return;
  if (!agree(row)) return;
  if (!options.checkOnly) measure(row);
  if (options.detail) {
    std::printf("%s, %s\n", row.operation.c_str(), row.input.c_str());
    for (const Contestant& c : row.contestants) {
      std::printf("  %-24s best %14.1f ns  median %14.1f ns  spread %5.1f %%\n", c.name.c_str(),
                  c.statistics.best, c.statistics.median, 100 * c.statistics.spread);
    }
  } else {
    std::fprintf(stderr, ".");
  }
  // The contestants' inputs are let go; the figures stay.
  for (Contestant& contestant : row.contestants) {
    contestant.time = nullptr;
    contestant.result = nullptr;
  }
  measured.push_back(std::move(row));
}

}  // namespace bench
