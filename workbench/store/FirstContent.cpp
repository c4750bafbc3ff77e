#include "FirstContent.h"

#include <string_view>

#include "FirstContentData.h"
#include "ShippedCalendars.h"
#include "Wtf8.h"

namespace workbench {

namespace {

/// Takes the text up to the next separator, or all of it, off the front.
std::string_view take_until(std::string_view& text, char separator) {
  const std::string_view taken = text.substr(0, text.find(separator));
  text.remove_prefix(taken.size() < text.size() ? taken.size() + 1 : taken.size());
  return taken;
}

/// Calls `read` with each line after the line of field names.
template <class Read>
void for_each_record(std::string_view lines, Read&& read) {
  take_until(lines, '\n');
  while (!lines.empty()) read(take_until(lines, '\n'));
}

Rule read_rule(std::string_view line) {
  Rule rule;
  rule.name = from_wtf8(take_until(line, '\t'));
  for (const RuleColumn& column : rule_columns) rule.*column.value = std::stol(std::string(take_until(line, '\t')));
  return rule;
}

SymbolSourceSetting read_setting(std::string_view line) {
  SymbolSourceSetting setting;
  setting.name = from_wtf8(take_until(line, '\t'));
  setting.rule_name = from_wtf8(take_until(line, '\t'));
  setting.calendar = from_wtf8(take_until(line, '\t'));
  setting.months = from_wtf8(take_until(line, '\t'));
  setting.last_day_is_expiration = line == "expiration";
  return setting;
}

}  // namespace

StoreContent first_content() {
  StoreContent content;
  for_each_record(first_rules, [&](std::string_view line) { content.rules.push_back(read_rule(line)); });
  for_each_record(first_settings, [&](std::string_view line) { content.settings.push_back(read_setting(line)); });
  for (schedule::Calendar& calendar : schedule::shipped_calendars())
    content.calendars.push_back({std::move(calendar), schedule::shipped_calendars_version});
  return content;
}

}  // namespace workbench
