#include "RegistryHelper.h"

#include <array>
#include <cstdint>
#include <cwchar>
#include <new>
#include <string_view>
#include <vector>

#include "ComStrings.h"
#include "ModulePath.h"
#include "Report.h"

namespace zd_common {

namespace {

constexpr DWORD file_name_size = 1024;

using VersionBlock = std::vector<std::uint8_t>;

/// The version block of a file, as large as the system says; empty when the file has none.
VersionBlock version_block_of(const wchar_t* file_name) {
  DWORD ignored = 0;
  const DWORD size = GetFileVersionInfoSizeW(file_name, &ignored);
  VersionBlock block(size);
  if (size && !GetFileVersionInfoW(file_name, 0, size, block.data())) block.clear();
  return block;
}

/// The path of the first translation's texts, with a backslash at its end; empty when the block has no translation.
std::wstring texts_path_of(const VersionBlock& block) {
  void* value = nullptr;
  UINT bytes = 0;
  if (!VerQueryValueW(block.data(), L"\\VarFileInfo\\Translation", &value, &bytes)) return {};
  if (bytes < 2 * sizeof(WORD)) return {};
  const auto* translation = static_cast<const WORD*>(value);
  std::array<wchar_t, 64> path = {};
  _snwprintf(path.data(), path.size() - 1, L"\\StringFileInfo\\%04x%04x\\", translation[0], translation[1]);
  return path.data();
}

/// The text at this path, up to its first null; empty when there is none.
std::wstring text_at(const VersionBlock& block, const std::wstring& path) {
  void* value = nullptr;
  UINT units = 0;
  if (!VerQueryValueW(block.data(), path.c_str(), &value, &units)) return {};
  const std::wstring_view text(static_cast<const wchar_t*>(value), units);
  return std::wstring(text.substr(0, text.find(L'\0')));
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
  const VersionBlock block = version_block_of(file_name);
  if (block.empty()) return {};
  const std::wstring texts = texts_path_of(block);
  if (texts.empty()) return {};
  VersionRecord record;
  record.company_name = text_at(block, texts + L"CompanyName");
  record.product_name = text_at(block, texts + L"ProductName");
  record.product_version = text_at(block, texts + L"ProductVersion");
  record.file_description = text_at(block, texts + L"FileDescription");
  record.file_version = text_at(block, texts + L"FileVersion");
  record.legal_copyright = text_at(block, texts + L"LegalCopyright");
  record.registry_company = record.company_name;
  record.registry_product = record.product_name;
  return record;
}

LONG compose_registry_path(BSTR* out, const std::wstring& company, const std::wstring& product) noexcept {
  if (!out) return E_POINTER;
  if (*out) return E_INVALIDARG;
  if (company.empty() || product.empty()) return ERROR_RESOURCE_DATA_NOT_FOUND;
  try {
    *out = SysAllocString((L"SOFTWARE\\" + company + L"\\" + product).c_str());
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
