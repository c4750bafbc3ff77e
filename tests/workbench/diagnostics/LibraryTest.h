#pragma once

#include <gmock/gmock.h>

#include <string>

#include "ChildProcess.h"
#include "LogFolder.h"
#include "ModulePath.h"
#include "Owned.h"
#include "RegistrySandbox.h"
#include "RegistryTree.h"
#include "Settings.h"
#include "SnagtrapUtil.h"
#include "TestRecords.h"

namespace snagtrap_test {

using DebugObjectPtr = base::ComPtr<IKV_SnagtrapUtil::IDebugObject>;
using DebugRootPtr = base::ComPtr<IKV_SnagtrapUtil::IDebugRoot>;

/// Calls the library's DLL through its export, with settings and a log of the test's own.
class LibraryTest : public testing::Test {
 protected:
  LibraryTest() : library_(LoadLibraryW((base::path_beside_program(L"SnagtrapUtil3.0_x64.dll")).c_str())) {
    test_support::write_registry_text(HKEY_CURRENT_USER, snagtrap::settings_key, L"LogDirectory", folder.path());
    root = create_root();
    command(L"DO CLEAN");
  }

  /// Releases the object before its library.
  ~LibraryTest() override { root = nullptr; }

  HMODULE library() const { return library_.get(); }

  IKV_SnagtrapUtil::ST_InitObjectFunction init_object() const {
    return reinterpret_cast<IKV_SnagtrapUtil::ST_InitObjectFunction>(
        reinterpret_cast<void*>(GetProcAddress(library_.get(), "ST_InitObject")));
  }

  DebugRootPtr create_root() const {
    IKV_SnagtrapUtil::IDebugRoot* created = nullptr;
    EXPECT_EQ(init_object()(&created), S_OK);
    return base::own(created);
  }

  HRESULT command(const wchar_t* word, IKV_SnagtrapUtil::IDebugObject* record = nullptr,
                  IKV_SnagtrapUtil::IDebugObject** created = nullptr) const {
    return root->Command(_bstr_t(word), record, created);
  }

  DebugObjectPtr create() const {
    IKV_SnagtrapUtil::IDebugObject* created = nullptr;
    EXPECT_EQ(command(L"CREATE", nullptr, &created), S_OK);
    return base::own(created);
  }

  /// A filled record of a kind, with the location Some.cpp, line 70.
  DebugObjectPtr report(const wchar_t* kind) const {
    DebugObjectPtr record = create();
    set_text(*record, L"$Type", kind);
    set_text(*record, L"Description", L"pMainMenu != 0");
    set_text(*record, L"File", L"Some.cpp");
    set_number(*record, L"Line", 70);
    return record;
  }

  /// Sends a record as a client does.
  HRESULT process(const wchar_t* kind) const {
    const DebugObjectPtr record = report(kind);
    if (kind == std::wstring(L"ASSERT")) command(L"FILTER", record);
    return command(L"PROCESS", record);
  }

  static void set_setting(const wchar_t* name, DWORD number) {
    test_support::write_registry_number(HKEY_CURRENT_USER, snagtrap::settings_key, name, number);
  }

  static void always_ignore(const wchar_t* location) {
    test_support::write_registry_number(HKEY_CURRENT_USER, std::wstring(snagtrap::settings_key) + L"\\Ignored",
                                        location, 1);
  }

  test_support::RegistrySandbox registry;
  LogFolder folder;
  DebugRootPtr root;

 private:
  base::LoadedModule library_;
};

}  // namespace snagtrap_test
