#include "ServerCopy.h"

#include <set>

#include "ServerChanges.h"
#include "ServerRecords.h"

namespace workbench {

StoreCopy select_copy(ServerSession& session) {
  StoreCopy copy{select_rules(session), select_settings(session), select_calendars(session)};
  odbc::OdbcStatement numbers = session.prepare(session.sql().select_last_numbers);
  numbers.execute();
  numbers.fetch();
  copy.last_rule_number = static_cast<long>(numbers.integer(0));
  copy.last_setting_number = static_cast<long>(numbers.integer(1));
  copy.changes = select_all_changes(session);
  return copy;
}

void insert_copy(ServerSession& session, const StoreCopy& copy) {
  std::set<std::wstring> names;
  for (const StoredRule& stored : copy.rules) {
    refuse_invalid(stored.rule);
    if (!names.insert(stored.rule.name).second) throw duplicate_rule_name(stored.rule.name);
  }
  for (const StoredSetting& stored : copy.settings) refuse_invalid(stored.setting);
  for (const StoredCalendar& stored : copy.calendars) refuse_invalid(stored);
  insert_stored(session, copy.rules);
  insert_stored(session, copy.settings);
  replace_calendars(session, copy.calendars);
  session.prepare(session.sql().set_last_numbers)
      .bind(1, copy.last_rule_number)
      .bind(2, copy.last_setting_number)
      .execute();
  // The changes that these insertions recorded are replaced by those of the other store.
  replace_changes(session, copy.changes);
}

}  // namespace workbench
