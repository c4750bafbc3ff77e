#pragma once

#include <string>

#include "RuleStore.h"

namespace workbench {

/// A setting that a user is changing, or a new one. It is saved only if no other program has changed the stored one
/// meanwhile; a refused save adopts what is stored now, so that the user, who sees a message, can save once more.
class SettingEditor {
 public:
  /// `setting` is what is stored, or without number a new one.
  SettingEditor(RuleStore& store, StoredSetting setting) : store_(store), stored_(std::move(setting)) {}

  const SymbolSourceSetting& setting() const noexcept { return stored_.setting; }

  /// Stores what was entered. Returns what the user should know and do if the store refuses, else nothing.
  std::wstring save(const SymbolSourceSetting& entered);

 private:
  void store(const SymbolSourceSetting& entered);
  std::wstring adopt_conflict();

  RuleStore& store_;
  StoredSetting stored_;
};

}  // namespace workbench
