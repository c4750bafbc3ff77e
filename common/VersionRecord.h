#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace zd_common {

/// The texts of an executable's version block; what is missing is empty.
struct VersionRecord {
  std::wstring registry_company;
  std::wstring registry_product;
  std::wstring company_name;
  std::wstring product_name;
  std::wstring product_version;
  std::wstring file_description;
  std::wstring file_version;
  std::wstring legal_copyright;

  bool operator==(const VersionRecord&) const = default;
};

/// The texts of a version block's first translation, each up to its first null. Empty for a block without a translation
/// and for one that is shorter than it says. Whatever else the block says, nothing is read outside its bytes. Throws
/// `std::bad_alloc`.
VersionRecord version_record_in(std::span<const std::uint8_t> block);

/// "SOFTWARE\company\product", with both as they are.
std::wstring settings_path(const std::wstring& company, const std::wstring& product);

}  // namespace zd_common
