#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace common_test {

using Bytes = std::vector<std::uint8_t>;

/// One node of a version block, as the resource compiler lays it out. `units` is what the node tells about the length
/// of its value: characters for text, bytes otherwise.
Bytes version_node(const std::wstring& key, bool is_text, const Bytes& value, std::size_t units,
                   const std::vector<Bytes>& children = {});

using Texts = std::vector<std::pair<std::wstring, std::wstring>>;

/// The texts of one translation; `name` is its language and code page in hexadecimal. `says_text` is asked for each
/// text whether its node says that it is one; some compilers leave that out, and the length counts characters all the
/// same.
Bytes string_table(
    const std::wstring& name, const Texts& texts, const std::function<bool()>& says_text = [] { return true; });

/// A list of languages and code pages, one after the other.
Bytes translations(const std::vector<WORD>& languages_and_code_pages);

/// A whole block. An empty `translation_list` leaves that part out.
Bytes version_block(const std::vector<Bytes>& string_tables, const Bytes& translation_list);

}  // namespace common_test
