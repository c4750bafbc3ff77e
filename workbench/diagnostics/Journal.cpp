#include "Journal.h"

#include <cstdio>

#include "Json.h"
#include "ModulePath.h"

namespace snagtrap {

namespace {

/// The lengths, in UTF-16 units, to which the texts of a record are cut in turn until its line fits.
constexpr std::size_t text_limits[] = {unlimited, 500, 20};

std::wstring now() {
  SYSTEMTIME time = {};
  GetSystemTime(&time);
  wchar_t text[32] = {};
  _snwprintf(text, 32, L"%04u-%02u-%02uT%02u:%02u:%02u.%03uZ", time.wYear, time.wMonth, time.wDay, time.wHour,
             time.wMinute, time.wSecond, time.wMilliseconds);
  return text;
}

std::wstring program_name() {
  wchar_t path[1024] = {};
  const std::wstring_view name = base::module_file_name(nullptr, path);
  return std::wstring(name.substr(name.rfind(L'\\') + 1));
}

JsonObject begin_line(std::wstring_view command) {
  JsonObject line;
  line.add(L"time", text_json(now()));
  line.add(L"process", std::to_string(GetCurrentProcessId()));
  line.add(L"thread", std::to_string(GetCurrentThreadId()));
  line.add(L"program", text_json(program_name()));
  line.add(L"command", text_json(command));
  return line;
}

std::string line_of(std::wstring_view command, const Record* record, std::size_t text_limit) {
  JsonObject line = begin_line(command);
  if (record && record->ignored.value_or(false)) line.add(L"ignored", "true");
  if (record) line.add(L"record", record_json(*record, text_limit));
  return line.json();
}

/// As much of the record as fits; none of its fields when there are too many of them.
std::string fitting_line(std::wstring_view command, const Record* record, std::size_t max_bytes) {
  for (const std::size_t text_limit : text_limits) {
    std::string line = line_of(command, record, text_limit);
    if (line.size() < max_bytes) return line;
  }
  JsonObject line = begin_line(command);
  line.add(L"record", text_json(L"too long for the log"));
  return line.json();
}

}  // namespace

HRESULT Journal::write(std::wstring_view command, const Record* record, const Settings& settings) const {
  const bool is_trace = record && record->text(L"$Type") == L"TRACE";
  return append(fitting_line(command, record, settings.max_log_bytes), !is_trace, settings);
}

HRESULT Journal::write_answer(std::wstring_view answer, const Settings& settings) const {
  JsonObject line = begin_line(L"ANSWER");
  line.add(L"answer", text_json(answer));
  return append(line.json(), true, settings);
}

ReportLog Journal::log(const Settings& settings) const {
  return {directories(settings).front(), {settings.max_log_bytes, settings.kept_logs}};
}

HRESULT Journal::append(std::string_view line, bool to_disk, const Settings& settings) const {
  HRESULT appended = E_FAIL;
  for (const std::wstring& directory : directories(settings)) {
    const ReportLog log(directory, {settings.max_log_bytes, settings.kept_logs});
    appended = log.append(line, to_disk);
    if (SUCCEEDED(appended)) break;
  }
  return appended;
}

std::vector<std::wstring> Journal::directories(const Settings& settings) const {
  std::vector<std::wstring> all;
  if (!settings.log_directory.empty()) all.push_back(settings.log_directory);
  if (!proposed_directory_.empty()) all.push_back(proposed_directory_);
  all.push_back(default_log_directory());
  return all;
}

}  // namespace snagtrap
