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
  Bytes value;
  Bytes children;
};

/// The node that fills these bytes.
Node node_of(Bytes bytes) {
  if (bytes.size() < header_size) return {};
  const std::size_t value_size = word(bytes, 2) * (word(bytes, 4) != 0 ? std::size_t{2} : 1);
  std::wstring key = text_of(starting_at(bytes, header_size));
  const Bytes rest = starting_at(bytes, aligned(header_size + 2 * (key.size() + 1)));
  return {std::move(key), not_beyond(rest, value_size), starting_at(rest, aligned(value_size))};
}

/// Whether two keys are equal but for the case of their ASCII letters.
bool same_key(std::wstring_view left, std::wstring_view right) noexcept {
  const auto lower = [](wchar_t unit) { return unit >= L'A' && unit <= L'Z' ? unit + (L'a' - L'A') : unit; };
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [&](wchar_t a, wchar_t b) { return lower(a) == lower(b); });
}

/// The child with this key; an empty node when there is none.
Node child(const Node& parent, std::wstring_view key) {
  Bytes nodes = parent.children;
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
  const Bytes value = child(child(block, L"VarFileInfo"), L"Translation").value;
  if (value.size() < 4) return {};
  std::wstring name;
  for (const unsigned number : {word(value, 0), word(value, 2)}) {
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
  const auto text = [&](std::wstring_view name) { return text_of(child(texts, name).value); };
  VersionRecord record;
  record.company_name = text(L"CompanyName");
  record.product_name = text(L"ProductName");
  record.product_version = text(L"ProductVersion");
  record.file_description = text(L"FileDescription");
  record.file_version = text(L"FileVersion");
  record.legal_copyright = text(L"LegalCopyright");
  record.registry_company = record.company_name;
  record.registry_product = record.product_name;
  return record;
}

std::wstring settings_path(const std::wstring& company, const std::wstring& product) {
  return L"SOFTWARE\\" + company + L"\\" + product;
}

}  // namespace zd_common
