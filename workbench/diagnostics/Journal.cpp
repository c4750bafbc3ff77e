#include "Journal.h"

#include <cstdio>

#include "Json.h"

namespace snagtrap {

namespace {

/// How much of each text is left of a record that is too long, in UTF-16 units; tried in this order.
constexpr std::size_t text_limits[] = {JsonWriter::unlimited, 500, 20};

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
  const std::wstring_view name(path, GetModuleFileNameW(nullptr, path, 1024));
  return std::wstring(name.substr(name.rfind(L'\\') + 1));
}

JsonWriter begin_line(std::wstring_view command) {
  JsonWriter json;
  json.begin_object();
  json.name(L"time");
  json.text(now());
  json.name(L"process");
  json.integer(GetCurrentProcessId());
  json.name(L"thread");
  json.integer(GetCurrentThreadId());
  json.name(L"program");
  json.text(program_name());
  json.name(L"command");
  json.text(command);
  return json;
}

std::string line_of(std::wstring_view command, const Record* record, std::size_t text_limit) {
  JsonWriter json = begin_line(command);
  if (record && record->ignored.value_or(false)) {
    json.name(L"ignored");
    json.literal("true");
  }
  if (record) {
    json.name(L"record");
    json.limit_texts(text_limit);
    write_record(json, *record);
  }
  json.end_object();
  return json.json();
}

/// The most of the record that fits: with a record of very many fields not one of them.
std::string fitting_line(std::wstring_view command, const Record* record, std::size_t max_bytes) {
  for (const std::size_t text_limit : text_limits) {
    std::string line = line_of(command, record, text_limit);
    if (line.size() < max_bytes) return line;
  }
  JsonWriter json = begin_line(command);
  json.name(L"record");
  json.text(L"too long for the log");
  json.end_object();
  return json.json();
}

}  // namespace

HRESULT Journal::write(std::wstring_view command, const Record* record, const Settings& settings) const {
  const bool is_trace = record && record->text(L"$Type") == L"TRACE";
  return append(fitting_line(command, record, settings.max_log_bytes), !is_trace, settings);
}

HRESULT Journal::write_answer(std::wstring_view answer, const Settings& settings) const {
  JsonWriter json = begin_line(L"ANSWER");
  json.name(L"answer");
  json.text(answer);
  json.end_object();
  return append(json.json(), true, settings);
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
  if (!wished_directory_.empty()) all.push_back(wished_directory_);
  all.push_back(default_log_directory());
  return all;
}

}  // namespace snagtrap
