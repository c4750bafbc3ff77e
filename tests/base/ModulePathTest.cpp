#include <gtest/gtest.h>

#include "ImportProbe.h"
#include "ModulePath.h"
#include "ThrownBy.h"

ZD_IMPORT_PROBE(GetModuleFileNameW, ModuleFileNameProbe);

namespace base {
namespace {

TEST(ModulePath, ModuleIsTheOneThatTheCodeIsLinkedInto) {
  EXPECT_EQ(module_instance(), GetModuleHandleW(nullptr));
  const std::wstring path = module_file_name();
  EXPECT_EQ(path.substr(path.rfind(L'\\') + 1), L"base_tests.exe");
  EXPECT_NE(GetFileAttributesW(path.c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST(ModulePath, PathMayBeOfAnyLength) {
  const std::wstring longest(32'000, L'x');
  ModuleFileNameProbe probe;
  probe.replace([&](HMODULE, LPWSTR buffer, DWORD size) { return static_cast<DWORD>(longest.copy(buffer, size)); });
  EXPECT_EQ(module_file_name(), longest);
}

TEST(ModulePath, PathThatDoesNotFitFillsTheBuffer) {
  wchar_t buffer[5] = {};
  EXPECT_EQ(module_file_name(nullptr, buffer).size(), 5u);
}

TEST(ModulePath, UnknownModuleIsAFailure) {
  ModuleFileNameProbe probe;
  probe.fail(0, 0, ERROR_MOD_NOT_FOUND);
  wchar_t buffer[5] = {};
  EXPECT_TRUE(module_file_name(nullptr, buffer).empty());
  EXPECT_EQ(test_support::thrown_by([] { module_file_name(); }), HRESULT_FROM_WIN32(ERROR_MOD_NOT_FOUND));
}

TEST(ModulePath, FileBesideTheProgramLiesInItsFolder) {
  EXPECT_EQ(path_beside_program(L"base_tests.exe"), module_file_name(nullptr));
}

}  // namespace
}  // namespace base
