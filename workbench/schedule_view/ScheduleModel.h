#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "Calendar.h"
#include "Progress.h"
#include "RuleFiles.h"
#include "ScheduleRow.h"

namespace workbench {

/// A rule or a setting with its number in the store.
template <class Item>
struct Numbered {
  long number = 0;
  Item item;

  bool operator==(const Numbered&) const = default;
};

/// Everything that dates depend on. Rules and settings come by ascending number, calendars by name.
struct ScheduleData {
  std::vector<Numbered<schedule::NamedRule>> rules{};
  std::vector<Numbered<schedule::NamedSetting>> settings{};
  std::vector<schedule::Calendar> calendars{};

  bool operator==(const ScheduleData&) const = default;
};

/// What the user wants to see.
struct ScheduleChoice {
  long rule = 0;           ///< the rule with this number, for each setting that uses it; or
  long setting = 0;        ///< the setting with this number
  std::string calendar{};  ///< in place of the settings' own calendars; empty: those
  schedule::Month first{};
  int months = 12;
  /// In place of `first` and `months`: every contract of which a day lies in this year.
  std::optional<std::chrono::year> year{};
  bool estimates = false;
};

/// Why a contract needs the user's attention.
enum Attention : std::uint8_t {
  attention_none = 0,
  attention_closed_roll = 1,      ///< the exchange is closed on the roll day
  attention_roll_not_later = 2,   ///< the roll day is not after that of the contract before
  attention_beyond_calendar = 4,  ///< a day is not known, or it is not known whether the exchange is open on it
  attention_no_date = 8,          ///< a number of the rule has no meaning
};

struct ScheduleLine {
  schedule::ScheduleRow row;
  std::string calendar;  ///< the name of the calendar that the dates rest on
  std::uint8_t attention = attention_none;
  /// In a comparison the dates before the change, if they were others.
  std::optional<schedule::ContractDates> before{};
};

/// Why something has no dates.
enum class NoDatesReason { none, nothing_selected, no_rule, rule_missing, no_calendar, calendar_missing };

struct Schedule {
  std::vector<ScheduleLine> lines{};
  NoDatesReason reason = NoDatesReason::none;  ///< set if there are no lines for that reason
  std::string subject{};                       ///< the rule or calendar that is missing
  std::set<std::string> calendar_names{};
  /// The calendar that all lines rest on; nothing if there are several.
  std::optional<schedule::Calendar> calendar{};
  /// The first day that the shortest calendar of the lines does not know any more.
  std::optional<schedule::Day> unknown_from{};
  /// The first day that a calendar knows, if dates of its lines rest on days before it; the latest of several.
  std::optional<schedule::Day> unknown_before{};
};

/// The contracts of what the user chose, setting by setting.
Schedule make_schedule(const ScheduleData& data, const ScheduleChoice& choice, const schedule::Progress& progress = {});

/// The contracts of every setting whose dates within the chosen months differ between `before` and `now`, and of every
/// rule without settings if the choice names a calendar. The selection is ignored. A setting that is only in one of the
/// two is left out, since there is nothing to compare it with.
Schedule compare_schedules(const ScheduleData& before, const ScheduleData& now, const ScheduleChoice& choice,
                           const schedule::Progress& progress = {});

/// The lines as the writers of files take them.
std::vector<schedule::ScheduleRow> rows_of(const Schedule& schedule);

}  // namespace workbench
