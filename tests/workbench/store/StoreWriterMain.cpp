#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>

#include "FirstContent.h"
#include "Owned.h"
#include "RawDatabase.h"
#include "SqliteRuleStore.h"

using namespace workbench;

namespace {

/// Reports to the test that change `number` is acknowledged.
void acknowledge(unsigned number) {
  std::printf("%u\n", number);
  std::fflush(stdout);
}

void add_rules(RuleStore& store, const std::wstring& name, unsigned count) {
  for (unsigned number = 0; number < count; ++number) {
    store.add_rule({.name = name + std::to_wstring(number)});
    acknowledge(number);
  }
}

/// Adds 1 to the number that is the rule's name, unless another program changed the rule after it was read.
bool count_once(RuleStore& store, long rule) try {
  StoredRule read = *store.try_load_rule(rule);
  const unsigned next = static_cast<unsigned>(std::stoul(read.rule.name)) + 1;
  read.rule.name = std::to_wstring(next);
  Sleep(1);
  store.update_rule(rule, read.rule, read.revision);
  acknowledge(next);
  return true;
} catch (const StoreError& error) {
  if (error.kind() != StoreErrorKind::changed) throw;
  return false;
}

unsigned count_up(RuleStore& store, long rule, unsigned times) {
  const base::KernelHandle start(OpenEventW(SYNCHRONIZE, FALSE, L"zdExpirationRules.counting"));
  acknowledge(0);
  WaitForSingleObject(start.get(), INFINITE);
  unsigned refused = 0;
  for (unsigned done = 0; done < times;) ++(count_once(store, rule) ? done : refused);
  return refused;
}

[[noreturn]] void hold(const std::filesystem::path& path) {
  RawDatabase file(path);
  if (file.run("BEGIN IMMEDIATE") != SQLITE_OK) throw std::runtime_error("the file is not to be had");
  acknowledge(0);
  Sleep(INFINITE);
  std::abort();
}

unsigned number_of(const wchar_t* argument) { return static_cast<unsigned>(std::wcstoul(argument, nullptr, 10)); }

}  // namespace

/// store_writer FILE add NAME COUNT: adds COUNT rules whose names begin with NAME.
/// store_writer FILE count RULE TIMES: adds 1 to the number in the name of rule RULE, until that happened TIMES times;
/// acknowledges 0 when it is ready and waits for the event of its test, then each new number and at last how many times
/// another host was there in between.
/// store_writer FILE rename RULE NAME: gives a rule another name.
/// store_writer FILE hold 0: is in the middle of a change, which it acknowledges, until it is killed.
int wmain(int argc, wchar_t** argv) try {
  if (argc < 4) return EXIT_FAILURE;
  const std::wstring task = argv[2];
  const auto store = open_sqlite_store(argv[1], {first_content(), std::chrono::seconds(30)});
  if (task == L"hold") hold(argv[1]);
  if (argc < 5) return EXIT_FAILURE;
  const auto rule = static_cast<long>(number_of(argv[3]));
  if (task == L"add") add_rules(*store, argv[3], number_of(argv[4]));
  if (task == L"count") acknowledge(count_up(*store, rule, number_of(argv[4])));
  if (task == L"rename") store->update_rule(rule, {.name = argv[4]});
  return EXIT_SUCCESS;
} catch (const std::exception& error) {
  std::fprintf(stderr, "store_writer: %s\n", error.what());
  return EXIT_FAILURE;
}
