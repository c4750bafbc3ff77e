#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace workbench::schedule {

/// The languages of the messages.
enum class Language { english, chinese };

/// The kinds of messages about a line of a file or about a command. Each kind has its message in the table of
/// Mistakes.cpp.
enum class MistakeKind {
  not_utf8,
  not_text,
  unterminated_quote,
  misplaced_quote,
  field_count,
  unknown_key,
  repeated_key,
  missing_key,
  calendar_name,
  day,
  day_order_of_range,
  weekend,
  calendar_columns,
  repeated_day,
  descending_day,
  day_on_weekend,
  day_outside,
  missing_column,
  repeated_column,
  contract,
  repeated_contract,
  no_rule_name,
  icalendar_line,
  icalendar_end,
  icalendar_day,
  icalendar_repeats,
  icalendar_no_start,
  icalendar_end_before_start,
  icalendar_no_event,
  stored_name,
  number,
  number_range,
  months,
  last_trading_day,
  repeated_rule,
  edited_name,
  setting_rule_missing,
  setting_calendar_missing,
  json,
  json_text,
  unknown_argument,
  missing_value,
  bad_value,
  second_command,
  missing_option,
  unreadable_file,
  unknown_rule,
  unknown_calendar,
  calendar_needed,
  calendar_missing,
  setting_without_calendar,
  setting_of_unknown_calendar,
  no_delivery_month,
  ignored_column,
  closed_date,
  date_beyond_calendar,
  no_rule_found,
  no_date_counts,
  one_rule_found,
  rules_found,
  unsuitable_option,
  cancelled,
  not_csv,
  import_summary,
  nothing_imported,
  icalendar_needs,
  calendar_says_itself,
  new_calendar,
  calendar_range,
  calendar_summary,
  same_calendar,
  older_calendar,
  output_not_written,
  file_not_written,
  last_kind,
};

/// One mistake in a file: its line, counted from 1, and what the message is about. Line 0: it is about no line.
struct Mistake {
  std::size_t line = 0;
  MistakeKind kind{};
  std::vector<std::string> parameters{};  ///< in place of %1, %2, ... in the message

  bool operator==(const Mistake&) const = default;
};

/// What was expected and what was found, without file and line. Long parameters are cut, and control characters and
/// bytes that are not UTF-8 are replaced, so that the message is always one printable line.
std::string describe(const Mistake& mistake, Language language = Language::english);

/// The same in the form file:line: message.
std::string describe(std::string_view file, const Mistake& mistake, Language language = Language::english);

}  // namespace workbench::schedule
