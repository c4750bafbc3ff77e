#pragma once

#include <string_view>

namespace zd_expiration_rule_plugin {

/// Whether a rule name holds a character that is not allowed. Allowed are the ASCII letters and digits, the six ASCII
/// white-space characters and the asterisk; every unit outside ASCII is refused.
bool has_invalid_name_characters(std::wstring_view name) noexcept;

}  // namespace zd_expiration_rule_plugin
