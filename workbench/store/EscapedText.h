#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace workbench {

/// The text on one line and in characters that UTF-8 has: a backslash stands as \\, a control character or a lone
/// surrogate as \uXXXX. Two texts have the same form only if they have the same code units.
std::wstring to_escaped_text(std::wstring_view text);

/// The text of which this is the escaped form; nothing if it is that of no text.
std::optional<std::wstring> from_escaped_text(std::wstring escaped);

}  // namespace workbench
