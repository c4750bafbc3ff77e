#include "Benchmark.h"

#include <algorithm>

namespace bench {

namespace {

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

}  // namespace

double Stopwatch::seconds() const noexcept {
  LARGE_INTEGER frequency;
  QueryPerformanceFrequency(&frequency);
  return static_cast<double>(ticks_) / static_cast<double>(frequency.QuadPart);
}

Result play(const Benchmark& benchmark, int rounds) {
  const BaselineComparison comparison = benchmark.prepare();
  comparison.subject();
  comparison.floor();
  std::vector<double> subjects;
  std::vector<double> floors;
  std::vector<double> ratios;
  for (int round = 0; round < rounds; ++round) {
    // Whoever comes second finds warmer caches: they take turns.
    const bool subject_first = round % 2 == 0;
    const double first = subject_first ? comparison.subject() : comparison.floor();
    const double second = subject_first ? comparison.floor() : comparison.subject();
    subjects.push_back(subject_first ? first : second);
    floors.push_back(subject_first ? second : first);
    ratios.push_back(subjects.back() / floors.back());
  }
  const auto [smallest, largest] = std::minmax_element(ratios.begin(), ratios.end());
  return {median(subjects), median(floors), median(ratios), *smallest, *largest};
}

std::vector<Benchmark>& benchmarks() {
  static std::vector<Benchmark> rows;
  return rows;
}

}  // namespace bench
