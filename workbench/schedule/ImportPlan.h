#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "RuleFiles.h"

namespace workbench::schedule {

/// What an import does with one record of the file.
enum class ImportAction { add, change, leave };

struct PlannedRule {
  std::size_t line = 0;
  ImportAction action = ImportAction::add;
  NamedRule rule;
};

struct PlannedSetting {
  std::size_t line = 0;
  ImportAction action = ImportAction::add;
  NamedSetting setting;
};

/// What an import would do, before anything is done. With refused records nothing may be done.
struct ImportPlan {
  std::vector<PlannedRule> rules{};
  /// Every setting that there is afterwards, if the file speaks of settings, since their names may repeat.
  std::optional<std::vector<PlannedSetting>> settings{};
  std::vector<NamedSetting> removed_settings{};
  std::vector<Mistake> refused{};
  std::vector<Mistake> warnings{};  ///< names that the editor would refuse
  std::vector<std::string> ignored_columns{};

  std::size_t count(ImportAction action) const;
};

/// Plans the import of a file into a store with these rules and settings. A rule with the name of a stored one changes
/// it; stored rules that the file does not name are left alone; a name that comes twice in the file is refused, and so
/// is a value that a store may not keep.
ImportPlan plan_import(const RuleFile& file, std::span<const NamedRule> rules, std::span<const NamedSetting> settings);

}  // namespace workbench::schedule
