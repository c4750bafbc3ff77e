#pragma once

#include <string>
#include <string_view>

namespace base {

/// The text as UTF-8; U+FFFD stands for what is not well formed. Throws `std::bad_alloc`.
std::string to_utf8(std::wstring_view text);

/// The UTF-16 of a text in UTF-8; U+FFFD stands for what is not well formed. Throws `std::bad_alloc`.
std::wstring from_utf8(std::string_view text);

}  // namespace base
