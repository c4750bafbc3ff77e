#include "MemoryServer.h"

#include "ServerDialect.h"

using namespace workbench;
using test_support::MemoryRefusal;

namespace {

/// Whether this is the statement of the dialect, in the schema of this server.
bool is(const std::wstring& sql, std::wstring statement) {
  constexpr std::wstring_view placeholder = L"{schema}";
  for (std::size_t at = 0; (at = statement.find(placeholder, at)) != std::wstring::npos;)
    statement.replace(at, placeholder.size(), L"desk");
  return sql == statement;
}

long integer(const std::wstring& parameter) { return std::stol(parameter); }

/// The rule in the parameters from 0 on.
Rule rule_of(const std::vector<std::wstring>& parameters) {
  Rule rule{.name = parameters[0]};
  std::size_t index = 1;
  for (const RuleColumn& column : rule_columns) rule.*column.value = integer(parameters[index++]);
  return rule;
}

constexpr std::size_t parameter_after_rule = 1 + rule_columns.size();

std::wstring text_of(const StoredRule& stored) {
  std::wstring text = std::to_wstring(stored.number) + L' ' + std::to_wstring(stored.revision);
  for (const RuleColumn& column : rule_columns) text += L' ' + std::to_wstring(stored.rule.*column.value);
  return text + L':' + stored.rule.name;
}

}  // namespace

MemoryServer::MemoryServer() {
  driver_.on_execute = [this](const std::wstring& sql, const Parameters& parameters) {
    return execute(sql, parameters);
  };
  driver_.on_begin_of_transaction = [this] { begin_transaction(); };
  driver_.on_end_of_transaction = [this](bool commits) { end_transaction(commits); };
}

std::vector<std::wstring> MemoryServer::names() const {
  const std::scoped_lock lock(mutex_);
  std::vector<std::wstring> names;
  for (const auto& [number, stored] : content_.rules) names.push_back(stored.rule.name);
  return names;
}

Revision MemoryServer::revision(long number) const {
  const std::scoped_lock lock(mutex_);
  return content_.rules.at(number).revision;
}

void MemoryServer::clear() {
  const std::scoped_lock lock(mutex_);
  content_ = {};
}

int MemoryServer::present_version() {
  return postgres().first_version + static_cast<int>(postgres().migrations.size()) - 1;
}

int MemoryServer::version() const {
  const std::scoped_lock lock(mutex_);
  return content_.version;
}

void MemoryServer::set_version(int version) {
  const std::scoped_lock lock(mutex_);
  content_.version = version;
}

/// What the connection of this thread sees.
MemoryServer::Content& MemoryServer::present_content() {
  const auto open = transactions_.find(std::this_thread::get_id());
  return open != transactions_.end() && open->second.content ? *open->second.content : content_;
}

std::vector<MemoryServer::Row> MemoryServer::execute(const std::wstring& sql, const Parameters& parameters) {
  const ServerDialect& dialect = postgres();
  const std::scoped_lock lock(mutex_);
  Content& content = present_content();
  if (is(sql, dialect.read_schema)) return {{L"desk", L"1"}};
  if (auto rows = execute_on_tables(content, sql, parameters)) return *rows;
  if (is(sql, dialect.read_counter)) return {{std::to_wstring(content.counter)}};
  if (is(sql, dialect.lock_store)) {
    transactions_.at(std::this_thread::get_id()).content = content_;
    return {{std::to_wstring(content_.counter)}};
  }
  if (is(sql, dialect.insert_change)) {
    if (!content.changes.emplace(parameters[0], true).second) throw MemoryRefusal{"23505"};
    return {{}};
  }
  if (is(sql, dialect.insert_void_change)) return take_void_change(content, parameters[0]);
  if (is(sql, dialect.select_happened)) {
    const auto found = content.changes.find(parameters[0]);
    return found == content.changes.end() ? std::vector<Row>{} : std::vector<Row>{{found->second ? L"1" : L"0"}};
  }
  return execute_on_rules(content, sql, parameters).value_or(std::vector<Row>{});
}

std::optional<std::vector<MemoryServer::Row>> MemoryServer::execute_on_tables(Content& content, const std::wstring& sql,
                                                                              const Parameters& parameters) {
  const ServerDialect& dialect = postgres();
  if (is(sql, dialect.count_tables)) {
    const bool exist = content.version != 0;
    return std::vector<Row>{{exist ? L"7" : L"0", exist ? L"1" : L"0"}};
  }
  if (is(sql, dialect.read_version))
    return std::vector<Row>{{std::to_wstring(0x7A644552), std::to_wstring(content.version)}};
  if (is(sql, dialect.lock_creation)) {
    lock_creation();
  } else if (is(sql, dialect.write_version)) {
    content.version = static_cast<int>(integer(parameters[1]));
  } else {
    return std::nullopt;
  }
  return std::vector<Row>{{}};
}

/// The lock of another transaction would be waited for, up to the time limit. Without a transaction it ends at once.
void MemoryServer::lock_creation() {
  const std::thread::id mine = std::this_thread::get_id();
  for (const auto& [thread, transaction] : transactions_)
    if (thread != mine && transaction.locks_creation) throw MemoryRefusal{"55P03"};
  const auto open = transactions_.find(mine);
  if (open != transactions_.end()) open->second = {content_, true};
}

std::optional<std::vector<MemoryServer::Row>> MemoryServer::execute_on_rules(Content& content, const std::wstring& sql,
                                                                             const Parameters& parameters) const {
  const ServerDialect& dialect = postgres();
  std::vector<Row> rows;
  const auto row_of = [&](const StoredRule& stored) { return Row{text_of_rules ? *text_of_rules : text_of(stored)}; };
  if (is(sql, dialect.select_rules)) {
    for (const auto& [number, stored] : content.rules) rows.push_back(row_of(stored));
  } else if (is(sql, dialect.select_rule)) {
    const auto found = content.rules.find(integer(parameters[0]));
    if (found != content.rules.end()) rows.push_back(row_of(found->second));
  } else if (is(sql, dialect.insert_rule)) {
    const long number = ++content.last_number;
    content.rules[number] = {number, 1, rule_of(parameters)};
    ++content.counter;
    rows.push_back({std::to_wstring(number)});
  } else if (is(sql, dialect.update_rule)) {
    const long number = integer(parameters[parameter_after_rule]);
    StoredRule& stored = content.rules.at(number);
    stored = {number, stored.revision + 1, rule_of(parameters)};
    ++content.counter;
    rows.emplace_back();
  } else if (is(sql, dialect.delete_rule)) {
    content.rules.erase(integer(parameters[0]));
    ++content.counter;
    rows.emplace_back();
  } else {
    return std::nullopt;
  }
  return rows;
}

/// A transaction that has inserted the same id and has not ended would be waited for, up to the time limit.
std::vector<MemoryServer::Row> MemoryServer::take_void_change(Content& content, const std::wstring& id) const {
  for (const auto& [thread, transaction] : transactions_)
    if (transaction.content && transaction.content->changes.contains(id) && !content_.changes.contains(id))
      throw MemoryRefusal{"55P03"};
  content.changes.emplace(id, false);
  return {{}};
}

void MemoryServer::begin_transaction() {
  const std::scoped_lock lock(mutex_);
  transactions_[std::this_thread::get_id()] = {};
}

void MemoryServer::end_transaction(bool commits) {
  const std::scoped_lock lock(mutex_);
  const auto open = transactions_.find(std::this_thread::get_id());
  if (open == transactions_.end()) return;
  if (commits && open->second.content) content_ = *open->second.content;
  transactions_.erase(open);
}
