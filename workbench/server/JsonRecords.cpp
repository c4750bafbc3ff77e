#include "JsonRecords.h"

#include <algorithm>
#include <nlohmann/json.hpp>

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
  std::ranges::transform(name, name.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  });
  return name;
}

template <class Record, class Convert>
std::wstring batch(std::span<const Record> records, const Convert& convert) {
  Json array = Json::array();
  for (const Record& record : records) {
    Json object = convert(record);
    object["position"] = array.size();
    array.push_back(std::move(object));
  }
  return base::from_utf8(array.dump());
}

Json as_json(const Rule& rule) {
  Json object{{"rulename", stored(rule.name)}};
  for (const RuleColumn& column : rule_columns) object[key(column.name)] = rule.*column.value;
  return object;
}

Json as_json(const SymbolSourceSetting& setting) {
  return {{"settingname", stored(setting.name)},
          {"rulename", stored(setting.rule_name)},
          {"calendarname", stored(setting.calendar)},
          {"months", stored(setting.months)},
          {"lasttradingday", setting.last_day_is_expiration ? 1 : 0}};
}

Json as_json(const StoredRule& record) {
  Json object = as_json(record.rule);
  object.update({{"ruleid", record.number}, {"revision", record.revision}});
  return object;
}

Json as_json(const StoredSetting& record) {
  Json object = as_json(record.setting);
  object.update({{"settingid", record.number}, {"revision", record.revision}});
  return object;
}

template <class Record>
std::wstring batch(std::span<const Record> records) {
  return batch(records, [](const Record& record) { return as_json(record); });
}

}  // namespace

std::wstring rules_as_json(std::span<const Rule> rules) { return batch(rules); }
std::wstring settings_as_json(std::span<const SymbolSourceSetting> settings) { return batch(settings); }
std::wstring stored_rules_as_json(std::span<const StoredRule> rules) { return batch(rules); }
std::wstring stored_settings_as_json(std::span<const StoredSetting> settings) { return batch(settings); }

std::wstring calendars_as_json(std::span<const StoredCalendar> calendars) {
  return batch(calendars, [](const StoredCalendar& calendar) {
    const schedule::Calendar& days = calendar.calendar;
    return Json{{"calendarname", stored(days.name)},
                {"title", stored(days.title)},
                {"covers", stored(days.covers)},
                {"source", stored(days.source)},
                {"firstday", schedule::to_text(days.from)},
                {"lastday", schedule::to_text(days.to)},
                {"weekend", days.weekend},
                {"shippedversion", calendar.shipped_version}};
  });
}

std::wstring closed_days_as_json(std::span<const StoredCalendar> calendars) {
  Json array = Json::array();
  for (const StoredCalendar& calendar : calendars)
    for (const schedule::ClosedDay& closed : calendar.calendar.closed)
      array.push_back({{"calendarname", stored(calendar.calendar.name)},
                       {"day", schedule::to_text(closed.day)},
                       {"reason", stored(closed.reason)}});
  return base::from_utf8(array.dump());
}

}  // namespace workbench
