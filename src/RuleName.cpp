#include "RuleName.h"

#include <algorithm>
#include <cctype>

namespace zd_expiration_rule_plugin {

namespace {

bool is_allowed(wchar_t unit) noexcept {
  if (unit >= 0x80) return false;
  const int character = static_cast<int>(unit);
  return std::isalnum(character) != 0 || std::isspace(character) != 0 || character == '*';
}

}  // namespace

bool has_invalid_name_characters(std::wstring_view name) noexcept {
  return !std::all_of(name.begin(), name.end(), is_allowed);
}

}  // namespace zd_expiration_rule_plugin
