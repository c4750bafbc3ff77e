#pragma once

#include <array>

#include "Table.h"

/// The numbers of a rule, in the order of the parameters of `add_rule` and `update_rule`.
inline constexpr std::array<long, 9> number_fields = {
    KVFIELD_ROLL_OFFSET,  KVFIELD_DAY_TYPE,      KVFIELD_DAY_MODE,
    KVFIELD_DAY_OF_MONTH, KVFIELD_DAY_MONTH,     KVFIELD_WEEK_ORDINAL,
    KVFIELD_WEEKDAY,      KVFIELD_WEEKDAY_MONTH, KVFIELD_MOVE_TO_NEXT_TRADING_DAY};

/// Selects one rule, or every rule for 0.
class RuleFilter final : public Object<IkvRuleFilter> {
 public:
  long rule() const { return rule_; }

  HRESULT STDMETHODCALLTYPE SetRuleID(long rule) override {
    rule_ = rule;
    return S_OK;
  }
  NOT_CALLED(7)

 private:
  long rule_ = 0;
};

/// The storage object: it keeps the rules in memory, and knows no symbol source settings.
class Storage final : public Object<IkvStorage, IkvStorageSession, IkvSymbolSourceService, IkvExpirationRuleService> {
 public:
  const std::map<long, Row>& rules() const { return rules_; }

  long add(const std::wstring& name, const std::array<long, 9>& numbers) {
    const long id = rules_.empty() ? 1 : rules_.rbegin()->first + 1;
    rules_[id] = row(id, name, numbers);
    return id;
  }

  HRESULT STDMETHODCALLTYPE load_symbol_source_settings(IkvRuleFilter*, IKV_kvudfcom::IkvTable*) override {
    return S_OK;
  }

  // The module creates tables and filters through the class objects of this host, so it passes none but these.
  HRESULT STDMETHODCALLTYPE load_rules(IkvRuleFilter* filter, IKV_kvudfcom::IkvTable* table) override {
    if (!table) return E_POINTER;
    return com_method([&] {
      const long wanted = filter ? static_cast<RuleFilter*>(filter)->rule() : 0;
      std::vector<Row> rows;
      for (const auto& [id, rule] : rules_)
        if (wanted == 0 || wanted == id) rows.push_back(rule);
      static_cast<Table*>(table)->load(std::move(rows));
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE delete_rule(long id, long* ok) override {
    return hand_out(ok, rules_.erase(id) == 1 ? 1 : 0);
  }
  HRESULT STDMETHODCALLTYPE add_rule(BSTR name, long offset, long type, long mode, long day, long day_month,
                                     long ordinal, long weekday, long weekday_month, long moved, long* id) override {
    if (!id) return E_POINTER;
    return com_method([&] {
      *id = add(text(name), {offset, type, mode, day, day_month, ordinal, weekday, weekday_month, moved});
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE update_rule(long id, BSTR name, long offset, long type, long mode, long day, long day_month,
                                        long ordinal, long weekday, long weekday_month, long moved) override {
    if (rules_.count(id) == 0) return E_INVALIDARG;
    return com_method([&] {
      rules_[id] = row(id, text(name), {offset, type, mode, day, day_month, ordinal, weekday, weekday_month, moved});
      return S_OK;
    });
  }
  NOT_CALLED(8)
  NOT_CALLED(9)

 private:
  static std::wstring text(BSTR text) { return {text ? text : L"", SysStringLen(text)}; }

  static Row row(long id, const std::wstring& name, const std::array<long, 9>& numbers) {
    Row row;
    row[KVFIELD_RULE_ID].number = id;
    row[KVFIELD_RULE_NAME].text = name;
    for (std::size_t i = 0; i < numbers.size(); ++i) row[number_fields[i]].number = numbers[i];
    return row;
  }

  std::map<long, Row> rules_;
};
