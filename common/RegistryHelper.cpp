#include "RegistryHelper.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <new>
#include <span>
#include <vector>

#include "ComSupport.h"
#include "Report.h"

namespace zd_common {

namespace {

constexpr int path_line = 15;
constexpr DWORD file_name_size = 1024;
constexpr std::size_t prefix_size = 64;

/// The version block of one file.
class VersionBlock {
 public:
  /// Stays empty when the file has none.
  explicit VersionBlock(const wchar_t* file_name) {
    DWORD ignored = 0;
    const DWORD size = GetFileVersionInfoSizeW(file_name, &ignored);
    block_.resize(size);
    if (size && !GetFileVersionInfoW(file_name, 0, size, block_.data())) block_.clear();
    // The system takes a block's own word for its length when it looks for an entry.
    if (claimed_size() > block_.size()) block_.clear();
  }

  /// The bytes of an entry, which is told in units of `unit` bytes; none when it is missing. Never beyond the end of
  /// the block, whatever a damaged one tells.
  std::span<const std::uint8_t> bytes(const wchar_t* entry, std::size_t unit) const noexcept {
    void* value = nullptr;
    UINT count = 0;
    if (block_.empty() || !VerQueryValueW(block_.data(), entry, &value, &count)) return {};
    const auto offset = reinterpret_cast<std::uintptr_t>(value) - reinterpret_cast<std::uintptr_t>(block_.data());
    if (offset >= block_.size()) return {};
    return std::span(block_).subspan(offset, std::min(count * unit, block_.size() - offset));
  }

  /// The text of an entry; empty when it is missing.
  std::wstring text(const std::wstring& entry) const {
    const auto value = bytes(entry.c_str(), sizeof(wchar_t));
    std::wstring text(value.size() / sizeof(wchar_t), L'\0');
    std::memcpy(text.data(), value.data(), text.size() * sizeof(wchar_t));
    text.resize(std::min(text.size(), text.find(L'\0')));
    return text;
  }

  /// The path to the texts of the block's first translation; empty when it has none.
  std::wstring first_texts() const {
    const auto value = bytes(L"\\VarFileInfo\\Translation", 1);
    std::array<WORD, 2> language_and_code_page = {};
    if (value.size() < sizeof language_and_code_page) return {};
    std::memcpy(language_and_code_page.data(), value.data(), sizeof language_and_code_page);
    std::array<wchar_t, prefix_size> prefix = {};
    _snwprintf(prefix.data(), prefix.size() - 1, L"\\StringFileInfo\\%04x%04x\\", language_and_code_page[0],
               language_and_code_page[1]);
    return prefix.data();
  }

 private:
  /// The first word of a block.
  std::size_t claimed_size() const noexcept {
    WORD size = 0;
    if (block_.size() >= sizeof size) std::memcpy(&size, block_.data(), sizeof size);
    return size;
  }

  std::vector<std::uint8_t> block_;
};

std::wstring process_file_name() {
  std::wstring name(file_name_size, L'\0');
  const DWORD length = GetModuleFileNameW(nullptr, name.data(), file_name_size);
  // A name that fills the buffer was cut off.
  name.resize(length < file_name_size ? length : 0);
  return name;
}

/// Support staff know this one function by its full name.
SnagtrapUtil::SourcePlace path_place(SnagtrapUtil::SourcePlace place) noexcept {
  place.function = "zd_common::ZDRegistryPath";
  return place;
}

}  // namespace

VersionRecord read_version_record() {
  const std::wstring file_name = process_file_name();
  return file_name.empty() ? VersionRecord() : read_version_record_of(file_name.c_str());
}

VersionRecord read_version_record_of(const wchar_t* file_name) {
  const VersionBlock block(file_name);
  const std::wstring prefix = block.first_texts();
  VersionRecord record;
  if (prefix.empty()) return record;
  record.company_name = block.text(prefix + L"CompanyName");
  record.product_name = block.text(prefix + L"ProductName");
  record.product_version = block.text(prefix + L"ProductVersion");
  record.file_description = block.text(prefix + L"FileDescription");
  record.file_version = block.text(prefix + L"FileVersion");
  record.legal_copyright = block.text(prefix + L"LegalCopyright");
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
    SnagtrapUtil::report_hresult(status, path_place(ZD_PLACE_IN("RegistryHelper.h", path_line)));
  }
  return platform::take_string(path);
}

}  // namespace zd_common
