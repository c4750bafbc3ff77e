#include "DriverProfile.h"

#include <windows.h>

#include <algorithm>

namespace workbench::odbc {

namespace {

constexpr const wchar_t* common_keywords[] = {L"Driver", L"DSN", L"Server", L"Port", L"Database", L"Uid", L"Pwd"};

constexpr wchar_t this_machine[] = L"localhost";

bool is_set(const std::wstring& variable) { return GetEnvironmentVariableW(variable.c_str(), nullptr, 0) != 0; }

/// A data source may lead anywhere, and so may the environment.
bool leads_to_this_machine(const ConnectionString& options, const DriverProfile& profile) {
  if (options.find(L"DSN") || std::ranges::any_of(profile.redirecting_variables, is_set)) return false;
  const std::wstring server = options.find(L"Server").value_or(L"");
  return server.empty() || server == this_machine || server == L"127.0.0.1" || server == L"::1";
}

}  // namespace

void refuse_unknown_keywords(const ConnectionString& options, const DriverProfile& profile) {
  ConnectionString known;
  for (const wchar_t* keyword : common_keywords) known.set(keyword, L"");
  for (const std::wstring& keyword : profile.keywords) known.set(keyword, L"");
  known.set(profile.encryption.first, L"");
  for (const auto& [keyword, value] : profile.fixed_options) known.set(keyword, L"");
  int part = 0;
  for (const std::wstring& keyword : options.keywords()) {
    ++part;
    if (!known.find(keyword)) throw ConnectionStringError(ConnectionStringError::Reason::unknown_keyword, part);
  }
}

std::vector<ConnectionString> connection_attempts(const ConnectionString& options, const DriverProfile& profile) {
  refuse_unknown_keywords(options, profile);
  ConnectionString complete = options;
  // A driver would take a server that is not named from the environment of the process, and that may be another
  // machine.
  if (!complete.find(L"DSN") && complete.find(L"Server").value_or(L"").empty()) complete.set(L"Server", this_machine);
  for (const auto& [keyword, value] : profile.fixed_options) complete.set(keyword, value);
  const auto& [encryption, strongest] = profile.encryption;
  if (!complete.find(encryption) && !leads_to_this_machine(options, profile)) complete.set(encryption, strongest);
  if (complete.find(L"Driver") || complete.find(L"DSN")) return {complete};
  std::vector<ConnectionString> attempts;
  for (const std::wstring& name : profile.names) {
    ConnectionString attempt;
    attempt.set(L"Driver", name);
    for (const std::wstring& keyword : complete.keywords()) attempt.set(keyword, *complete.find(keyword));
    attempts.push_back(attempt);
  }
  return attempts;
}

std::wstring describe(const ConnectionString& options, const DriverProfile& profile) {
  const auto part = [&](const wchar_t* keyword, const wchar_t* before, const wchar_t* after) {
    const std::optional<std::wstring> value = options.find(keyword);
    return value && !value->empty() ? before + *value + after : std::wstring();
  };
  std::wstring text = part(L"Uid", L"", L"@");
  if (options.find(L"DSN")) {
    text += part(L"DSN", L"DSN=", L"");
  } else {
    const std::wstring server = part(L"Server", L"", L"");
    text += server.empty() ? this_machine : server;
  }
  text += part(L"Port", L":", L"") + part(L"Database", L"/", L"");
  const auto& [encryption, strongest] = profile.encryption;
  const std::optional<std::wstring> chosen = options.find(encryption);
  if (chosen && *chosen != strongest) text += L" (" + encryption + L'=' + *chosen + L')';
  return text;
}

}  // namespace workbench::odbc
