#include "GuidText.h"
#include "LibraryTest.h"
#include "ModulePath.h"
#include "Owned.h"

namespace snagtrap_test {
namespace {

std::wstring class_key() { return L"CLSID\\" + test_support::guid_text(__uuidof(IKV_SnagtrapUtil::SnagtrapLibrary)); }

/// Loads the library from a path and calls its registration exports.
class Registration : public testing::Test {
 protected:
  static HRESULT call(const std::wstring& path, const char* name) {
    const base::LoadedModule library(LoadLibraryW(path.c_str()));
    if (!library) return E_UNEXPECTED;
    const auto function =
        reinterpret_cast<HRESULT(STDMETHODCALLTYPE*)()>(reinterpret_cast<void*>(GetProcAddress(library.get(), name)));
    return function ? function() : E_UNEXPECTED;
  }

  static std::string registered_path() {
    char path[MAX_PATH + 1] = {};
    DWORD size = sizeof path;
    const std::string key = std::filesystem::path(class_key() + L"\\InprocServer32").string();
    const LSTATUS read = RegGetValueA(HKEY_CLASSES_ROOT, key.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, path, &size);
    return read == ERROR_SUCCESS ? path : "";
  }

  static std::wstring own_path() { return base::path_beside_program(L"SnagtrapUtil3.0_x64.dll"); }

  test_support::RegistrySandbox registry;
  LogFolder folder;
};

TEST_F(Registration, WritesThePathOfTheFile) {
  EXPECT_EQ(call(own_path(), "DllRegisterServer"), S_OK);
  EXPECT_EQ(std::filesystem::path(registered_path()), std::filesystem::path(own_path()));
}

TEST_F(Registration, UnregisteringRemovesEverything) {
  call(own_path(), "DllRegisterServer");
  EXPECT_EQ(call(own_path(), "DllUnregisterServer"), S_OK);
  base::RegistryKey key;
  EXPECT_EQ(RegOpenKeyExW(HKEY_CLASSES_ROOT, class_key().c_str(), 0, KEY_READ, key.put()), ERROR_FILE_NOT_FOUND);
}

TEST_F(Registration, UnregisteringTwiceSucceeds) { EXPECT_EQ(call(own_path(), "DllUnregisterServer"), S_OK); }

TEST_F(Registration, PathOutsideTheCodePageIsWrittenSoThatItLoads) {
  const std::wstring copy = folder.path() / L"library.dll";
  std::filesystem::copy_file(own_path(), copy);
  const HRESULT registered = call(copy, "DllRegisterServer");
  if (registered == S_OK) {
    const base::LoadedModule library(LoadLibraryA(registered_path().c_str()));
    EXPECT_TRUE(library) << registered_path();
  } else {
    EXPECT_EQ(registered, HRESULT_FROM_WIN32(ERROR_NO_UNICODE_TRANSLATION)) << "where files have no short names";
    EXPECT_EQ(registered_path(), "");
  }
}

}  // namespace
}  // namespace snagtrap_test
