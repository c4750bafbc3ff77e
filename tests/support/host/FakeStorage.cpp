#include "FakeStorage.h"

#include <oleauto.h>

#include <algorithm>
#include <ostream>

#include "FakeTable.h"
#include "TextEncoding.h"

namespace test_support {
namespace {

std::optional<std::wstring> text_of(BSTR text) {
  if (!text) return std::nullopt;
  return std::wstring(text, SysStringLen(text));
}

/// The row that a service puts into a table.
template <class Stored>
HostRow loaded_row(const Stored& stored, const HostRow& odd_values) {
  HostRow row = row_of(stored);
  for (const auto& [id, value] : odd_values) {
    if (row.count(id) != 0) row[id] = value;
  }
  return row;
}

}  // namespace

void PrintTo(const HostRule& rule, std::ostream* out) {
  *out << rule.id << ' ' << (rule.name ? '"' + base::to_utf8(*rule.name) + '"' : "without a name") << ' '
       << rule.roll_offset << ' ' << rule.day_type << ' ' << rule.day_mode << ' ' << rule.day_of_month << ' '
       << rule.day_month << ' ' << rule.week_ordinal << ' ' << rule.weekday << ' ' << rule.weekday_month << ' '
       << rule.move_to_next_trading_day;
}

HRESULT FakeFilter::SetRuleID(long rule_id) noexcept {
  return calls().call("IkvRuleFilter::SetRuleID", {rule_id}, [&] {
    rule_id_ = rule_id;
    return S_OK;
  });
}

HRESULT FakeStorage::load_symbol_source_settings(IkvRuleFilter* filter, IKV_kvudfcom::IkvTable* table) noexcept {
  return calls().call("IkvSymbolSourceService::load_symbol_source_settings", {filter, table}, [&] {
    std::vector<HostRow> rows;
    for (const HostSetting& setting : host()->settings) rows.push_back(loaded_row(setting, host()->odd_values));
    static_cast<FakeTable*>(table)->load(std::move(rows));
    return S_OK;
  });
}

HRESULT FakeStorage::load_rules(IkvRuleFilter* filter, IKV_kvudfcom::IkvTable* table) noexcept {
  return calls().call("IkvExpirationRuleService::load_rules", {filter, table}, [&] {
    std::vector<HostRow> rows;
    for (const HostRule& rule : host()->rules) {
      if (filter && !static_cast<FakeFilter*>(filter)->selects(rule)) continue;
      rows.push_back(loaded_row(rule, host()->odd_values));
    }
    static_cast<FakeTable*>(table)->load(std::move(rows));
    return S_OK;
  });
}

HRESULT FakeStorage::delete_rule(long rule_id, long* ok) noexcept {
  return calls().call("IkvExpirationRuleService::delete_rule", {rule_id}, ok, [&] {
    const auto rule = find(rule_id);
    *ok = rule != host()->rules.end() ? 1 : 0;
    if (*ok != 0) host()->rules.erase(rule);
    return S_OK;
  });
}

HRESULT FakeStorage::add_rule(BSTR name, long roll_offset, long day_type, long day_mode, long day_of_month,
                              long day_month, long week_ordinal, long weekday, long weekday_month,
                              long move_to_next_trading_day, long* rule_id) noexcept {
  return calls().call(
      "IkvExpirationRuleService::add_rule",
      {name, roll_offset, day_type, day_mode, day_of_month, day_month, week_ordinal, weekday, weekday_month,
       move_to_next_trading_day},
      rule_id, [&] {
        long id = 1;
        for (const HostRule& rule : host()->rules) id = std::max(id, rule.id + 1);
        host()->rules.push_back({id, text_of(name), roll_offset, day_type, day_mode, day_of_month, day_month,
                                 week_ordinal, weekday, weekday_month, move_to_next_trading_day});
        *rule_id = id;
        return S_OK;
      });
}

HRESULT FakeStorage::update_rule(long rule_id, BSTR name, long roll_offset, long day_type, long day_mode,
                                 long day_of_month, long day_month, long week_ordinal, long weekday, long weekday_month,
                                 long move_to_next_trading_day) noexcept {
  return calls().call("IkvExpirationRuleService::update_rule",
                      {rule_id, name, roll_offset, day_type, day_mode, day_of_month, day_month, week_ordinal, weekday,
                       weekday_month, move_to_next_trading_day},
                      [&] {
                        const auto rule = find(rule_id);
                        if (rule == host()->rules.end()) return HRESULT_FROM_WIN32(ERROR_NOT_FOUND);
                        *rule = {rule_id,
                                 text_of(name),
                                 roll_offset,
                                 day_type,
                                 day_mode,
                                 day_of_month,
                                 day_month,
                                 week_ordinal,
                                 weekday,
                                 weekday_month,
                                 move_to_next_trading_day};
                        return S_OK;
                      });
}

std::vector<HostRule>::iterator FakeStorage::find(long rule_id) noexcept {
  return std::find_if(host()->rules.begin(), host()->rules.end(),
                      [&](const HostRule& rule) { return rule.id == rule_id; });
}

}  // namespace test_support
