#include "RuleMessages.h"

#include <algorithm>
#include <string_view>

namespace zd_expiration_rule_plugin {

namespace {

constexpr std::size_t users_shown = 3;

std::wstring_view up_to_null(const std::wstring& name) noexcept { return name.c_str(); }

}  // namespace

std::wstring rule_in_use_text(const std::wstring& refusal, const std::vector<std::wstring>& users) {
  std::wstring text = refusal + L"\n";
  for (std::size_t index = 0; index < std::min(users.size(), users_shown); ++index) {
    if (index > 0) text += L", ";
    text += up_to_null(users[index]);
  }
  if (users.size() > users_shown) text += L" ...\n";
  return text;
}

std::wstring confirm_delete_text(std::wstring question, const std::wstring& rule_name) {
  constexpr wchar_t placeholder[] = L"%s";
  const std::size_t position = question.find(placeholder);
  if (position != std::wstring::npos) question.replace(position, 2, up_to_null(rule_name));
  return question;
}

}  // namespace zd_expiration_rule_plugin
