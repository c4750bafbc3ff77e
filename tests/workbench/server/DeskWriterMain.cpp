#include <cstdio>
#include <cstdlib>
#include <exception>
#include <random>
#include <string>

#include "ServerRuleStore.h"
#include "TestSchema.h"

using namespace workbench;

namespace {

/// Reports to the test that a change of this rule begins, or that it is acknowledged.
void report(long rule, bool acknowledged) {
  std::printf(acknowledged ? "%ld\n" : "%ld?\n", rule);
  std::fflush(stdout);
}

/// Raises the offset of a random rule by 1 and returns whether no other workbench changed the rule meanwhile.
bool raise_once(RuleStore& store, std::mt19937& random) {
  const long number = static_cast<long>(random() % 5 + 1);
  StoredRule read = store.try_load_rule(number).value();
  read.rule.roll_offset = (read.rule.roll_offset + 1) % 100;
  report(number, false);
  try {
    store.update_rule(number, read.rule, read.revision);
  } catch (const StoreError& error) {
    if (error.kind() != StoreErrorKind::changed) throw;
    return false;
  }
  report(number, true);
  return true;
}

}  // namespace

/// desk_writer USER SEED CHANGES: a workbench on the server of this run that makes so many random changes of the five
/// rules of a store, and tries again after each conflict.
int wmain(int argc, wchar_t** argv) try {
  if (argc < 4) return EXIT_FAILURE;
  const auto store = open_server_store(TestSchema::options_as(argv[1]), {.may_create = false});
  std::mt19937 random(static_cast<unsigned>(std::wcstoul(argv[2], nullptr, 10)));
  for (unsigned left = static_cast<unsigned>(std::wcstoul(argv[3], nullptr, 10)); left > 0;)
    if (raise_once(*store, random)) --left;
  return EXIT_SUCCESS;
} catch (const std::exception& error) {
  std::fprintf(stderr, "desk_writer: %s\n", error.what());
  return EXIT_FAILURE;
}
