#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <ostream>

#include "RuleStore.h"

/// A rule of this name whose numbers are all different from those of a new rule.
workbench::Rule sample_rule(const std::wstring& name);

/// Two rules and three settings: two use the first rule and one uses none.
workbench::StoreContent sample_content();

/// Names that must travel unchanged.
std::vector<std::wstring> awkward_names();

/// What a store holds now.
struct StoreSnapshot {
  std::vector<workbench::StoredRule> rules;
  std::vector<workbench::SymbolSourceSetting> settings;

  bool operator==(const StoreSnapshot&) const = default;
};

StoreSnapshot holdings(workbench::RuleStore& store);

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

}  // namespace workbench
