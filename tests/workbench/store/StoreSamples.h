#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <ostream>

#include "RuleStore.h"

/// A rule of this name whose numbers are all different from those of a new rule.
workbench::Rule sample_rule(const std::wstring& name);

/// A setting of this name whose further values are all different from those of a new setting.
workbench::SymbolSourceSetting sample_setting(const std::wstring& name, const std::wstring& rule_name);

/// A calendar of this name with two closed days, one of them with a reason.
workbench::StoredCalendar sample_calendar(const std::string& name);

/// Two rules, three settings, of which two use the first rule and one uses none, and a calendar.
workbench::StoreContent sample_content();

/// Names that must travel unchanged.
std::vector<std::wstring> awkward_names();

/// What a store holds now.
struct StoreSnapshot {
  std::vector<workbench::StoredRule> rules;
  std::vector<workbench::StoredSetting> settings;
  std::vector<workbench::StoredCalendar> calendars{};

  bool operator==(const StoreSnapshot&) const = default;
};

StoreSnapshot snapshot_of(workbench::RuleStore& store);

/// The settings of a store without their numbers and revisions.
std::vector<workbench::SymbolSourceSetting> settings_of(workbench::RuleStore& store);

/// A copy of the store that does not say who changed what, which no two stores have in common.
workbench::StoreCopy copy_without_changes(workbench::RuleStore& store);

/// The error with which `call` was refused, if it was.
template <class Call>
std::optional<workbench::StoreError> refusal(Call&& call) {
  try {
    call();
    return std::nullopt;
  } catch (const workbench::StoreError& error) {
    return error;
  }
}

/// The kind of that error.
template <class Call>
std::optional<workbench::StoreErrorKind> refusal_kind(Call&& call) {
  const auto error = refusal(call);
  return error ? std::optional(error->kind()) : std::nullopt;
}

namespace workbench {

void PrintTo(StoreErrorKind kind, std::ostream* stream);
void PrintTo(const StoredRule& rule, std::ostream* stream);
void PrintTo(const StoredChange& change, std::ostream* stream);

}  // namespace workbench
