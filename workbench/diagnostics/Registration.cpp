#include "Registration.h"

#include <objbase.h>

#include <string>

#include "Hresult.h"
#include "ModulePath.h"
#include "SnagtrapResource.h"
#include "SnagtrapUtil.h"
#include "Texts.h"

namespace snagtrap {

namespace {

std::wstring class_key() {
  wchar_t guid[39] = {};
  StringFromGUID2(__uuidof(IKV_SnagtrapUtil::SnagtrapLibrary), guid, 39);
  return std::wstring(L"CLSID\\") + guid;
}

bool is_narrow(const std::wstring& text) noexcept {
  BOOL replaced = FALSE;
  const int size = WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, text.c_str(), -1, nullptr, 0, nullptr, &replaced);
  return size != 0 && size <= MAX_PATH && !replaced;
}

/// The path of the library in a form that the ANSI code page can spell; empty when there is none.
std::wstring registrable_path() {
  std::wstring path = base::module_file_name();
  if (is_narrow(path)) return path;
  wchar_t short_path[32768] = {};
  const DWORD length = GetShortPathNameW(path.c_str(), short_path, 32768);
  return length != 0 && length < 32768 && is_narrow(short_path) ? short_path : L"";
}

LSTATUS write_text(const std::wstring& key, const wchar_t* name, const std::wstring& text) noexcept {
  return RegSetKeyValueW(HKEY_CLASSES_ROOT, key.c_str(), name, REG_SZ, text.c_str(),
                         static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}

}  // namespace

HRESULT register_library() {
  const std::wstring path = registrable_path();
  if (path.empty()) return HRESULT_FROM_WIN32(ERROR_NO_UNICODE_TRANSLATION);
  const std::wstring server_key = class_key() + L"\\InprocServer32";
  LSTATUS written = write_text(class_key(), nullptr, load_text(IDS_CLASS_NAME));
  if (written == ERROR_SUCCESS) written = write_text(server_key, nullptr, path);
  if (written == ERROR_SUCCESS) written = write_text(server_key, L"ThreadingModel", L"Both");
  return base::hresult_from_status(written);
}

HRESULT unregister_library() {
  const LSTATUS removed = RegDeleteTreeW(HKEY_CLASSES_ROOT, class_key().c_str());
  return removed == ERROR_FILE_NOT_FOUND ? S_OK : base::hresult_from_status(removed);
}

}  // namespace snagtrap
