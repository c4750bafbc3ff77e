#include <algorithm>
#include <map>
#include <set>

#include "CalendarChange.h"
#include "CalendarFile.h"
#include "CommandContext.h"
#include "ICalendar.h"
#include "ImportPlan.h"
#include "TextTable.h"

namespace workbench::schedule {

namespace {

using Action = CommandArguments::Action;

const char* name_of(ImportAction action) {
  switch (action) {
    case ImportAction::add:
      return "add";
    case ImportAction::change:
      return "change";
    case ImportAction::leave:
      return "leave";
  }
  return "";
}

class StoreCommand : private CommandContext {
 public:
  StoreCommand(const CommandArguments& arguments, const CommandInput& input) : CommandContext(arguments, input) {}

  CommandOutput run() {
    return CommandContext::run([this] {
      switch (arguments_.action) {
        case Action::import_records:
          return import_records();
        case Action::export_records:
          return export_records();
        case Action::list_calendars:
          return list_calendars();
        default:
          return import_calendar();
      }
    });
  }

 private:
  bool is_json() const { return has_ending(arguments_.file, ".json"); }

  /// Whether the command is about this kind of records: in CSV about rules unless it says otherwise, in JSON about all.
  bool is_wanted(RecordKind kind) const {
    return arguments_.what ? *arguments_.what == kind : is_json() || kind == RecordKind::rules;
  }

  RuleFile read_records() {
    const std::string bytes = read(arguments_.file);
    const Progress reading = part(0, 40);
    if (!is_json())
      return is_wanted(RecordKind::rules) ? read_rules_csv(bytes, reading) : read_settings_csv(bytes, reading);
    RuleFile file = read_rules_json(bytes, reading);
    if (!is_wanted(RecordKind::rules)) file.rules.reset();
    if (!is_wanted(RecordKind::settings)) file.settings.reset();
    return file;
  }

  void import_records() {
    const RuleFile file = read_records();
    const bool has_records = (file.rules && !file.rules->empty()) || (file.settings && !file.settings->empty());
    const ImportPlan plan = plan_import(file, {input_.rules, input_.settings, input_.calendars}, part(40, 70));
    for (const std::string& column : plan.ignored_columns)
      report(MistakeKind::ignored_column, {arguments_.file, column});
    report(arguments_.file, plan.refused);
    report(arguments_.file, plan.warnings);
    if (!plan.refused.empty() && !has_records) throw CommandFailure{unusable_file};
    describe_plan(plan);
    if (!plan.refused.empty()) output_.exit_code = with_differences;
    if (!plan.refused.empty() || arguments_.dry_run || (!plan.changes_anything && !input_.store_is_new))
      return report(MistakeKind::nothing_imported, {});
    output_.change = wanted(plan);
  }

  static WantedChange wanted(const ImportPlan& plan) {
    WantedChange change;
    for (const PlannedRule& planned : plan.rules)
      if (planned.action != ImportAction::leave) change.rules.push_back(planned.rule);
    if (plan.settings) {
      change.settings.emplace();
      for (const PlannedSetting& planned : *plan.settings) change.settings->push_back(planned.setting);
    }
    return change;
  }

