#include "SnagtrapClient.h"

#include <ole2.h>
#include <winternl.h>

#include <cstdio>
#include <cwchar>

#include "DebugRecord.h"
#include "Hresult.h"
#include "ModulePath.h"
#include "Owned.h"
#include "ScopedLastError.h"
#include "ScopedLock.h"

extern "C" NTSYSAPI BOOLEAN NTAPI RtlDllShutdownInProgress();

namespace SnagtrapUtil {

namespace {

using IKV_SnagtrapUtil::IDebugObject;
using IKV_SnagtrapUtil::IDebugRoot;

constexpr wchar_t library_name[] = L"SnagtrapUtil3.0_x64.dll";
constexpr wchar_t registry_key[] = L"Software\\Orvane\\Snagtrap";
constexpr wchar_t init_failed_text[] = L"Snagtrap Init Failed.";
constexpr wchar_t client_version[] = L"2.2 05.05.2006";
constexpr int guid_text_size = 39;  // 38 characters in braces and the end

// The library's registered path is a narrow text, as its installer has always written it.
HMODULE load_registered_library() noexcept {
  wchar_t guid[guid_text_size] = {};
  if (StringFromGUID2(__uuidof(IKV_SnagtrapUtil::SnagtrapLibrary), guid, guid_text_size) == 0) return nullptr;
  char key[80] = {};
  if (_snprintf(key, sizeof key - 1, "CLSID\\%ls\\InprocServer32", guid) < 0) return nullptr;
  char path[MAX_PATH + 1] = {};
  DWORD size = sizeof path;
  if (RegGetValueA(HKEY_CLASSES_ROOT, key, nullptr, RRF_RT_REG_SZ, nullptr, path, &size) != ERROR_SUCCESS) {
    return nullptr;
  }
  return LoadLibraryA(path);
}

// The library is never freed: other modules of the host share it, and it may own threads. One that is loaded already is
// held too, so that it cannot be unloaded while its root object is in use.
HMODULE find_library() noexcept {
  HMODULE loaded = nullptr;
  if (GetModuleHandleExW(0, library_name, &loaded)) return loaded;
  if (HMODULE by_name = LoadLibraryW(library_name)) return by_name;
  return load_registered_library();
}

void wait_for_global_event() noexcept {
  wchar_t name[7 + guid_text_size] = L"Global\\";
  if (StringFromGUID2(__uuidof(IKV_SnagtrapUtil::SnagtrapEvent), name + 7, guid_text_size) == 0) return;
  const base::KernelHandle event(OpenEventW(SYNCHRONIZE, FALSE, name));
  if (event) WaitForSingleObject(event.get(), INFINITE);
}

}  // namespace

SnagtrapInitializer::SnagtrapInitializer() : section_() {
  if (!InitializeCriticalSectionAndSpinCount(&section_, 0)) throw base::last_failure();
}

SnagtrapInitializer::~SnagtrapInitializer() {
  // At the end of the process the library has been detached before this module: its code must not run any more.
  if (RtlDllShutdownInProgress()) root_.Detach();
  base::release(root_);
  DeleteCriticalSection(&section_);
}

bool SnagtrapInitializer::ensure_initialised() noexcept {
  bool show_failure = false;
  {
    const base::ScopedCriticalSection lock(section_);
    if (attempted_) return initialised_;
    attempted_ = true;
    initialised_ = false;
    report_failure_ = read_report_failure();
    if (SUCCEEDED(load_library()) && SUCCEEDED(initialise())) {
      initialised_ = true;
    } else {
      show_failure = report_failure_;
      report_failure_ = false;
      base::release(root_);
    }
  }
  if (show_failure) MessageBoxW(nullptr, init_failed_text, L"", MB_OK | MB_ICONERROR);
  return initialised_;
}

bool SnagtrapInitializer::read_report_failure() noexcept {
  base::RegistryKey key;
  if (RegOpenKeyExW(HKEY_CURRENT_USER, registry_key, 0, KEY_READ, key.put()) != ERROR_SUCCESS) return false;
  return RegQueryValueExW(key.get(), nullptr, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
}

HRESULT SnagtrapInitializer::load_library() noexcept {
  HMODULE library = find_library();
  if (!library) return E_FAIL;
  const auto init_object = reinterpret_cast<IKV_SnagtrapUtil::ST_InitObjectFunction>(
      reinterpret_cast<void*>(GetProcAddress(library, "ST_InitObject")));
  if (!init_object) return E_FAIL;
  base::release(root_);
  IDebugRoot* root = nullptr;
  if (FAILED(init_object(&root)) || !root) return E_FAIL;
  root_.Attach(root);
  return S_OK;
}

HRESULT SnagtrapInitializer::initialise() noexcept {
  DebugRecord record(*this);
  if (FAILED(record.status())) return record.status();
  wchar_t path[1024] = {};
  record.text(L"LogDirectory", L"");
  record.ui8(L"ModuleAddr", reinterpret_cast<ULONGLONG>(base::module_instance()));
  record.text(L"ModuleName", base::module_file_name(base::module_instance(), path));
  record.boolean(L"ReleaseMode", true);
  record.text(L"ClientVersion", client_version);
  const HRESULT sent = command(L"INIT", record.get());
  if (FAILED(sent)) return sent;

  wchar_t number[16] = {};
  _snwprintf(number, 15, L"%i", static_cast<int>(GetCurrentProcessId()));
  const Bstr empty_text(L"");
  const Bstr number_text(number);
  return root_->Configure(empty_text.get(), number_text.get(), 1);
}

HRESULT SnagtrapInitializer::command(const wchar_t* word, IDebugObject* record, IDebugObject** created) noexcept {
  const base::ScopedCriticalSection lock(section_);
  if (!root_) return E_FAIL;
  const Bstr word_text(word);
  base::ComPtr<IDebugObject> record_created;
  const HRESULT result = root_->Command(word_text.get(), record, &record_created);
  if (created && SUCCEEDED(result)) *created = record_created.Detach();
  return result;
}

void SnagtrapInitializer::shutdown() noexcept {
  const base::ScopedCriticalSection lock(section_);
  if (!initialised_) return;
  command(L"DEINIT");
  initialised_ = false;
  base::release(root_);
}

void SnagtrapClient::terminate() noexcept {
  command(L"TERMINATE");
  TerminateProcess(GetCurrentProcess(), aborted_exit_code);
  __builtin_unreachable();
}

HRESULT SnagtrapClient::is_clean() noexcept { return command(L"IS CLEAN"); }

HRESULT SnagtrapClient::do_clean() noexcept { return command(L"DO CLEAN"); }

HRESULT SnagtrapClient::report_dialog() noexcept { return command(L"REPORTDIALOG"); }

HRESULT SnagtrapClient::trace_enabled() noexcept { return command(L"TRACEENABLED"); }

SnagtrapClient& snagtrap_client() {
  const base::ScopedLastError last_error;
  static SRWLOCK creation = SRWLOCK_INIT;
  wait_for_global_event();
  const base::ScopedExclusiveLock lock(creation);
  // The lock lets one thread at a time come here.
  static SnagtrapClient client;
  return client;
}

}  // namespace SnagtrapUtil
