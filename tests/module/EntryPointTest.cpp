#include <gtest/gtest.h>

#include <array>
#include <cstring>

#include "Module.h"
#include "ModuleCopy.h"

namespace module_test {
namespace {

/// While it lives, `InitializeCriticalSectionAndSpinCount` fails for every caller in this process: its first
/// instructions are others. A module's imports cannot be redirected before its entry point runs.
class ScopedNoCriticalSections {
 public:
  ScopedNoCriticalSections()
      : function_(reinterpret_cast<void*>(
            GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "InitializeCriticalSectionAndSpinCount"))) {
    std::memcpy(original_.data(), function_, original_.size());
    write({0x31, 0xC0, 0xC3});  // xor eax, eax; ret
  }
  ~ScopedNoCriticalSections() { write(original_); }
  ScopedNoCriticalSections(const ScopedNoCriticalSections&) = delete;
  ScopedNoCriticalSections& operator=(const ScopedNoCriticalSections&) = delete;

 private:
  using Code = std::array<BYTE, 3>;

  void write(const Code& code) {
    DWORD protection = 0;
    VirtualProtect(function_, code.size(), PAGE_EXECUTE_READWRITE, &protection);
    std::memcpy(function_, code.data(), code.size());
    VirtualProtect(function_, code.size(), protection, &protection);
    FlushInstructionCache(GetCurrentProcess(), function_, code.size());
  }

  void* function_;
  Code original_ = {};
};

TEST(EntryPoint, RefusesTheProcessWhenTheModulesCriticalSectionCannotBeCreated) {
  const ModuleCopy copy(L"zd without section ");
  HMODULE loaded = nullptr;
  DWORD error = ERROR_SUCCESS;
  {
    const ScopedNoCriticalSections none;
    loaded = LoadLibraryW(copy.path().c_str());
    error = GetLastError();
  }
  EXPECT_EQ(nullptr, loaded);
  EXPECT_EQ(DWORD{ERROR_DLL_INIT_FAILED}, error);
  if (loaded) FreeLibrary(loaded);
  EXPECT_NO_THROW(Module(copy.path())) << "it can be loaded as soon as there is memory";
}

}  // namespace
}  // namespace module_test
