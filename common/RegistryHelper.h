#pragma once

#include <windows.h>
#include <comdef.h>

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
};

/// The version record of the process's executable. Throws `std::bad_alloc`.
VersionRecord read_version_record();

/// The version record of a file, from the first translation of its version block; empty when the file has no block or
/// the block no translation. The system's query reads the block and trusts the lengths in it: the file must be sound,
/// as the executable of a running process is. Each text ends at the length that the query returns or at its first null.
/// Throws `std::bad_alloc`.
VersionRecord read_version_record_of(const wchar_t* file_name);

/// Writes "SOFTWARE\company\product" to `*out`, which must be null before and belongs to the caller afterwards. Returns
/// 0, E_POINTER, E_INVALIDARG, E_OUTOFMEMORY, or the positive ERROR_RESOURCE_DATA_NOT_FOUND when a text is empty.
LONG compose_registry_path(BSTR* out, const std::wstring& company, const std::wstring& product) noexcept;

/// The key under which the host keeps its settings, relative to a root key of the caller's choice; read anew from the
/// host's executable at every call. Empty, after a report, when the executable does not name company and product.
/// Throws `std::bad_alloc`.
_bstr_t ZDRegistryPath();

/// A value name that another plug-in keeps under this path.
inline constexpr wchar_t ShowDailyLimitCtrl[] = L"ShowDailyLimitCtrl";

}  // namespace zd_common
