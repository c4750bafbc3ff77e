#include <objbase.h>
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "Benchmark.h"

namespace {

constexpr int least_rounds = 5;
constexpr int usual_rounds = 25;

/// Subject and floor share one core, so that neither has a faster one than the other.
void pin_to_one_core() {
  SetProcessAffinityMask(GetCurrentProcess(), 1);
  SetThreadPriority(GetCurrentThread(), THREAD_PRIORITY_HIGHEST);
}

void print_row(const bench::Benchmark& row, const bench::Result& result) {
  std::printf("| %-44s | %9.3f | %9.3f | %5.2f | %5.2f - %5.2f | %4.2f |\n", row.name.c_str(), result.subject * 1e6,
              result.floor * 1e6, result.ratio, result.smallest_ratio, result.largest_ratio, row.goal);
  std::fflush(stdout);
}

}  // namespace

/// bench [ROUNDS [NAME]]: prints a table of the rows whose name holds NAME; times in microseconds.
int main(int argc, char** argv) {
  const int wanted = argc > 1 ? std::atoi(argv[1]) : usual_rounds;
  const int rounds = wanted < least_rounds ? least_rounds : wanted;
  const char* name = argc > 2 ? argv[2] : "";
  if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return EXIT_FAILURE;
  pin_to_one_core();
  std::printf("Medians of %d rounds, in microseconds.\n\n", rounds);
  std::printf("| %-44s | %9s | %9s | %5s | %13s | %4s |\n", "", "module", "floor", "ratio", "from - to", "goal");
  std::printf("|%s|%s|%s|%s|%s|%s|\n", std::string(46, '-').c_str(),
              "----------:", "----------:", "------:", "---------------", "-----:");
  for (const bench::Benchmark& row : bench::benchmarks()) {
    if (row.name.find(name) != std::string::npos) print_row(row, bench::play(row, rounds));
  }
  CoUninitialize();
  return EXIT_SUCCESS;
}
