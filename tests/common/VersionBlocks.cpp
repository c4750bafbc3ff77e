#include "VersionBlocks.h"

namespace common_test {
namespace {

void append_word(Bytes& bytes, std::size_t word) {
  bytes.push_back(static_cast<std::uint8_t>(word));
  bytes.push_back(static_cast<std::uint8_t>(word >> 8));
}

void append(Bytes& bytes, const Bytes& more) { bytes.insert(bytes.end(), more.begin(), more.end()); }

Bytes text_bytes(const std::wstring& text) {
  Bytes bytes;
  for (const wchar_t character : text) append_word(bytes, character);
  append_word(bytes, 0);
  return bytes;
}

void align(Bytes& bytes) {
  while (bytes.size() % 4 != 0) bytes.push_back(0);
}

}  // namespace

Bytes version_node(const std::wstring& key, bool is_text, const Bytes& value, std::size_t units,
                   const std::vector<Bytes>& children) {
  Bytes node;
  append_word(node, 0);
  append_word(node, units);
  append_word(node, is_text ? 1 : 0);
  append(node, text_bytes(key));
  align(node);
  append(node, value);
  for (const Bytes& child : children) {
    align(node);
    append(node, child);
  }
  node[0] = static_cast<std::uint8_t>(node.size());
  node[1] = static_cast<std::uint8_t>(node.size() >> 8);
  return node;
}

Bytes string_table(const std::wstring& name, const Texts& texts, const std::function<bool()>& says_text) {
  std::vector<Bytes> values;
  for (const auto& [key, text] : texts) {
    values.push_back(version_node(key, says_text(), text_bytes(text), text.size() + 1));
  }
  return version_node(name, true, {}, 0, values);
}

Bytes translations(const std::vector<WORD>& languages_and_code_pages) {
  Bytes value;
  for (const WORD word : languages_and_code_pages) append_word(value, word);
  return version_node(L"Translation", false, value, value.size());
}

Bytes version_block(const std::vector<Bytes>& string_tables, const Bytes& translation_list) {
  VS_FIXEDFILEINFO fixed{};
  fixed.dwSignature = VS_FFI_SIGNATURE;
  const auto* start = reinterpret_cast<const std::uint8_t*>(&fixed);
  std::vector<Bytes> parts{version_node(L"StringFileInfo", true, {}, 0, string_tables)};
  if (!translation_list.empty()) parts.push_back(version_node(L"VarFileInfo", true, {}, 0, {translation_list}));
  return version_node(L"VS_VERSION_INFO", false, Bytes(start, start + sizeof fixed), sizeof fixed, parts);
}

}  // namespace common_test
