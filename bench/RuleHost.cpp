#include "RuleHost.h"

#include <cstdio>

#include "MemoryRuleStore.h"

namespace bench {

namespace {

constexpr int prime_step = 7919;  // its multiples modulo a number that it does not divide are all different

std::shared_ptr<workbench::RuleStore> filled_store(const std::vector<std::wstring>& names) {
  workbench::StoreContent content;
  for (const std::wstring& name : names) content.rules.push_back({name});
  auto store = std::make_shared<workbench::MemoryRuleStore>();
  store->replace_content(content);
  return store;
}

}  // namespace

std::vector<std::wstring> rule_names(int count) {
  std::vector<std::wstring> names;
  for (int index = 0; index < count; ++index) {
    wchar_t name[32] = {};
    _snwprintf(name, std::size(name) - 1, L"SHFE rule %05d", static_cast<int>(1LL * index * prime_step % count));
    names.emplace_back(name);
  }
  return names;
}

RuleHost::RuleHost(const std::vector<std::wstring>& names) : store_(filled_store(names)), classes_(store_, {}) {}

base::ComPtr<IDispatch> RuleHost::storage() const { return {workbench::create_storage_object(store_, {}), false}; }

}  // namespace bench
