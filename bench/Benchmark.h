#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

namespace bench {

/// Counts time while it runs; starts stopped.
class Stopwatch {
 public:
  void start() noexcept { QueryPerformanceCounter(&started_); }
  void stop() noexcept {
    LARGE_INTEGER now;
    QueryPerformanceCounter(&now);
    ticks_ += now.QuadPart - started_.QuadPart;
  }
  double seconds() const noexcept;

 private:
  LARGE_INTEGER started_ = {};
  LONGLONG ticks_ = 0;
};

/// Does one round of work and returns the seconds that count, for one repetition.
using Measurement = std::function<double()>;

/// Two ways to the same end: the program's, and the floor, the cheapest that the system allows.
struct BaselineComparison {
  Measurement subject;
  Measurement floor;
};

/// One row of the table.
struct Benchmark {
  std::string name;
  double goal;                                  ///< how many times the floor the subject may take
  std::function<BaselineComparison()> prepare;  ///< called once, before the row's first round
};

/// What one row has shown: medians over the rounds, in seconds; the ratio is that of subject and floor round by round.
struct Result {
  double subject;
  double floor;
  double ratio;
  double smallest_ratio;
  double largest_ratio;
};

/// Plays the rounds of a row, subject and floor in turn, after one that does not count.
Result play(const Benchmark& benchmark, int rounds);

/// The rows, in the order in which the linker put them.
std::vector<Benchmark>& benchmarks();

/// Stands at namespace scope in a row's source file.
struct Registration {
  explicit Registration(Benchmark benchmark) { benchmarks().push_back(std::move(benchmark)); }
};

}  // namespace bench
