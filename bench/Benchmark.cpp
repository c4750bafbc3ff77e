#include "Benchmark.h"

#include <algorithm>
#include <cmath>

namespace bench {

namespace {

constexpr double widest_interval = 0.04;
constexpr double normal_95 = 1.96;

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

/// The median of ratios, with the interval that its order statistics give.
Ratio ratio_of(const std::vector<double>& subjects, const std::vector<double>& baselines) {
  std::vector<double> ratios(subjects.size());
  std::transform(subjects.begin(), subjects.end(), baselines.begin(), ratios.begin(), std::divides<>());
  std::sort(ratios.begin(), ratios.end());
  const auto count = static_cast<double>(ratios.size());
  const double reach = normal_95 * std::sqrt(count);
  const auto low = static_cast<std::size_t>(std::max(0.0, std::floor((count - reach) / 2) - 1));
  const auto high = static_cast<std::size_t>(std::min(count - 1, std::ceil((count + reach) / 2)));
  return {ratios[ratios.size() / 2], ratios[low], ratios[high]};
}

}  // namespace

void Stopwatch::start() noexcept {
  QueryPerformanceCounter(&started_);
  counts_at_start_ = CallCounter::counts();
}

void Stopwatch::stop() noexcept {
  const Counts now = CallCounter::counts();
  counts_.calls += now.calls - counts_at_start_.calls;
  counts_.messages += now.messages - counts_at_start_.messages;
  LARGE_INTEGER stopped;
  QueryPerformanceCounter(&stopped);
  ticks_ += stopped.QuadPart - started_.QuadPart;
}

Reading Stopwatch::reading(int repetitions) const noexcept {
  LARGE_INTEGER frequency;
  QueryPerformanceFrequency(&frequency);
  const double share = 1.0 / repetitions;
  return {static_cast<double>(ticks_) / static_cast<double>(frequency.QuadPart) * share,
          static_cast<double>(counts_.calls) * share, static_cast<double>(counts_.messages) * share};
}

Result play(const Benchmark& benchmark, int most_rounds) {
  const BaselineComparison comparison = benchmark.prepare();
  const Measurement* ways[] = {&comparison.subject, &comparison.fair, &comparison.bare};
  constexpr std::size_t count_of_ways = std::size(ways);
  for (const Measurement* way : ways) (*way)();
  std::vector<double> times[count_of_ways];
  const auto is_narrow = [&] {
    return std::all_of(times + 1, std::end(times), [&](const std::vector<double>& floor) {
      const Ratio ratio = ratio_of(times[0], floor);
      return ratio.high - ratio.low < widest_interval;
    });
  };
  int rounds = 0;
  for (; rounds < most_rounds && (rounds < least_rounds || !is_narrow()); ++rounds) {
    // The later of the three finds warmer caches, so the order changes with each round.
    for (std::size_t turn = 0; turn < count_of_ways; ++turn) {
      const std::size_t way = (turn + static_cast<std::size_t>(rounds)) % count_of_ways;
      times[way].push_back((*ways[way])().seconds);
    }
  }
  const auto [subject_counts, fair_counts] = count(comparison);
  return {
      median(times[0]), median(times[1]), median(times[2]), ratio_of(times[0], times[1]), ratio_of(times[0], times[2]),
      rounds,           subject_counts,   fair_counts};
}

std::pair<Reading, Reading> count(const BaselineComparison& comparison) {
  const CallCounter counter;
  comparison.subject();
  comparison.fair();
  const Reading subject = comparison.subject();
  return {subject, comparison.fair()};
}

std::vector<Benchmark>& benchmarks() {
  static std::vector<Benchmark> rows;
  return rows;
}

}  // namespace bench
