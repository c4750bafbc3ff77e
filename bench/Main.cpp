#include <objbase.h>
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "Benchmark.h"

namespace {

void print_row(const bench::Benchmark& row, const bench::Result& result) {
  std::printf("| %-37s | %7.0f | %7.0f | %7.0f | %4.2f (%4.2f-%4.2f) | %4.2f | %4.2f (%4.2f-%4.2f) | %4.2f | %6d |\n",
              row.name.c_str(), result.subject * 1e6, result.fair * 1e6, result.bare * 1e6, result.to_fair.median,
              result.to_fair.low, result.to_fair.high, row.fair_goal, result.to_bare.median, result.to_bare.low,
              result.to_bare.high, row.bare_goal, result.rounds);
  std::printf("| %-37s | %.0f calls and %.0f messages, by hand %.0f and %.0f\n", "", result.subject_counts.calls,
              result.subject_counts.messages, result.fair_counts.calls, result.fair_counts.messages);
  std::fflush(stdout);
}

void print_names() {
  for (const bench::Benchmark& row : bench::benchmarks()) std::puts(row.name.c_str());
}

void print_heading() {
  std::printf("Medians in microseconds, and the 95 %% interval of the ratios; goal 0: none.\n\n");
  std::printf("| %-37s | %7s | %7s | %7s | %-16s | %4s | %-16s | %4s | %6s |\n", "", "module", "by hand", "bare",
              "ratio to by hand", "goal", "ratio to bare", "goal", "rounds");
}

void print_times(int most_rounds, const char* name) {
  for (const bench::Benchmark& row : bench::benchmarks()) {
    if (row.name.find(name) != std::string::npos) print_row(row, bench::play(row, most_rounds));
  }
}

/// Prints how many times the baseline's count the subject's is. Returns whether that is within the goal.
bool print_count(const char* what, double subject, double baseline, double goal) {
  const double ratio = subject / baseline;
  std::printf(" %9.0f %s, %9.0f by hand, ratio %4.2f, goal %4.2f;", subject, what, baseline, ratio, goal);
  return ratio <= goal;
}

/// Returns whether the module keeps its goals in every row.
bool print_counts() {
  bool kept = true;
  for (const bench::Benchmark& row : bench::benchmarks()) {
    const auto [subject, fair] = bench::count(row.prepare());
    std::printf("%-37s", row.name.c_str());
    const bool calls = print_count("calls", subject.calls, fair.calls, row.call_goal);
    const bool messages = print_count("messages", subject.messages, fair.messages, row.message_goal);
    std::puts(calls && messages ? "" : " MISSED");
    std::fflush(stdout);
    kept = kept && calls && messages;
  }
  return kept;
}

}  // namespace

/// bench ROUNDS NAME: prints the rows whose name holds NAME, with at most that many rounds.
/// bench heading: prints what stands above the rows.
/// bench names: prints the names of all rows.
/// bench counts: prints calls and messages of every row, and ends with 1 when the module misses a goal.
int main(int argc, char** argv) {
  if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return EXIT_FAILURE;
  SetThreadPriority(GetCurrentThread(), THREAD_PRIORITY_HIGHEST);
  const std::string_view what = argc > 1 ? argv[1] : "heading";
  bool kept = true;
  if (what == "counts") {
    kept = print_counts();
  } else if (what == "names") {
    print_names();
  } else if (what == "heading") {
    print_heading();
  } else {
    print_times(std::max(std::atoi(argv[1]), bench::least_rounds), argc > 2 ? argv[2] : "");
  }
  CoUninitialize();
  return kept ? EXIT_SUCCESS : EXIT_FAILURE;
}
