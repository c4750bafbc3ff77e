#include "RegistryHelper.h"

#include <cstdint>
#include <new>
#include <vector>

#include "ComStrings.h"
#include "ModulePath.h"
#include "Report.h"

namespace zd_common {

namespace {

constexpr DWORD file_name_size = 1024;

/// The version block of a file, as large as the system says; empty when the file has none.
std::vector<std::uint8_t> version_block_of(const wchar_t* file_name) {
  DWORD ignored = 0;
  const DWORD size = GetFileVersionInfoSizeW(file_name, &ignored);
  std::vector<std::uint8_t> block(size);
  if (size && !GetFileVersionInfoW(file_name, 0, size, block.data())) block.clear();
  return block;
}

std::wstring process_file_name() {
  std::wstring name(file_name_size, L'\0');
  const std::size_t length = base::module_file_name(nullptr, name).size();
  // A name that fills the buffer was cut off.
  name.resize(length < file_name_size ? length : 0);
  return name;
}

}  // namespace

VersionRecord read_version_record() {
  const std::wstring file_name = process_file_name();
  return file_name.empty() ? VersionRecord() : read_version_record_of(file_name.c_str());
}

VersionRecord read_version_record_of(const wchar_t* file_name) {
  return version_record_in(version_block_of(file_name));
}

LONG compose_registry_path(BSTR* out, const std::wstring& company, const std::wstring& product) noexcept {
  if (!out) return E_POINTER;
  if (*out) return E_INVALIDARG;
  if (company.empty() || product.empty()) return ERROR_RESOURCE_DATA_NOT_FOUND;
  try {
    *out = SysAllocString(settings_path(company, product).c_str());
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
  return *out ? 0 : E_OUTOFMEMORY;
}

_bstr_t ZDRegistryPath() {
  BSTR path = nullptr;
  const VersionRecord record = read_version_record();
  const LONG status = compose_registry_path(&path, record.registry_company, record.registry_product);
  if (status != 0) {
    auto location = ZD_LOCATION_IN("RegistryHelper.h", 15);
    // Support staff know this one function by its full name.
    location.location.function = "zd_common::ZDRegistryPath";
    SnagtrapUtil::report_hresult(status, location);
  }
  return platform::take_string(path);
}

}  // namespace zd_common
