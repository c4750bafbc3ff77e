#include "StorageObject.h"

#include "ComPtr.h"
#include "PrivateInterfaces.h"
#include "StoreResult.h"

namespace workbench {

namespace {

/// The rows of a table that may be filled, or null.
std::shared_ptr<TableRows> empty_rows(IKV_kvudfcom::IkvTable* table) {
  base::ComPtr<ITableAccess> access;
  if (!table || FAILED(table->QueryInterface(IID_PPV_ARGS(&access)))) return nullptr;
  std::shared_ptr<TableRows> rows = access->rows();
  return rows->count() == 0 ? rows : nullptr;
}

/// The number of the rule that a filter selects; 0 for every rule.
bool read_filter(IkvRuleFilter* filter, long& number) {
  number = 0;
  if (!filter) return true;
  base::ComPtr<IRuleFilterAccess> access;
  if (FAILED(filter->QueryInterface(IID_PPV_ARGS(&access)))) return false;
  number = access->rule_number();
  return true;
}

TableRows::Numbers& numbers_of(TableRows& rows, long field) { return *rows.numbers(rows.find(field)); }
TableRows::Texts& texts_of(TableRows& rows, long field) { return *rows.texts(rows.find(field)); }

// Once the rows exist, the rest only moves values and cannot fail: a table is filled wholly or stays empty.

void fill_table(TableRows& rows, std::vector<StoredRule>&& rules) {
  rows.declare(KVFIELD_RULE_ID);
  rows.declare(KVFIELD_RULE_NAME);
  for (const RuleColumn& column : rule_columns) rows.declare(column.field);
  rows.resize(rules.size());

  auto& numbers = numbers_of(rows, KVFIELD_RULE_ID);
  auto& names = texts_of(rows, KVFIELD_RULE_NAME);
  for (std::size_t i = 0; i < rules.size(); ++i) {
    numbers[i] = rules[i].number;
    names[i] = std::move(rules[i].rule.name);
  }
  for (const RuleColumn& column : rule_columns) {
    auto& values = numbers_of(rows, column.field);
    for (std::size_t i = 0; i < rules.size(); ++i) values[i] = rules[i].rule.*column.value;
  }
}

void fill_table(TableRows& rows, std::vector<StoredSetting>&& settings) {
  rows.declare(KVFIELD_RULE_NAME);
  rows.declare(KVFIELD_SETTING_NAME);
  rows.resize(settings.size());

  auto& rule_names = texts_of(rows, KVFIELD_RULE_NAME);
  auto& names = texts_of(rows, KVFIELD_SETTING_NAME);
  for (std::size_t i = 0; i < settings.size(); ++i) {
    rule_names[i] = std::move(settings[i].setting.rule_name);
    names[i] = std::move(settings[i].setting.name);
  }
}

}  // namespace

template <class Body>
HRESULT StorageObject::store_method(const std::optional<Rule>& unsaved, Body&& body) noexcept {
  const auto fail = [&](const StoreError& error) {
    if (listeners_.failed) listeners_.failed(error, unsaved ? &*unsaved : nullptr);
    return store_result(error.kind());
  };
  return com_method([&] {
    try {
      return body();
    } catch (const StoreError& error) {
      return fail(error);
    } catch (const schedule::Cancelled&) {
      return fail({StoreErrorKind::cancelled, L"", "the user gave up waiting"});
    }
  });
}

HRESULT StorageObject::load_symbol_source_settings(IkvRuleFilter*, IKV_kvudfcom::IkvTable* table) noexcept {
  return store_method(std::nullopt, [&] {
    const std::shared_ptr<TableRows> rows = empty_rows(table);
    if (!rows) return E_INVALIDARG;
    fill_table(*rows, store_->load_settings());
    return S_OK;
  });
}

std::vector<StoredRule> StorageObject::select_rules(long number) {
  if (number == 0) return store_->load_rules();
  loaded_revisions_.erase(number);
  std::optional<StoredRule> rule = store_->try_load_rule(number);
  if (!rule) return {};
  loaded_revisions_[number] = rule->revision;
  return {*std::move(rule)};
}

HRESULT StorageObject::load_rules(IkvRuleFilter* filter, IKV_kvudfcom::IkvTable* table) noexcept {
  return store_method(std::nullopt, [&] {
    const std::shared_ptr<TableRows> rows = empty_rows(table);
    long number = 0;
    if (!rows || !read_filter(filter, number)) return E_INVALIDARG;
    fill_table(*rows, select_rules(number));
    if (number != 0 && rows->count() == 0) lost_rule_ = rows;
    return S_OK;
  });
}

HRESULT StorageObject::delete_rule(long ruleId, long* ok) noexcept {
  if (!ok) return E_POINTER;
  *ok = 0;
  return store_method(std::nullopt, [&] {
    store_->delete_rule(ruleId, loaded_revision(ruleId));
    loaded_revisions_.erase(ruleId);
    *ok = 1;
    return S_OK;
  });
}

HRESULT StorageObject::add_rule(BSTR ruleName, long rollOffset, long dayType, long dayMode, long dayOfMonth,
                                long dayMonth, long weekOrdinal, long weekday, long weekdayMonth,
                                long moveToNextTradingDay, long* ruleId) noexcept {
  if (!ruleId) return E_POINTER;
  *ruleId = 0;
  std::optional<Rule> rule;
  return store_method(rule, [&] {
    rule = {text_of(ruleName), rollOffset,  dayType, dayMode,      dayOfMonth,
            dayMonth,          weekOrdinal, weekday, weekdayMonth, moveToNextTradingDay};
    const StoredRule added = store_->add_rule(*rule);
    *ruleId = added.number;
    note_restored(added);
    return S_OK;
  });
}

/// A client that saves a rule still holds the table of that rule; one that released it adds another rule.
void StorageObject::note_restored(const StoredRule& added) noexcept {
  const bool was_lost = !std::exchange(lost_rule_, {}).expired();
  if (!was_lost || !listeners_.restored) return;
  try {
    listeners_.restored(added);
  } catch (...) {
    // The rule is stored even if the message fails.
  }
}

std::optional<Revision> StorageObject::loaded_revision(long number) const {
  const auto found = loaded_revisions_.find(number);
  return found == loaded_revisions_.end() ? std::nullopt : std::optional(found->second);
}

HRESULT StorageObject::update_rule(long ruleId, BSTR ruleName, long rollOffset, long dayType, long dayMode,
                                   long dayOfMonth, long dayMonth, long weekOrdinal, long weekday, long weekdayMonth,
                                   long moveToNextTradingDay) noexcept {
  std::optional<Rule> rule;
  return store_method(rule, [&] {
    rule = {text_of(ruleName), rollOffset,  dayType, dayMode,      dayOfMonth,
            dayMonth,          weekOrdinal, weekday, weekdayMonth, moveToNextTradingDay};
    const std::optional<Revision> expected = loaded_revision(ruleId);
    const StoredRule updated = store_->update_rule(ruleId, *rule, expected);
    if (expected) loaded_revisions_[ruleId] = updated.revision;
    return S_OK;
  });
}

}  // namespace workbench
