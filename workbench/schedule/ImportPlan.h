#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "Calendar.h"
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
  /// All settings after the import, because their names may repeat; nothing if the file has no settings.
  std::optional<std::vector<PlannedSetting>> settings{};
  std::vector<NamedSetting> removed_settings{};
  std::vector<Mistake> refused{};
  /// Names that the editor would refuse, and rules and calendars of settings that will not exist, by line.
  std::vector<Mistake> warnings{};
  std::vector<std::string> ignored_columns{};
  bool changes_anything = false;  ///< another order of the settings is a change too
};

/// What a store holds before an import.
struct ImportTarget {
  std::span<const NamedRule> rules{};
  std::span<const NamedSetting> settings{};
  std::span<const Calendar> calendars{};
};

/// Plans the import of a file into a store. A rule with the name of a stored one changes it; stored rules that the file
/// does not name are left alone; a name that comes twice in the file is refused, and so is a value that a store may not
/// keep.
ImportPlan plan_import(const RuleFile& file, const ImportTarget& store, const Progress& progress = {});

}  // namespace workbench::schedule
