#include "DateList.h"
#include "JsonRecords.h"
#include "ServerRecords.h"
#include "ServerText.h"
#include "TextEncoding.h"

namespace workbench {

namespace {

std::string read_utf8(ServerSession& session, odbc::OdbcStatement& row, int column) {
  return base::to_utf8(read_text(session, row, column));
}

schedule::Day read_day(ServerSession& session, const std::wstring& text) {
  const std::optional<schedule::Day> day = schedule::try_parse_day(base::to_utf8(text));
  if (!day) session.fail(StoreErrorKind::damaged, "no day of a calendar: " + base::to_utf8(text));
  return *day;
}

/// The calendar of this row, of which only the days are missing.
StoredCalendar read_calendar(ServerSession& session, odbc::OdbcStatement& row) {
  StoredCalendar stored;
  stored.calendar.name = read_utf8(session, row, 0);
  stored.calendar.title = read_utf8(session, row, 1);
  stored.calendar.covers = read_utf8(session, row, 2);
  stored.calendar.source = read_utf8(session, row, 3);
  stored.calendar.from = read_day(session, row.text(4));
  stored.calendar.to = read_day(session, row.text(5));
  stored.calendar.weekend = static_cast<schedule::WeekdaySet>(row.integer(6));
  stored.shipped_version = static_cast<long>(row.integer(7));
  return stored;
}

}  // namespace

std::vector<StoredCalendar> select_calendars(ServerSession& session) {
  std::vector<StoredCalendar> calendars;
  odbc::OdbcStatement rows = session.prepare(session.sql().select_calendars);
  rows.execute();
  while (rows.fetch()) {
    StoredCalendar next = read_calendar(session, rows);
    if (calendars.empty() || calendars.back().calendar.name != next.calendar.name) calendars.push_back(std::move(next));
    if (const std::optional<std::wstring> day = rows.try_text(8))
      calendars.back().calendar.closed.push_back({read_day(session, *day), read_utf8(session, rows, 9)});
  }
  for (const StoredCalendar& stored : calendars)
    if (const char* key = schedule::find_invalid_key(stored.calendar))
      session.fail(StoreErrorKind::damaged, "calendar " + stored.calendar.name + ": " + key);
  return calendars;
}

void replace_calendars(ServerSession& session, const std::vector<StoredCalendar>& calendars) {
  // One statement cannot give one row two values, so of several calendars with one name the last counts.
  std::vector<StoredCalendar> distinct;
  for (const StoredCalendar& stored : calendars) {
    std::erase_if(distinct, [&](const StoredCalendar& other) { return other.calendar.name == stored.calendar.name; });
    distinct.push_back(stored);
  }
  if (distinct.empty()) return;
  const std::wstring batch = calendars_as_json(distinct);
  session.prepare(session.sql().delete_closed_days).bind(1, batch).execute();
  session.prepare(session.sql().replace_calendars).bind(1, batch).execute();
  session.prepare(session.sql().insert_closed_days).bind(1, closed_days_as_json(distinct)).execute();
}

}  // namespace workbench
