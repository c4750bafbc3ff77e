#include "ConnectionString.h"

#include <windows.h>

#include <algorithm>

namespace workbench::odbc {

namespace {

using Reason = ConnectionStringError::Reason;

constexpr std::wstring_view blanks = L" \t\r\n";

std::wstring_view trimmed(std::wstring_view text) {
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::wstring_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// Takes what stands before the first semicolon, and that, off the front of `text`.
std::wstring_view take_until_semicolon(std::wstring_view& text) {
  const std::size_t end = std::min(text.find(L';'), text.size());
  const std::wstring_view taken = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return taken;
}

bool same_keyword(std::wstring_view one, std::wstring_view other) {
  return CompareStringOrdinal(one.data(), static_cast<int>(one.size()), other.data(), static_cast<int>(other.size()),
                              TRUE) == CSTR_EQUAL;
}

/// Takes a value that begins with { off the front of `text`, with the semicolon after it.
std::wstring take_braced(std::wstring_view& text, int part) {
  std::wstring value;
  std::size_t position = 1;
  for (;;) {
    const std::size_t brace = text.find(L'}', position);
    if (brace == std::wstring_view::npos) throw ConnectionStringError(Reason::unclosed_brace, part);
    value += text.substr(position, brace - position);
    position = brace + 1;
    if (!text.substr(position).starts_with(L'}')) break;
    value += L'}';
    ++position;
  }
  text.remove_prefix(position);
  if (!trimmed(take_until_semicolon(text)).empty()) throw ConnectionStringError(Reason::text_after_brace, part);
  return value;
}

std::wstring take_value(std::wstring_view& text, int part) {
  text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
  if (text.starts_with(L'{')) return take_braced(text, part);
  return std::wstring(trimmed(take_until_semicolon(text)));
}

/// Braces keep only what needs them, because some drivers take the braces of other values for a part of the value.
std::wstring quoted(const std::wstring& value) {
  if (value.find_first_of(L";{}") == std::wstring::npos && trimmed(value) == value) return value;
  std::wstring result = L"{";
  for (const wchar_t unit : value) result.append(unit == L'}' ? 2 : 1, unit);
  return result + L'}';
}

}  // namespace

ConnectionStringError::ConnectionStringError(Reason reason, int part)
    : std::invalid_argument("part " + std::to_string(part) + " of the connection string is refused"),
      reason_(reason),
      part_(part) {}

ConnectionString::ConnectionString(std::wstring_view text) {
  for (int part = 1; !text.empty(); ++part) {
    const std::size_t end = std::min(text.find(L';'), text.size());
    if (trimmed(text.substr(0, end)).empty()) {
      take_until_semicolon(text);
      continue;
    }
    const std::size_t equals = text.substr(0, end).find(L'=');
    if (equals == std::wstring_view::npos) throw ConnectionStringError(Reason::no_value, part);
    const std::wstring keyword(trimmed(text.substr(0, equals)));
    if (keyword.empty()) throw ConnectionStringError(Reason::no_value, part);
    if (find(keyword)) throw ConnectionStringError(Reason::repeated_keyword, part);
    text.remove_prefix(equals + 1);
    entries_.push_back({keyword, take_value(text, part)});
  }
}

std::vector<ConnectionString::Entry>::iterator ConnectionString::locate(std::wstring_view keyword) {
  return std::ranges::find_if(entries_, [&](const Entry& entry) { return same_keyword(entry.keyword, keyword); });
}

std::optional<std::wstring> ConnectionString::find(std::wstring_view keyword) const {
  for (const Entry& entry : entries_)
    if (same_keyword(entry.keyword, keyword)) return entry.value;
  return std::nullopt;
}

void ConnectionString::set(std::wstring_view keyword, std::wstring_view value) {
  const auto found = locate(keyword);
  if (found != entries_.end())
    found->value = value;
  else
    entries_.push_back({std::wstring(keyword), std::wstring(value)});
}

std::optional<std::wstring> ConnectionString::take(std::wstring_view keyword) {
  const auto found = locate(keyword);
  if (found == entries_.end()) return std::nullopt;
  std::optional<std::wstring> value = std::move(found->value);
  entries_.erase(found);
  return value;
}

std::vector<std::wstring> ConnectionString::keywords() const {
  std::vector<std::wstring> keywords;
  for (const Entry& entry : entries_) keywords.push_back(entry.keyword);
  return keywords;
}

std::wstring ConnectionString::text() const {
  std::wstring text;
  for (const Entry& entry : entries_) text += entry.keyword + L'=' + quoted(entry.value) + L';';
  return text;
}

}  // namespace workbench::odbc
