#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>

#include "DeskWork.h"
#include "ServerRuleStore.h"
#include "TestSchema.h"

using namespace workbench;

namespace {

/// Reports to the test that a change begins, or that it is acknowledged.
void report(const DeskChange& change, bool acknowledged) {
  std::printf("%c %s\n", acknowledged ? '!' : '?', line_of(change).c_str());
  std::fflush(stdout);
}

}  // namespace

/// desk_writer USER SEED CHANGES: a workbench on the server of this run that makes so many random changes of the store,
/// and tries again after each conflict. A line on its standard output begins with ? before a change, and with ! once it
/// is acknowledged.
int wmain(int argc, wchar_t** argv) try {
  if (argc < 4) return EXIT_FAILURE;
  const auto store = open_server_store(TestSchema::options_as(argv[1]), {.may_create = false});
  const auto seed = static_cast<unsigned>(std::wcstoul(argv[2], nullptr, 10));
  DeskWorker(*store, "workbench" + std::to_string(seed), seed, &report).work(std::stoi(argv[3]));
  return EXIT_SUCCESS;
} catch (const std::exception& error) {
  std::fprintf(stderr, "desk_writer: %s\n", error.what());
  return EXIT_FAILURE;
}
