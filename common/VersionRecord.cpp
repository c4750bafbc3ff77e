#include "VersionRecord.h"

#include <algorithm>
#include <string_view>

namespace zd_common {

namespace {

// The system's own reader believes the lengths in a block and runs past the end of a damaged one.
using Bytes = std::span<const std::uint8_t>;

/// Three words: the length of the node, the length of its value, and whether that counts characters or bytes.
constexpr std::size_t header_size = 6;

std::size_t aligned(std::size_t offset) noexcept { return (offset + 3) / 4 * 4; }

Bytes starting_at(Bytes bytes, std::size_t offset) noexcept { return bytes.subspan(std::min(offset, bytes.size())); }

Bytes not_beyond(Bytes bytes, std::size_t end) noexcept { return bytes.first(std::min(end, bytes.size())); }

unsigned word(Bytes bytes, std::size_t offset) noexcept { return bytes[offset] + bytes[offset + 1] * 0x100U; }

std::wstring text_of(Bytes bytes) {
  std::wstring text;
  for (std::size_t offset = 0; offset + 1 < bytes.size() && word(bytes, offset) != 0; offset += 2) {
    text += static_cast<wchar_t>(word(bytes, offset));
  }
  return text;
}

/// A version block is a tree of nodes.
struct Node {
  std::wstring key;
  std::size_t length;      ///< of the value, as the node tells it
  bool counts_characters;  ///< what the length counts; bytes otherwise
  Bytes content;           ///< the value, then the children
};

/// The node that fills these bytes.
Node node_of(Bytes bytes) {
  if (bytes.size() < header_size) return {};
  std::wstring key = text_of(starting_at(bytes, header_size));
  const Bytes content = starting_at(bytes, aligned(header_size + 2 * (key.size() + 1)));
  return {std::move(key), word(bytes, 2), word(bytes, 4) != 0, content};
}

std::size_t value_size(const Node& node) noexcept { return node.length * (node.counts_characters ? 2 : 1); }

Bytes value(const Node& node) noexcept { return not_beyond(node.content, value_size(node)); }

Bytes children(const Node& node) noexcept { return starting_at(node.content, aligned(value_size(node))); }

/// The length of a text counts characters whatever the node says: so the system reads it too.
std::wstring text(const Node& node) { return text_of(not_beyond(node.content, 2 * node.length)); }

/// Whether two keys are equal but for the case of their ASCII letters.
bool same_key(std::wstring_view left, std::wstring_view right) noexcept {
  const auto lower = [](wchar_t unit) { return unit >= L'A' && unit <= L'Z' ? unit + (L'a' - L'A') : unit; };
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [&](wchar_t a, wchar_t b) { return lower(a) == lower(b); });
}

/// The child with this key; an empty node when there is none.
Node child(const Node& parent, std::wstring_view key) {
  Bytes nodes = children(parent);
  while (nodes.size() >= header_size) {
    const std::size_t length = word(nodes, 0);
    // Nobody knows where the next one would start.
    if (length < header_size) break;
    Node node = node_of(not_beyond(nodes, length));
    if (same_key(node.key, key)) return node;
    nodes = starting_at(nodes, aligned(length));
  }
  return {};
}

/// The name of the first translation's texts, eight hexadecimal digits; empty when there is none.
std::wstring first_translation(const Node& block) {
  const Node list = child(child(block, L"VarFileInfo"), L"Translation");
  const Bytes numbers = value(list);
  if (numbers.size() < 4) return {};
  std::wstring name;
  for (const unsigned number : {word(numbers, 0), word(numbers, 2)}) {
    for (int shift = 12; shift >= 0; shift -= 4) name += L"0123456789abcdef"[number >> shift & 0xF];
  }
  return name;
}

}  // namespace

VersionRecord version_record_in(std::span<const std::uint8_t> block) {
  if (block.size() < header_size || word(block, 0) > block.size()) return {};
  const Node root = node_of(not_beyond(block, word(block, 0)));
  const std::wstring translation = first_translation(root);
  if (translation.empty()) return {};
  const Node texts = child(child(root, L"StringFileInfo"), translation);
  const auto text_named = [&](std::wstring_view name) { return text(child(texts, name)); };
  VersionRecord record;
  record.company_name = text_named(L"CompanyName");
  record.product_name = text_named(L"ProductName");
  record.product_version = text_named(L"ProductVersion");
  record.file_description = text_named(L"FileDescription");
  record.file_version = text_named(L"FileVersion");
  record.legal_copyright = text_named(L"LegalCopyright");
  record.registry_company = record.company_name;
  record.registry_product = record.product_name;
  return record;
}

std::wstring settings_path(const std::wstring& company, const std::wstring& product) {
  return L"SOFTWARE\\" + company + L"\\" + product;
}

}  // namespace zd_common
