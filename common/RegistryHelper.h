#pragma once

#include <windows.h>
#include <comdef.h>

#include <string>

#include "VersionRecord.h"

namespace zd_common {

/// The version record of the process's executable. Throws `std::bad_alloc`.
VersionRecord read_version_record();

/// The version record of a file, from the first translation of its version block. A file without one gives an empty
/// record. Throws `std::bad_alloc`.
VersionRecord read_version_record_of(const wchar_t* file_name);

/// Makes "SOFTWARE\company\product" in `*out`, which must be null before and belongs to the caller afterwards. Answers
/// 0, E_POINTER, E_INVALIDARG, E_OUTOFMEMORY, or the positive ERROR_RESOURCE_DATA_NOT_FOUND when a text is empty.
LONG compose_registry_path(BSTR* out, const std::wstring& company, const std::wstring& product) noexcept;

/// The key under which the host keeps its settings, relative to a root key of the caller's choice; read anew from the
/// host's executable at every call. Empty, after a report, when the executable does not tell company and product.
/// Throws `std::bad_alloc`.
_bstr_t ZDRegistryPath();

/// A value name that another plug-in keeps under this path.
inline constexpr wchar_t ShowDailyLimitCtrl[] = L"ShowDailyLimitCtrl";

}  // namespace zd_common
