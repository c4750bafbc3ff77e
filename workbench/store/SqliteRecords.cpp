#include "SqliteRecords.h"

#include <map>
#include <utility>

#include "SqliteChanges.h"
#include "StoreError.h"

namespace workbench {

namespace {

/// `pattern` once for each number of a rule, with the column's name for every %, joined by ", ".
std::string for_each_column(std::string_view pattern) {
  std::string text;
  for (const RuleColumn& column : rule_columns) {
    if (!text.empty()) text += ", ";
    for (const char c : pattern) {
      if (c == '%')
        text += column.name;
      else
        text += c;
    }
  }
  return text;
}

std::string rules_query(std::string_view condition) {
  return "SELECT RuleID, Revision, RuleName, " + for_each_column("%") + " FROM rules " + std::string(condition);
}

StoredRule read_rule(const SqliteStatement& row) {
  StoredRule stored;
  stored.number = static_cast<long>(row.integer(0));
  stored.revision = row.integer(1);
  stored.rule.name = row.text(2);
  int index = 3;
  for (const RuleColumn& column : rule_columns) stored.rule.*column.value = static_cast<long>(row.integer(index++));
  return stored;
}

/// Binds the name and the numbers to the parameters from 1 on.
SqliteStatement& bind_rule(SqliteStatement& statement, const Rule& rule) {
  statement.bind(1, rule.name);
  int parameter = 2;
  for (const RuleColumn& column : rule_columns) statement.bind(parameter++, rule.*column.value);
  return statement;
}

constexpr int parameter_after_rule = 2 + static_cast<int>(rule_columns.size());

std::string settings_query(std::string_view condition) {
  return "SELECT SettingID, Revision, SettingName, RuleName, CalendarName, Months, LastTradingDay "
         "FROM symbol_source_settings " +
         std::string(condition);
}

StoredSetting read_setting(const SqliteStatement& row) {
  return {static_cast<long>(row.integer(0)),
          row.integer(1),
          {row.text(2), row.text(3), row.text(4), row.text(5), row.integer(6) == 1}};
}

std::vector<StoredSetting> read_settings(SqliteStatement&& rows) {
  std::vector<StoredSetting> settings;
  while (rows.step()) settings.push_back(read_setting(rows));
  return settings;
}

/// Binds the setting to the parameters 1 to 5.
SqliteStatement& bind_setting(SqliteStatement& statement, const SymbolSourceSetting& setting) {
  return statement.bind(1, setting.name)
      .bind(2, setting.rule_name)
      .bind(3, setting.calendar)
      .bind(4, setting.months)
      .bind(5, setting.last_day_is_expiration ? 1 : 0);
}

StoredSetting insert_setting_by(SqliteStatement& insert, const SqliteDatabase& database,
                                const SymbolSourceSetting& setting) {
  refuse_invalid(setting);
  bind_setting(insert, setting).step();
  StoredSetting stored{static_cast<long>(insert.integer(0)), 1, setting};
  insert.run();
  record_change<StoredSetting>(database, {}, stored);
  return stored;
}

SqliteStatement prepare_insert_setting(const SqliteDatabase& database) {
  return database.prepare(
      "INSERT INTO symbol_source_settings (SettingName, RuleName, CalendarName, Months, LastTradingDay) "
      "VALUES (?, ?, ?, ?, ?) RETURNING SettingID");
}

StoredRule insert_rule_by(SqliteStatement& insert, const SqliteDatabase& database, const Rule& rule) {
  refuse_invalid(rule);
  refuse_duplicate(database, rule.name, 0);
  bind_rule(insert, rule).step();
  StoredRule stored{static_cast<long>(insert.integer(0)), 1, rule};
  insert.run();
  record_change<StoredRule>(database, {}, stored);
  return stored;
}

SqliteStatement prepare_insert_rule(const SqliteDatabase& database) {
  return database.prepare("INSERT INTO rules (RuleName, " + for_each_column("%") + ") VALUES (?, " +
                          for_each_column("?") + ") RETURNING RuleID");
}

schedule::Day read_day(const SqliteDatabase& database, const SqliteStatement& row, int column) {
  const std::string text = row.utf8(column);
  const std::optional<schedule::Day> day = schedule::try_parse_day(text);
  if (!day) database.fail_damaged("no day of a calendar: " + text);
  return *day;
}

}  // namespace

std::vector<StoredRule> select_rules(const SqliteDatabase& database) {
  std::vector<StoredRule> rules;
  SqliteStatement rows = database.prepare(rules_query("ORDER BY RuleID"));
  while (rows.step()) rules.push_back(read_rule(rows));
  return rules;
}

std::optional<StoredRule> select_rule(const SqliteDatabase& database, long number) {
  SqliteStatement row = database.prepare(rules_query("WHERE RuleID = ?"));
  if (!row.bind(1, number).step()) return std::nullopt;
  return read_rule(row);
}

void refuse_duplicate(const SqliteDatabase& database, const std::wstring& name, long number) {
  SqliteStatement same = database.prepare("SELECT 1 FROM rules WHERE RuleName = ?1 AND RuleID <> ?2");
  if (same.bind(1, name).bind(2, number).step()) throw duplicate_rule_name(name);
}

StoredRule insert_rule(const SqliteDatabase& database, const Rule& rule) {
  SqliteStatement insert = prepare_insert_rule(database);
  return insert_rule_by(insert, database, rule);
}

void insert_stored(const SqliteDatabase& database, const StoredRule& stored) {
  refuse_invalid(stored.rule);
  refuse_duplicate(database, stored.rule.name, stored.number);
  SqliteStatement insert = database.prepare("INSERT INTO rules (RuleName, " + for_each_column("%") +
                                            ", Revision, RuleID) VALUES (?, " + for_each_column("?") + ", ?, ?)");
  bind_rule(insert, stored.rule)
      .bind(parameter_after_rule, stored.revision)
      .bind(parameter_after_rule + 1, stored.number)
      .run();
  record_change<StoredRule>(database, {}, stored);
}

void rewrite_rule(const SqliteDatabase& database, const StoredRule& old, const StoredRule& updated) {
  refuse_invalid(updated.rule);
  SqliteStatement update = database.prepare("UPDATE rules SET RuleName = ?, " + for_each_column("% = ?") +
                                            ", Revision = ? WHERE RuleID = ?");
  bind_rule(update, updated.rule)
      .bind(parameter_after_rule, updated.revision)
      .bind(parameter_after_rule + 1, updated.number)
      .run();
  record_change<StoredRule>(database, old, updated);
}

void delete_rule(const SqliteDatabase& database, const StoredRule& stored) {
  database.prepare("DELETE FROM rules WHERE RuleID = ?").bind(1, stored.number).run();
  record_change<StoredRule>(database, stored, {});
}

std::vector<StoredSetting> select_settings(const SqliteDatabase& database) {
  return read_settings(database.prepare(settings_query("ORDER BY SettingID")));
}

std::optional<StoredSetting> select_setting(const SqliteDatabase& database, long number) {
  SqliteStatement row = database.prepare(settings_query("WHERE SettingID = ?"));
  if (!row.bind(1, number).step()) return std::nullopt;
  return read_setting(row);
}

StoredSetting insert_setting(const SqliteDatabase& database, const SymbolSourceSetting& setting) {
  SqliteStatement insert = prepare_insert_setting(database);
  return insert_setting_by(insert, database, setting);
}

void insert_stored(const SqliteDatabase& database, const StoredSetting& stored) {
  refuse_invalid(stored.setting);
  SqliteStatement insert = database.prepare(
      "INSERT INTO symbol_source_settings (SettingName, RuleName, CalendarName, Months, LastTradingDay, Revision, "
      "SettingID) VALUES (?, ?, ?, ?, ?, ?, ?)");
  bind_setting(insert, stored.setting).bind(6, stored.revision).bind(7, stored.number).run();
  record_change<StoredSetting>(database, {}, stored);
}

void rewrite_setting(const SqliteDatabase& database, const StoredSetting& old, const StoredSetting& updated) {
  refuse_invalid(updated.setting);
  SqliteStatement update = database.prepare(
      "UPDATE symbol_source_settings SET SettingName = ?, RuleName = ?, CalendarName = ?, Months = ?, "
      "LastTradingDay = ?, Revision = ? WHERE SettingID = ?");
  bind_setting(update, updated.setting).bind(6, updated.revision).bind(7, updated.number).run();
  record_change<StoredSetting>(database, old, updated);
}

void delete_setting(const SqliteDatabase& database, const StoredSetting& stored) {
  database.prepare("DELETE FROM symbol_source_settings WHERE SettingID = ?").bind(1, stored.number).run();
  record_change<StoredSetting>(database, stored, {});
}

void rename_in_settings(const SqliteDatabase& database, const std::wstring& from, const std::wstring& to) {
  SqliteStatement rows = database.prepare(settings_query("WHERE RuleName = ? ORDER BY SettingID"));
  rows.bind(1, from);
  const std::vector<StoredSetting> settings = read_settings(std::move(rows));
  for (const StoredSetting& old : settings) {
    StoredSetting renamed = old;
    renamed.setting.rule_name = to;
    ++renamed.revision;
    rewrite_setting(database, old, renamed);
  }
}

std::vector<StoredCalendar> select_calendars(const SqliteDatabase& database) {
  std::vector<StoredCalendar> calendars;
  SqliteStatement rows = database.prepare(
      "SELECT CalendarName, Title, Covers, Source, FirstDay, LastDay, Weekend, ShippedVersion, Reason, Day "
      "FROM calendars LEFT JOIN closed_days USING (CalendarName) ORDER BY CalendarName, Day");
  while (rows.step()) {
    if (calendars.empty() || calendars.back().calendar.name != rows.utf8(0)) {
      calendars.push_back({{rows.utf8(0), rows.utf8(1), rows.utf8(2), rows.utf8(3), read_day(database, rows, 4),
                            read_day(database, rows, 5), static_cast<schedule::WeekdaySet>(rows.integer(6))},
                           static_cast<long>(rows.integer(7))});
    }
    if (!rows.utf8(9).empty()) calendars.back().calendar.closed.push_back({read_day(database, rows, 9), rows.utf8(8)});
  }
  for (const StoredCalendar& stored : calendars)
    if (const char* key = schedule::find_invalid_key(stored.calendar))
      database.fail_damaged("calendar " + stored.calendar.name + ": " + key);
  return calendars;
}

void replace_calendars(const SqliteDatabase& database, const std::vector<StoredCalendar>& calendars) {
  SqliteStatement remove = database.prepare("DELETE FROM closed_days WHERE CalendarName = ?");
  SqliteStatement insert = database.prepare(
      "INSERT OR REPLACE INTO calendars (CalendarName, Title, Covers, Source, FirstDay, LastDay, Weekend, "
      "ShippedVersion) VALUES (?, ?, ?, ?, ?, ?, ?, ?)");
  SqliteStatement insert_day = database.prepare("INSERT INTO closed_days (CalendarName, Day, Reason) VALUES (?, ?, ?)");
  std::map<std::string, StoredCalendar> present;
  for (StoredCalendar& stored : select_calendars(database)) present[stored.calendar.name] = std::move(stored);
  for (const StoredCalendar& stored : calendars) {
    refuse_invalid(stored);
    const schedule::Calendar& calendar = stored.calendar;
    const auto old = present.find(calendar.name);
    record_change(database, old == present.end() ? std::nullopt : std::optional(old->second), std::optional(stored));
    present[calendar.name] = stored;
    remove.bind_utf8(1, calendar.name).run();
    insert.bind_utf8(1, calendar.name)
        .bind_utf8(2, calendar.title)
        .bind_utf8(3, calendar.covers)
        .bind_utf8(4, calendar.source)
        .bind_utf8(5, schedule::to_text(calendar.from))
        .bind_utf8(6, schedule::to_text(calendar.to))
        .bind(7, calendar.weekend)
        .bind(8, stored.shipped_version)
        .run();
    insert_day.bind_utf8(1, calendar.name);
    for (const schedule::ClosedDay& closed : calendar.closed)
      insert_day.bind_utf8(2, schedule::to_text(closed.day)).bind_utf8(3, closed.reason).run();
  }
}

void import_rules(const SqliteDatabase& database, const std::vector<Rule>& rules, const schedule::Progress& progress) {
  SqliteStatement same_name = database.prepare("SELECT RuleID FROM rules WHERE RuleName = ?");
  for (std::size_t i = 0; i < rules.size(); ++i) {
    schedule::advance(progress, i, rules.size());
    const Rule& rule = rules[i];
    std::optional<StoredRule> stored;
    if (same_name.bind(1, rule.name).step()) stored = select_rule(database, static_cast<long>(same_name.integer(0)));
    same_name.run();
    if (!stored) {
      insert_rule(database, rule);
    } else if (stored->rule != rule) {
      rewrite_rule(database, *stored, {stored->number, stored->revision + 1, rule});
    }
  }
}

void replace_settings(const SqliteDatabase& database, const std::vector<SymbolSourceSetting>& settings,
                      const schedule::Progress& progress) {
  for (const StoredSetting& old : select_settings(database)) delete_setting(database, old);
  SqliteStatement insert = prepare_insert_setting(database);
  for (std::size_t i = 0; i < settings.size(); ++i) {
    schedule::advance(progress, i, settings.size());
    insert_setting_by(insert, database, settings[i]);
  }
}

void replace_content(const SqliteDatabase& database, const StoreContent& content, const schedule::Progress& progress) {
  for (const StoredRule& old : select_rules(database)) delete_rule(database, old);
  for (const StoredCalendar& old : select_calendars(database)) record_change<StoredCalendar>(database, old, {});
  database.execute("DELETE FROM closed_days; DELETE FROM calendars");
  SqliteStatement insert = prepare_insert_rule(database);
  const schedule::Progress storing_rules = schedule::part_of(progress, 0, 50);
  for (std::size_t i = 0; i < content.rules.size(); ++i) {
    schedule::advance(storing_rules, i, content.rules.size());
    insert_rule_by(insert, database, content.rules[i]);
  }
  replace_settings(database, content.settings, schedule::part_of(progress, 50, 100));
  replace_calendars(database, content.calendars);
}

void complete_content(const SqliteDatabase& database, const StoreContent& content) {
  replace_calendars(database, content.calendars);
  for (const SymbolSourceSetting& shipped : content.settings)
    for (const StoredSetting& old : select_settings(database)) {
      if (old.setting.name != shipped.name) continue;
      SymbolSourceSetting completed = shipped;
      completed.rule_name = old.setting.rule_name;
      rewrite_setting(database, old, {old.number, old.revision, completed});
    }
}

}  // namespace workbench
