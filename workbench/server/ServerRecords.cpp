#include "ServerRecords.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <set>
#include <span>

#include "EscapedText.h"
#include "JsonRecords.h"
#include "ServerBatches.h"
#include "ServerError.h"
#include "ServerText.h"
#include "TextEncoding.h"

namespace workbench {

namespace {

constexpr std::size_t number_count = 2 + rule_columns.size();

/// The numbers of a rule: its own, its revision and those of `rule_columns`.
using NumbersOfRule = std::array<std::int64_t, number_count>;

/// Their text in code units: each has at most a sign and 19 digits, and a blank or a colon after it.
constexpr std::size_t longest_numbers = 21 * number_count;

/// Takes the numbers, with a blank between each two, and the colon after them off the beginning of a text. Nothing if
/// it does not begin so.
std::optional<NumbersOfRule> try_take_numbers(std::wstring& text) {
  std::array<char, longest_numbers> characters{};
  const std::size_t length = std::min(text.size(), characters.size());
  std::transform(text.data(), text.data() + length, characters.begin(),
                 [](wchar_t unit) { return unit < 0x80 ? static_cast<char>(unit) : '?'; });
  const char* at = characters.data();
  const char* const end = at + length;
  NumbersOfRule numbers{};
  for (std::int64_t& number : numbers) {
    const auto [after, error] = std::from_chars(at, end, number);
    if (error != std::errc() || after == end || *after != (&number == &numbers.back() ? ':' : ' ')) return std::nullopt;
    at = after + 1;
  }
  text.erase(0, static_cast<std::size_t>(at - characters.data()));
  return numbers;
}

StoredRule read_rule(ServerSession& session, odbc::OdbcStatement& row) {
  std::wstring text = row.text(0);
  const std::optional<NumbersOfRule> numbers = try_take_numbers(text);
  if (!numbers) session.fail(StoreErrorKind::damaged, "a rule does not have the numbers of a rule");
  std::size_t index = 0;
  const auto next = [&](auto least, decltype(least) greatest) {
    const std::int64_t number = numbers->at(index++);
    if (number < least || number > greatest)
      session.fail(StoreErrorKind::damaged, "a number of a rule is " + std::to_string(number));
    return static_cast<decltype(least)>(number);
  };
  StoredRule stored;
  stored.number = next(1L, std::numeric_limits<long>::max());
  stored.revision = next(Revision{1}, std::numeric_limits<Revision>::max());
  for (const RuleColumn& column : rule_columns) stored.rule.*column.value = next(column.least, column.greatest);
  stored.rule.name = read_text(session, std::move(text));
  return stored;
}

/// Binds the name and the numbers to the parameters from 1 on.
odbc::OdbcStatement& bind_rule(odbc::OdbcStatement& statement, const Rule& rule) {
  statement.bind(1, to_escaped_text(rule.name));
  int parameter = 2;
  for (const RuleColumn& column : rule_columns) statement.bind(parameter++, rule.*column.value);
  return statement;
}

/// The escaped form of a name, in code units: each of the name's may stand as \uXXXX.
constexpr std::size_t longest_escaped_name = 6 * longest_name;

constexpr int parameter_after_rule = 2 + static_cast<int>(rule_columns.size());

StoredSetting read_setting(ServerSession& session, odbc::OdbcStatement& row) {
  StoredSetting stored;
  stored.number = static_cast<long>(row.integer(0));
  stored.revision = row.integer(1);
  stored.setting.name = read_text(session, row, 2);
  stored.setting.rule_name = read_text(session, row, 3);
  stored.setting.calendar = read_text(session, row, 4);
  stored.setting.months = read_text(session, row, 5);
  stored.setting.last_day_is_expiration = row.integer(6) == 1;
  return stored;
}

/// Binds the setting to the parameters 1 to 5.
odbc::OdbcStatement& bind_setting(odbc::OdbcStatement& statement, const SymbolSourceSetting& setting) {
  return statement.bind(1, to_escaped_text(setting.name))
      .bind(2, to_escaped_text(setting.rule_name))
      .bind(3, to_escaped_text(setting.calendar))
      .bind(4, to_escaped_text(setting.months))
      .bind(5, setting.last_day_is_expiration ? 1 : 0);
}

/// Which of these rules has a name that another rule has already, as the server says; null when it does not: to a user
/// who may not read the names, or in a text that is cut.
const Rule* find_duplicate(const ServerSession& session, std::span<const Rule> rules, const std::string& refusal) {
  if (rules.size() == 1) return rules.data();
  const Rule* found = nullptr;
  for (const Rule& rule : rules) {
    const std::string name = session.sql().duplicate_name + base::to_utf8(to_escaped_text(rule.name)) + ')';
    // The longest, because a name may hold the bracket after it.
    if (refusal.find(name) != std::string::npos && (!found || rule.name.size() > found->name.size())) found = &rule;
  }
  return found;
}

/// Runs `body`, which names these rules, and says which name another rule has.
template <class Body>
auto refuse_duplicate(const ServerSession& session, std::span<const Rule> rules, const Body& body) {
  try {
    return body();
  } catch (const odbc::OdbcError& error) {
    if (server_error_kind(error.state()) != StoreErrorKind::duplicate_name) throw;
    if (const Rule* rule = find_duplicate(session, rules, error.what())) throw duplicate_rule_name(rule->name);
    throw;
  }
}

long read_number(odbc::OdbcStatement& statement) {
  statement.execute();
  statement.fetch();
  return static_cast<long>(statement.integer(0));
}

void insert_settings(ServerSession& session, const std::vector<SymbolSourceSetting>& settings,
                     const schedule::Progress& progress = {}) {
  insert_in_batches(session, session.sql().insert_settings, settings, &settings_as_json, progress);
}

}  // namespace

std::vector<StoredRule> select_rules(ServerSession& session) {
  std::vector<StoredRule> rules;
  odbc::OdbcStatement rows = session.prepare(session.sql().select_rules);
  rows.fetch_in_blocks({longest_numbers + longest_escaped_name}).execute();
  while (rows.fetch()) rules.push_back(read_rule(session, rows));
  return rules;
}

std::optional<StoredRule> select_rule(ServerSession& session, long number) {
  odbc::OdbcStatement row = session.prepare(session.sql().select_rule);
  row.bind(1, number).execute();
  if (!row.fetch()) return std::nullopt;
  return read_rule(session, row);
}

long insert_rule(ServerSession& session, const Rule& rule) {
  odbc::OdbcStatement insert = session.prepare(session.sql().insert_rule);
  return refuse_duplicate(session, {&rule, 1}, [&] { return read_number(bind_rule(insert, rule)); });
}

bool update_rule(ServerSession& session, const StoredRule& old, const Rule& rule) {
  odbc::OdbcStatement update = session.prepare(session.sql().update_rule);
  bind_rule(update, rule).bind(parameter_after_rule, old.number).bind(parameter_after_rule + 1, old.revision);
  return refuse_duplicate(session, {&rule, 1}, [&] { return update.execute() == 1; });
}

bool delete_rule(ServerSession& session, const StoredRule& stored) {
  odbc::OdbcStatement remove = session.prepare(session.sql().delete_rule);
  remove.bind(1, stored.number).bind(2, stored.revision);
  try {
    return remove.execute() == 1;
  } catch (const odbc::OdbcError& error) {
    if (server_error_kind(error.state()) == StoreErrorKind::in_use) throw rule_in_use(stored.rule.name);
    throw;
  }
}

std::vector<StoredSetting> select_settings(ServerSession& session) {
  std::vector<StoredSetting> settings;
  odbc::OdbcStatement rows = session.prepare(session.sql().select_settings);
  rows.execute();
  while (rows.fetch()) settings.push_back(read_setting(session, rows));
  return settings;
}

std::optional<StoredSetting> select_setting(ServerSession& session, long number) {
  odbc::OdbcStatement row = session.prepare(session.sql().select_setting);
  row.bind(1, number).execute();
  if (!row.fetch()) return std::nullopt;
  return read_setting(session, row);
}

long insert_setting(ServerSession& session, const SymbolSourceSetting& setting) {
  odbc::OdbcStatement insert = session.prepare(session.sql().insert_setting);
  return read_number(bind_setting(insert, setting));
}

bool update_setting(ServerSession& session, long number, Revision revision, const SymbolSourceSetting& setting) {
  odbc::OdbcStatement update = session.prepare(session.sql().update_setting);
  return bind_setting(update, setting).bind(6, number).bind(7, revision).execute() == 1;
}

bool delete_setting(ServerSession& session, long number, Revision revision) {
  return session.prepare(session.sql().delete_setting).bind(1, number).bind(2, revision).execute() == 1;
}

void import_rules(ServerSession& session, const std::vector<Rule>& rules, const schedule::Progress& progress) {
  odbc::OdbcStatement import = session.prepare(session.sql().import_rules);
  std::set<std::wstring> names;
  std::size_t first = 0;
  const auto send = [&](std::size_t end) {
    const auto batch = std::span(rules).subspan(first, end - first);
    if (first < end) refuse_duplicate(session, batch, [&] { return import.bind(1, rules_as_json(batch)).execute(); });
    first = end;
    names.clear();
  };
  for (std::size_t i = 0; i < rules.size(); ++i) {
    schedule::advance(progress, i, rules.size());
    // A batch sees the store as it was before it, so the second rule of a name waits for the next.
    if (names.size() == batch_size || names.contains(rules[i].name)) send(i);
    names.insert(rules[i].name);
  }
  send(rules.size());
}

void replace_settings(ServerSession& session, const std::vector<SymbolSourceSetting>& settings,
                      const schedule::Progress& progress) {
  session.execute(session.sql().delete_settings);
  insert_settings(session, settings, progress);
}

void insert_stored(ServerSession& session, const std::vector<StoredRule>& rules) {
  insert_in_batches(session, session.sql().copy_rules, rules, &stored_rules_as_json);
}

void insert_stored(ServerSession& session, const std::vector<StoredSetting>& settings) {
  insert_in_batches(session, session.sql().copy_settings, settings, &stored_settings_as_json);
}

void insert_content(ServerSession& session, const StoreContent& content) {
  insert_in_batches(session, session.sql().insert_rules, content.rules, &rules_as_json);
  insert_settings(session, content.settings);
  replace_calendars(session, content.calendars);
}

}  // namespace workbench
