#include "JsonRecords.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "Ascii.h"
#include "DateList.h"
#include "EscapedText.h"
#include "TextEncoding.h"

namespace workbench {

namespace {

using Json = nlohmann::json;

std::string stored(const std::wstring& text) { return base::to_utf8(to_escaped_text(text)); }
std::string stored(const std::string& utf8) { return stored(base::from_utf8(utf8)); }

/// The column's name in small letters.
std::string key(std::string name) {
  std::ranges::transform(name, name.begin(), schedule::to_ascii_lower);
  return name;
}

Json as_object(const Rule& rule) {
  Json object{{"rulename", stored(rule.name)}};
  for (const RuleColumn& column : rule_columns) object[key(column.name)] = rule.*column.value;
  return object;
}

Json as_object(const SymbolSourceSetting& setting) {
  return {{"settingname", stored(setting.name)},
          {"rulename", stored(setting.rule_name)},
          {"calendarname", stored(setting.calendar)},
          {"months", stored(setting.months)},
          {"lasttradingday", setting.last_day_is_expiration ? 1 : 0}};
}

Json as_object(const StoredCalendar& calendar) {
  const schedule::Calendar& days = calendar.calendar;
  return {{"calendarname", stored(days.name)},
          {"title", stored(days.title)},
          {"covers", stored(days.covers)},
          {"source", stored(days.source)},
          {"firstday", schedule::to_text(days.from)},
          {"lastday", schedule::to_text(days.to)},
          {"weekend", days.weekend},
          {"shippedversion", calendar.shipped_version}};
}

Json as_object(const schedule::ClosedDay& closed) {
  return {{"day", schedule::to_text(closed.day)}, {"reason", stored(closed.reason)}};
}

Json as_object(const StoredRule& record) {
  Json object = as_object(record.rule);
  object.update({{"ruleid", record.number}, {"revision", record.revision}});
  return object;
}

Json as_object(const StoredSetting& record) {
  Json object = as_object(record.setting);
  object.update({{"settingid", record.number}, {"revision", record.revision}});
  return object;
}

Json as_object(const StoredChange& change) {
  return {{"changeid", change.id}, {"username", base::to_utf8(change.user)}, {"changedat", base::to_utf8(change.time)}};
}

Json as_object(const RowOfChange& changed) {
  const ChangedRow& row = *changed.row;
  Json object{{"changeid", changed.change->id}, {"tablename", row.table}, {"rowkey", row.key}};
  if (!row.old_row.empty()) object["oldrow"] = Json::parse(row.old_row, nullptr, false);
  if (!row.new_row.empty()) object["newrow"] = Json::parse(row.new_row, nullptr, false);
  return object;
}

template <class Record>
std::wstring batch(std::span<const Record> records) {
  Json array = Json::array();
  for (const Record& record : records) {
    Json object = as_object(record);
    object["position"] = array.size();
    array.push_back(std::move(object));
  }
  return base::from_utf8(array.dump());
}

}  // namespace

std::wstring rules_as_json(std::span<const Rule> rules) { return batch(rules); }

std::wstring settings_as_json(std::span<const SymbolSourceSetting> settings) { return batch(settings); }

std::wstring stored_rules_as_json(std::span<const StoredRule> rules) { return batch(rules); }

std::wstring stored_settings_as_json(std::span<const StoredSetting> settings) { return batch(settings); }

std::wstring calendars_as_json(std::span<const StoredCalendar> calendars) { return batch(calendars); }

std::wstring closed_days_as_json(std::span<const StoredCalendar> calendars) {
  Json array = Json::array();
  for (const StoredCalendar& calendar : calendars)
    for (const schedule::ClosedDay& closed : calendar.calendar.closed) {
      Json object = as_object(closed);
      object["calendarname"] = stored(calendar.calendar.name);
      array.push_back(std::move(object));
    }
  return base::from_utf8(array.dump());
}

std::wstring changes_as_json(std::span<const StoredChange> changes) { return batch(changes); }

std::wstring changed_rows_as_json(std::span<const RowOfChange> rows) { return batch(rows); }

std::string record_as_json(const StoredRule& record) { return as_object(record).dump(); }

std::string record_as_json(const StoredSetting& record) { return as_object(record).dump(); }

std::string record_as_json(const StoredCalendar& stored) {
  Json object = as_object(stored);
  Json& days = object["closeddays"] = Json::array();
  for (const schedule::ClosedDay& closed : stored.calendar.closed) days.push_back(as_object(closed));
  return object.dump();
}

std::optional<std::string> normalized_json(std::string_view json) {
  const Json value = Json::parse(json, nullptr, false);
  return value.is_discarded() ? std::nullopt : std::optional(value.dump());
}

std::optional<Rule> try_rule_from_json(std::string_view json) {
  const Json object = Json::parse(json, nullptr, false);
  if (!object.is_object()) return std::nullopt;
  const auto name = object.find("rulename");
  if (name == object.end() || !name->is_string()) return std::nullopt;
  const auto text = from_escaped_text(base::from_utf8(name->get<std::string>()));
  if (!text) return std::nullopt;
  Rule rule{.name = *text};
  for (const RuleColumn& column : rule_columns) {
    const auto value = object.find(key(column.name));
    if (value == object.end() || !value->is_number_integer()) return std::nullopt;
    rule.*column.value = value->get<long>();
  }
  return rule;
}

}  // namespace workbench
