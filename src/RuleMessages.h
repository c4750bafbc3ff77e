#pragma once

#include <string>
#include <vector>

namespace zd_expiration_rule_plugin {

/// The text that refuses to delete a rule: `refusal` on a line of its own, then the first three users, then " ..." when
/// there are more. Names end at their first null, where a message box would end.
std::wstring rule_in_use_text(const std::wstring& refusal, const std::vector<std::wstring>& users);

/// `question` with the rule's name, up to its first null, instead of its "%s".
std::wstring confirm_delete_text(std::wstring question, const std::wstring& rule_name);

}  // namespace zd_expiration_rule_plugin