  /// Lists what the import does with each record of the file, by its line, and with the settings that are not there.
  void describe_plan(const ImportPlan& plan) {
    std::set<std::size_t> refused;
    for (const Mistake& mistake : plan.refused) refused.insert(mistake.line);
    std::multimap<std::size_t, std::vector<std::string>> rows;
    std::map<ImportAction, std::size_t> counts;
    const auto add = [&](std::size_t line, const char* what, const std::string& name, ImportAction action) {
      if (refused.contains(line)) return;
      ++counts[action];
      rows.emplace(line, std::vector{std::to_string(line), std::string(what), name, std::string(name_of(action))});
    };
    for (const PlannedRule& planned : plan.rules) add(planned.line, "rule", planned.rule.name, planned.action);
    if (plan.settings)
      for (const PlannedSetting& planned : *plan.settings)
        add(planned.line, "setting", planned.setting.name, planned.action);
    for (const std::size_t line : refused)
      rows.emplace(line, std::vector<std::string>{std::to_string(line), "", "", "refuse"});

    TextTable table{{"line", "what", "name", "action"}};
    for (auto& [line, row] : rows) table.push_back(std::move(row));
    for (const NamedSetting& setting : plan.removed_settings) table.push_back({"", "setting", setting.name, "remove"});
    output_.data = csv_text(table, part(70, 100));
    report(MistakeKind::import_summary,
           {std::to_string(counts[ImportAction::add]), std::to_string(counts[ImportAction::change]),
            std::to_string(counts[ImportAction::leave]), std::to_string(plan.removed_settings.size()),
            std::to_string(refused.size())});
  }

  void export_records() {
    if (is_json()) {
      std::optional<std::span<const NamedRule>> rules;
      std::optional<std::span<const NamedSetting>> settings;
      if (is_wanted(RecordKind::rules)) rules = input_.rules;
      if (is_wanted(RecordKind::settings)) settings = input_.settings;
      output_.file = write_rules_json(rules, settings, input_.progress);
      return;
    }
    std::string refused;
    output_.file = is_wanted(RecordKind::rules) ? write_rules_csv(input_.rules, refused, input_.progress)
                                                : write_settings_csv(input_.settings, refused, input_.progress);
    if (!output_.file) fail(with_differences, MistakeKind::not_csv, {refused});
  }

  void list_calendars() {
    TextTable table{{"name", "from", "to", "closed", "title"}};
    for (const Calendar& calendar : input_.calendars) {
      table.push_back({calendar.name, to_text(calendar.from), to_text(calendar.to),
                       std::to_string(calendar.closed.size()), calendar.title});
    }
    output_.data = aligned_text(table);
  }

  Calendar read_wanted_calendar() {
    const std::string bytes = read(arguments_.file);
    const bool is_complete = arguments_.first_day && arguments_.last_day && !arguments_.calendar_name.empty();
    const bool says_something = arguments_.first_day || arguments_.last_day || !arguments_.calendar_name.empty();
    const bool events = has_ending(arguments_.file, ".ics") || is_icalendar(bytes);
    constexpr const char* options = "--name, --from, --to";
    if (events && !is_complete) fail(wrong_arguments, MistakeKind::icalendar_needs, {arguments_.file, options});
    if (!events && says_something) fail(wrong_arguments, MistakeKind::calendar_says_itself, {arguments_.file, options});
    const Progress reading = part(0, 30);
    CalendarReading calendar =
        events ? read_icalendar(bytes, {arguments_.calendar_name, *arguments_.first_day, *arguments_.last_day}, reading)
               : read_calendar(bytes, reading);
    report(arguments_.file, calendar.mistakes);
    if (!calendar.calendar) throw CommandFailure{unusable_file};
    return *std::move(calendar.calendar);
  }

  void import_calendar() {
    const Calendar calendar = read_wanted_calendar();
    const CalendarPlan plan = plan_calendar(calendar, input_.calendars, input_.rules, input_.settings, part(30, 60));
    for (const Mistake& note : plan.notes) report(note.kind, note.parameters);
    if (plan.is_same) {
      if (input_.store_is_new && !arguments_.dry_run) output_.change.emplace();
      return;
    }
    // The days that change, and with an empty line between them the dates of rules that change with them.
    output_.data = csv_text(table_of(plan.days)) + "\r\n" + csv_text(table_of(plan.dates), part(60, 100));
    if (arguments_.dry_run) return report(MistakeKind::nothing_imported, {});
    output_.change = WantedChange{.calendar = calendar};
  }
};

}  // namespace

CommandOutput run_store_command(const CommandArguments& arguments, const CommandInput& input) {
  return StoreCommand(arguments, input).run();
}

}  // namespace workbench::schedule
