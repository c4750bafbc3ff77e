#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

#include "CallCounter.h"

namespace bench {

/// What some work took: seconds, and while a `CallCounter` lives, how many calls and messages.
struct Reading {
  double seconds = 0;
  double calls = 0;
  double messages = 0;
};

/// Reads time and counts while it runs; starts stopped.
class Stopwatch {
 public:
  void start() noexcept;
  void stop() noexcept;
  /// The share of one of these repetitions.
  Reading reading(int repetitions = 1) const noexcept;

 private:
  LARGE_INTEGER started_ = {};
  LONGLONG ticks_ = 0;
  Counts counts_at_start_;
  Counts counts_;
};

/// Does one round of work and returns what counts of it, for one repetition.
using Measurement = std::function<Reading()>;

/// Three ways to the same result. The fair baseline does what the program has to do by hand: the same calls of the
/// host, the same content of the controls, the same grip, and it shows itself at the same time. The bare baseline is
/// the least that gives the same window.
struct BaselineComparison {
  Measurement subject;
  Measurement fair;
  Measurement bare;
};

/// One row of the table.
struct Benchmark {
  std::string name;
  double fair_goal;                             ///< how many times the fair baseline the subject may take
  double bare_goal;                             ///< how many times the bare baseline; 0 for none
  double call_goal;                             ///< how many times the fair baseline's calls it may make
  double message_goal;                          ///< how many times the fair baseline's messages it may send
  std::function<BaselineComparison()> prepare;  ///< called once, before the row's first round
};

/// The ratio of subject and baseline, round by round.
struct Ratio {
  double median;
  double low, high;  ///< the 95 % interval of the median
};

/// What one row has shown: medians over the rounds, and the counts of one further round.
struct Result {
  double subject = 0, fair = 0, bare = 0;  ///< in seconds
  Ratio to_fair{}, to_bare{};
  int rounds = 0;
  Reading subject_counts, fair_counts;
};

/// Plays the rounds of a row, the three in turn, after one that does not count: at least `least_rounds`, and then until
/// the intervals of both ratios are narrower than 0.04, but no more than `most_rounds`.
Result play(const Benchmark& benchmark, int most_rounds);

/// One round of subject and fair baseline with their calls and messages, after one that does not count.
std::pair<Reading, Reading> count(const BaselineComparison& comparison);

inline constexpr int least_rounds = 25;

/// The rows, in the order in which the linker put them.
std::vector<Benchmark>& benchmarks();

/// Stands at namespace scope in a row's source file.
struct Registration {
  explicit Registration(Benchmark benchmark) { benchmarks().push_back(std::move(benchmark)); }
};

}  // namespace bench
