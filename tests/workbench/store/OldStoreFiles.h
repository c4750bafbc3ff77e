#pragma once

#include "StoreSamples.h"

/// Creates a file as version 1 left it, with one rule.
inline constexpr const char* version_1 = R"sql(
  CREATE TABLE rules (
    RuleID INTEGER PRIMARY KEY AUTOINCREMENT CHECK (RuleID BETWEEN 1 AND 2147483647),
    RuleName TEXT NOT NULL UNIQUE COLLATE BINARY CHECK (length(CAST(RuleName AS BLOB)) BETWEEN 1 AND 765),
    RollOffset INTEGER NOT NULL CHECK (RollOffset BETWEEN 0 AND 99),
    DayType INTEGER NOT NULL CHECK (DayType BETWEEN 0 AND 1),
    DayMode INTEGER NOT NULL CHECK (DayMode BETWEEN 0 AND 1),
    DayOfMonth INTEGER NOT NULL CHECK (DayOfMonth BETWEEN 1 AND 31),
    DayMonth INTEGER NOT NULL CHECK (DayMonth BETWEEN 0 AND 2),
    WeekOrdinal INTEGER NOT NULL CHECK (WeekOrdinal BETWEEN 1 AND 5),
    Weekday INTEGER NOT NULL CHECK (Weekday BETWEEN 0 AND 6),
    WeekdayMonth INTEGER NOT NULL CHECK (WeekdayMonth BETWEEN 0 AND 2),
    MoveToNextTradingDay INTEGER NOT NULL CHECK (MoveToNextTradingDay BETWEEN 0 AND 1)
  ) STRICT;
  INSERT INTO rules VALUES (4, 'first', 99, 1, 1, 31, 2, 5, 6, 2, 1);
  INSERT INTO rules VALUES (9, 'gone', 99, 1, 1, 31, 2, 5, 6, 2, 1);
  DELETE FROM rules WHERE RuleID = 9;
  PRAGMA application_id = 0x7A644552;
  PRAGMA user_version = 1;
)sql";

/// Turns a file of version 1 into one as version 2 left it, with one setting.
inline constexpr const char* version_2 = R"sql(
  CREATE TABLE symbol_source_settings (
    SettingID INTEGER PRIMARY KEY,
    SettingName TEXT NOT NULL COLLATE BINARY CHECK (length(CAST(SettingName AS BLOB)) BETWEEN 1 AND 765),
    RuleName TEXT NOT NULL COLLATE BINARY CHECK (length(CAST(RuleName AS BLOB)) <= 765)
  ) STRICT;
  CREATE INDEX symbol_source_settings_by_rule ON symbol_source_settings (RuleName);
  INSERT INTO symbol_source_settings VALUES (1, 'copper', 'first');
  PRAGMA user_version = 2;
)sql";

/// Turns a file of version 2 into one as version 3 left it. Its settings are one that the sample content has too, one
/// that it does not have, and again one that it has, with another rule.
inline constexpr const char* version_3 = R"sql(
  ALTER TABLE rules ADD COLUMN Revision INTEGER NOT NULL DEFAULT 1 CHECK (Revision >= 1);
  UPDATE rules SET Revision = 5;
  DELETE FROM symbol_source_settings;
  INSERT INTO symbol_source_settings VALUES (3, 'copper', 'first');
  INSERT INTO symbol_source_settings VALUES (7, 'zinc', 'renamed');
  INSERT INTO symbol_source_settings VALUES (5, 'mine', 'first');
  PRAGMA user_version = 3;
)sql";

/// Turns a file of version 3 into one as version 4 left it, with one calendar.
inline constexpr const char* version_4 = R"sql(
  ALTER TABLE symbol_source_settings RENAME TO settings_without_numbers;
  DROP INDEX symbol_source_settings_by_rule;
  CREATE TABLE symbol_source_settings (
    SettingID INTEGER PRIMARY KEY AUTOINCREMENT CHECK (SettingID BETWEEN 1 AND 2147483647),
    SettingName TEXT NOT NULL COLLATE BINARY CHECK (length(CAST(SettingName AS BLOB)) BETWEEN 1 AND 765),
    RuleName TEXT NOT NULL COLLATE BINARY CHECK (length(CAST(RuleName AS BLOB)) <= 765),
    CalendarName TEXT NOT NULL DEFAULT '' COLLATE BINARY CHECK (length(CAST(CalendarName AS BLOB)) <= 255),
    Months TEXT NOT NULL DEFAULT '' CHECK (length(Months) <= 12 AND Months NOT GLOB '*[^FGHJKMNQUVXZ]*'),
    LastTradingDay INTEGER NOT NULL DEFAULT 0 CHECK (LastTradingDay BETWEEN 0 AND 1),
    Revision INTEGER NOT NULL DEFAULT 1 CHECK (Revision >= 1)
  ) STRICT;
  CREATE INDEX symbol_source_settings_by_rule ON symbol_source_settings (RuleName);
  INSERT INTO symbol_source_settings (SettingName, RuleName)
    SELECT SettingName, RuleName FROM settings_without_numbers ORDER BY SettingID;
  DROP TABLE settings_without_numbers;
  CREATE TABLE calendars (
    CalendarName TEXT PRIMARY KEY COLLATE BINARY CHECK (length(CAST(CalendarName AS BLOB)) BETWEEN 1 AND 255),
    Title TEXT NOT NULL,
    Covers TEXT NOT NULL,
    Source TEXT NOT NULL,
    FirstDay TEXT NOT NULL CHECK (FirstDay GLOB '[12][0-9][0-9][0-9]-[01][0-9]-[0-3][0-9]'),
    LastDay TEXT NOT NULL CHECK (LastDay GLOB '[12][0-9][0-9][0-9]-[01][0-9]-[0-3][0-9]'),
    Weekend INTEGER NOT NULL CHECK (Weekend BETWEEN 0 AND 126),
    ShippedVersion INTEGER NOT NULL CHECK (ShippedVersion BETWEEN 0 AND 2147483647),
    CHECK (FirstDay <= LastDay)
  ) STRICT, WITHOUT ROWID;
  CREATE TABLE closed_days (
    CalendarName TEXT NOT NULL COLLATE BINARY,
    Day TEXT NOT NULL CHECK (Day GLOB '[12][0-9][0-9][0-9]-[01][0-9]-[0-3][0-9]'),
    Reason TEXT NOT NULL,
    PRIMARY KEY (CalendarName, Day)
  ) STRICT, WITHOUT ROWID;
  INSERT INTO calendars VALUES ('exchange', 'title', '', '', '2026-01-01', '2026-12-31', 65, 1);
  INSERT INTO closed_days VALUES ('exchange', '2026-05-04', 'holiday');
  PRAGMA user_version = 4;
)sql";

/// What a store with the sample content holds after it has brought along a file of version 2.
inline StoreSnapshot old_content_brought_along() {
  return {{{4, 1, sample_rule(L"first")}}, {{1, 1, {L"copper", L"first"}}}, sample_content().calendars};
}
