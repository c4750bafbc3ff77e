#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>

#include "SqliteRuleStore.h"
#include "StoreOperations.h"

using namespace workbench;

namespace {

/// Tells the test that change `number` is acknowledged.
void acknowledge(unsigned number) {
  std::printf("%u\n", number);
  std::fflush(stdout);
}

}  // namespace

/// store_writer FILE stream FIRST: applies operation FIRST and all that follow, until it is killed.
/// store_writer FILE add NAME COUNT: adds COUNT rules whose names begin with NAME.
int wmain(int argc, wchar_t** argv) try {
  if (argc < 4) return EXIT_FAILURE;
  const auto store = open_sqlite_store(argv[1], {content_before_operations(), std::chrono::seconds(30)});
  if (argv[2] == std::wstring(L"stream")) {
    for (auto number = static_cast<unsigned>(std::wcstoul(argv[3], nullptr, 10));; ++number) {
      apply_operation(*store, number);
      acknowledge(number);
    }
  }
  const unsigned long count = argc > 4 ? std::wcstoul(argv[4], nullptr, 10) : 1;
  for (unsigned number = 0; number < count; ++number) {
    store->add_rule({.name = argv[3] + std::to_wstring(number)});
    acknowledge(number);
  }
  return EXIT_SUCCESS;
} catch (const std::exception& error) {
  std::fprintf(stderr, "store_writer: %s\n", error.what());
  return EXIT_FAILURE;
}
