#include <gmock/gmock.h>

#include <fstream>

#include "ExpectedReports.h"
#include "GuidText.h"
#include "LateBound.h"
#include "Module.h"
#include "ModuleCopy.h"
#include "ModulePath.h"
#include "TextEncoding.h"

namespace module_test {
namespace {

std::string narrow_text(const GUID& guid) { return base::to_utf8(test_support::guid_text(guid)); }

/// What a host puts beside its program so that nothing needs to be registered.
std::string manifest() {
  const std::string library = narrow_text(LIBID_zdExpirationRules);
  return R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<assembly xmlns="urn:schemas-microsoft-com:asm.v1" manifestVersion="1.0">
  <assemblyIdentity type="win32" name="zdExpirationRules.Host" version="1.0.0.0" processorArchitecture="amd64"/>
  <file name="zdExpirationRules.dll">
    <comClass clsid=")" +
         narrow_text(__uuidof(CzdExpirationRulePlugin)) + R"(" threadingModel="Apartment" tlbid=")" + library +
         R"(" progid="zdExpirationRule.ExpirationRule.1">
      <progid>zdExpirationRule.ExpirationRule</progid>
    </comClass>
    <typelib tlbid=")" +
         library + R"(" version="1.0" helpdir=""/>
  </file>
</assembly>
)";
}

/// Registers the classes of a manifest for this thread.
class ActivationContext {
 public:
  explicit ActivationContext(const std::wstring& path) {
    ACTCTXW source = {};
    source.cbSize = sizeof source;
    source.lpSource = path.c_str();
    context_ = CreateActCtxW(&source);
    EXPECT_NE(INVALID_HANDLE_VALUE, context_) << "error " << GetLastError();
    EXPECT_TRUE(ActivateActCtx(context_, &cookie_));
  }
  ~ActivationContext() {
    DeactivateActCtx(0, cookie_);
    ReleaseActCtx(context_);
  }
  ActivationContext(const ActivationContext&) = delete;
  ActivationContext& operator=(const ActivationContext&) = delete;

 private:
  HANDLE context_;
  ULONG_PTR cookie_ = 0;
};

class ActivationTest : public testing::Test {
 protected:
  void activate(const wchar_t* folder) {
    copy_.emplace(folder);
    const std::filesystem::path path = copy_->folder() / L"host.manifest";
    std::ofstream(path) << manifest();
    context_.emplace(path.wstring());
  }

  void TearDown() override {
    context_.reset();
    CoFreeUnusedLibrariesEx(0, 0);
  }

  std::optional<ModuleCopy> copy_;
  std::optional<ActivationContext> context_;
};

TEST_F(ActivationTest, ObjectIsCreatedByItsClassWithoutRegistration) {
  IkvPlugin* plugin = nullptr;
  EXPECT_EQ(REGDB_E_CLASSNOTREG, CoCreateInstance(__uuidof(CzdExpirationRulePlugin), nullptr, CLSCTX_INPROC_SERVER,
                                                  __uuidof(IkvPlugin), reinterpret_cast<void**>(&plugin)));
  for (const wchar_t* folder : odd_folders) {
    activate(folder);
    ASSERT_EQ(S_OK, CoCreateInstance(__uuidof(CzdExpirationRulePlugin), nullptr, CLSCTX_INPROC_SERVER,
                                     __uuidof(IkvPlugin), reinterpret_cast<void**>(&plugin)));
    EXPECT_EQ(copy_->path(), base::module_file_name(GetModuleHandleW(L"zdExpirationRules.dll")));
    plugin->Release();
    TearDown();
    ASSERT_EQ(nullptr, GetModuleHandleW(L"zdExpirationRules.dll"));
  }
}

TEST_F(ActivationTest, ObjectIsCreatedByItsNameAndCalledByNameWithoutRegistration) {
  activate(L"zd manifest");
  CLSID found = {};
  ASSERT_EQ(S_OK, CLSIDFromProgID(L"zdExpirationRule.ExpirationRule", &found));
  IDispatch* object = nullptr;
  ASSERT_EQ(S_OK,
            CoCreateInstance(found, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, reinterpret_cast<void**>(&object)));
  EXPECT_EQ(S_OK, call(object, L"Uninitialize").hresult);
  EXPECT_EQ(S_OK, call(object, L"OnSelectionChanged", {_variant_t(object)}).hresult);
  const LateBoundResult command = call(object, L"DoCommand", {_variant_t(1L), _variant_t()});
  EXPECT_EQ(DISP_E_EXCEPTION, command.hresult);
  EXPECT_EQ(E_FAIL, command.code);
  EXPECT_EQ(1u, test_support::take_reports().size());
  object->Release();
}

TEST_F(ActivationTest, TypeLibraryIsFoundWithoutRegistration) {
  activate(L"zd manifest");
  ITypeLib* library = nullptr;
  ASSERT_EQ(S_OK, LoadRegTypeLib(LIBID_zdExpirationRules, 1, 0, LOCALE_NEUTRAL, &library));
  EXPECT_EQ(3u, library->GetTypeInfoCount());
  library->Release();
}

}  // namespace
}  // namespace module_test
