#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "EscapedText.h"
#include "JsonRecords.h"
#include "ServerChanges.h"
#include "ServerRuleStore.h"
#include "TextEncoding.h"

using namespace workbench;

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t rules_of_a_batch = 500;

/// The server of this run, in the database of the benchmark.
odbc::ConnectionString connection() {
  std::array<wchar_t, 1024> server{};
  GetEnvironmentVariableW(L"ZD_TEST_SERVER", server.data(), static_cast<DWORD>(server.size()));
  odbc::ConnectionString options(server.data());
  options.set(L"Database", L"bench");
  return options;
}

Rule rule(const std::wstring& kind, int number) {
  return {.name = kind + L" rule " + std::to_wstring(number), .roll_offset = number % 100, .day_of_month = 15};
}

std::vector<Rule> rules(const std::wstring& kind, int count) {
  std::vector<Rule> rules;
  rules.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) rules.push_back(rule(kind, i));
  return rules;
}

void report(const char* work, Clock::time_point start, int repetitions = 1) {
  const std::chrono::duration<double, std::milli> passed = Clock::now() - start;
  std::printf("%s %.3f\n", work, passed.count() / repetitions);
}

void measure(int count) {
  const auto store = open_server_store(connection());
  const auto other = open_server_store(connection());
  Clock::time_point start = Clock::now();
  constexpr int loads = 10;
  std::size_t loaded = 0;
  for (int i = 0; i < loads; ++i) loaded = store->load_rules().size();
  report("load", start, loads);
  std::printf("rules %zu\n", loaded);
  start = Clock::now();
  for (const Rule& added : rules(L"single", count)) store->add_rule(added);
  report("add", start);
  start = Clock::now();
  store->import_records({rules(L"imported", count)});
  report("import", start);
  other->poll_for_changes();
  store->add_rule(rule(L"seen", 0));
  start = Clock::now();
  const bool is_news = other->poll_for_changes();
  report("look", start);
  if (!is_news) throw std::runtime_error("a change was not seen");
  const auto watching = open_server_store(connection(), {.poll_interval = std::chrono::milliseconds(500)});
  store->add_rule(rule(L"seen", 1));
  start = Clock::now();
  while (!watching->poll_for_changes()) Sleep(5);
  report("seen", start);
}

/// The statement with its parameters replaced by these values.
std::string statement(std::wstring sql, const std::vector<std::wstring>& values) {
  constexpr std::wstring_view schema = L"{schema}";
  for (std::size_t at = 0; (at = sql.find(schema, at)) != std::wstring::npos;) sql.replace(at, schema.size(), L"rules");
  std::size_t at = 0;
  for (const std::wstring& value : values) {
    std::wstring literal = L"'";
    for (const wchar_t unit : value) literal.append(unit == L'\'' ? 2 : 1, unit);
    literal += L'\'';
    at = sql.find(L'?', at);
    sql.replace(at, 1, literal);
    at += literal.size();
  }
  return base::to_utf8(sql) + ";\n";
}

/// One change as the store writes it.
std::string change(const std::string& body) {
  const ServerDialect& sql = postgres();
  return "BEGIN;\n" + statement(sql.lock_store, {}) + statement(sql.insert_change, {new_change_id()}) + body +
         statement(sql.read_counter, {}) + "COMMIT;\n";
}

std::string insert(const Rule& added) {
  std::vector<std::wstring> values{to_escaped_text(added.name)};
  for (const RuleColumn& column : rule_columns) values.push_back(std::to_wstring(added.*column.value));
  return statement(postgres().insert_rule, values);
}

/// Writes the same work that `measure` gives the server as files for psql.
void write_sql(const std::filesystem::path& folder, int count) {
  const auto file = [&](const char* name) {
    std::ofstream out(folder / name, std::ios::binary);
    out << "\\timing on\n\\o /dev/null\n";
    return out;
  };
  std::ofstream(folder / "load", std::ios::binary) << statement(postgres().select_rules, {});
  std::ofstream add = file("add");
  for (const Rule& added : rules(L"single", count)) add << change(insert(added));
  const std::vector<Rule> imported = rules(L"imported", count);
  std::string batches;
  for (std::size_t first = 0; first < imported.size(); first += rules_of_a_batch) {
    const auto batch = std::span(imported).subspan(first, std::min(rules_of_a_batch, imported.size() - first));
    batches += statement(postgres().import_rules, {rules_as_json(batch)});
  }
  file("import") << change(batches);
  file("look") << statement(postgres().read_counter, {});
}

}  // namespace

/// server_bench fill COUNT: creates the store in the database "bench" of ZD_TEST_SERVER, with so many rules.
/// server_bench measure COUNT: prints the milliseconds of each kind of work, with so many new rules.
/// server_bench sql FOLDER COUNT: writes the same work for psql.
int wmain(int argc, wchar_t** argv) try {
  const std::wstring action = argc > 1 ? argv[1] : L"";
  const int count = argc > 2 ? std::stoi(argv[argc - 1]) : 0;
  if (action == L"fill")
    open_server_store(connection(), {.first_content = {rules(L"first", count), {}}});
  else if (action == L"measure")
    measure(count);
  else if (action == L"sql")
    write_sql(argv[2], count);
  else
    return EXIT_FAILURE;
  return EXIT_SUCCESS;
} catch (const std::exception& error) {
  std::fprintf(stderr, "server_bench: %s\n", error.what());
  return EXIT_FAILURE;
}
