#pragma once

#include <string>
#include <string_view>

namespace workbench {

/// The bytes under which a store file keeps this text. Text that is well formed and holds no null is plain UTF-8, so
/// that other tools can read the file; a lone surrogate takes the three bytes of its code point and a null takes C0 80.
/// Two texts have the same bytes only if they have the same code units.
std::string to_wtf8(std::wstring_view text);

/// The text that these bytes stand for. A byte that `to_wtf8` never writes gives U+FFFD.
std::wstring from_wtf8(std::string_view bytes);

}  // namespace workbench
