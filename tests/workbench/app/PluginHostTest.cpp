#include <gtest/gtest.h>

#include "ChildProcess.h"
#include "ModulePath.h"
#include "Owned.h"
#include "PluginHost.h"
#include "TemporaryFolder.h"

namespace workbench {
namespace {

using RegistrationFunction = HRESULT(STDMETHODCALLTYPE*)();

constexpr wchar_t module_name[] = L"zdExpirationRules.dll";

std::filesystem::path neighbour() { return base::path_beside_program(module_name); }

/// Calls a function of a module that is in use nowhere else.
HRESULT call_export(const std::filesystem::path& module, const char* name) {
  const base::LoadedModule library(LoadLibraryW(module.c_str()));
  const auto function =
      reinterpret_cast<RegistrationFunction>(reinterpret_cast<void*>(GetProcAddress(library.get(), name)));
  return function ? function() : E_NOINTERFACE;
}

std::filesystem::path loaded_module() {
  HMODULE module = GetModuleHandleW(module_name);
  return module ? base::module_file_name(module) : L"";
}

/// With a second copy of the module in another folder. Registering it is seen by every process of this registry.
class PluginHostTest : public testing::Test {
 protected:
  PluginHostTest() { std::filesystem::copy_file(neighbour(), copy_); }

  ~PluginHostTest() override { unregister_copy(); }

  void register_copy() {
    registered_ = true;
    ASSERT_EQ(call_export(copy_, "DllRegisterServer"), S_OK);
  }

  void unregister_copy() {
    if (!std::exchange(registered_, false)) return;
    EXPECT_EQ(call_export(copy_, "DllUnregisterServer"), S_OK);
  }

  /// The file of the plug-in that a host creates when no module is named. Releases the plug-in again.
  static std::filesystem::path chosen_module() {
    std::filesystem::path chosen;
    {
      const PluginHost host({});
      chosen = loaded_module();
    }
    CoFreeUnusedLibrariesEx(0, 0);
    EXPECT_EQ(loaded_module(), L"");
    return chosen;
  }

  const test_support::TemporaryFolder folder_{L"zd registered"};
  const std::filesystem::path copy_ = folder_.path() / module_name;

 private:
  bool registered_ = false;
};

TEST_F(PluginHostTest, RegisteredModuleGoesBeforeTheOneBesideTheProgram) {
  register_copy();
  EXPECT_EQ(chosen_module(), copy_);
}

TEST_F(PluginHostTest, ModuleBesideTheProgramServesWhereNoneIsRegistered) {
  EXPECT_EQ(chosen_module(), neighbour());
  register_copy();
  unregister_copy();
  EXPECT_EQ(chosen_module(), neighbour());
}

TEST_F(PluginHostTest, NamedModuleGoesBeforeTheRegisteredOne) {
  register_copy();
  const PluginHost host(neighbour());
  EXPECT_EQ(loaded_module(), neighbour());
}

TEST_F(PluginHostTest, RegisteredModuleWithoutItsFileIsAFailure) {
  register_copy();
  const std::filesystem::path moved = copy_.parent_path() / L"moved.dll";
  std::filesystem::rename(copy_, moved);
  EXPECT_THROW(PluginHost({}), _com_error);
  std::filesystem::rename(moved, copy_);
}

TEST_F(PluginHostTest, NoRegisteredClassGivesNoPlugin) {
  EXPECT_EQ(create_registered_plugin(), nullptr);
  register_copy();
  EXPECT_NE(create_registered_plugin(), nullptr);
  CoFreeUnusedLibrariesEx(0, 0);
}

}  // namespace
}  // namespace workbench
