#include <windows.h>
#include <gtest/gtest.h>
#include <oleauto.h>

#include <filesystem>

#include "ComPtr.h"
#include "ComStrings.h"
#include "ErrorInformation.h"
#include "Registration.h"
#include "RegistryTree.h"
#include "ScratchRoot.h"
#include "TemporaryFolder.h"
#include "TypeInfo.h"
#include "zdExpirationRules_h.h"

/// An interface that no type library describes.
struct IUndescribed : IDispatch {};
__CRT_UUID_DECL(IUndescribed, 0x5a1d0c6e, 0x3b57, 0x4d52, 0x9e, 0x0b, 0x0f, 0x6a, 0x33, 0x7d, 0x21, 0x03)

namespace platform {
namespace {

_bstr_t help_text(ITypeInfo* info) {
  BSTR text = nullptr;
  info->GetDocumentation(MEMBERID_NIL, nullptr, &text, nullptr, nullptr);
  return take_string(text);
}

/// A file with a library of the same identity as the sample, whose one interface has another help text.
class OtherLibrary {
 public:
  explicit OtherLibrary(const GUID& type, WORD version = 1) {
    const std::wstring path = path_.wstring();
    base::ComPtr<ICreateTypeLib2> library;
    base::fetch_into(library, [&](ICreateTypeLib2** out) { return CreateTypeLib2(SYS_WIN64, path.c_str(), out); });
    std::wstring name = L"Other";
    std::wstring help = L"from the registered library";
    library->SetName(name.data());
    library->SetGuid(LIBID_zdExpirationRules);
    library->SetVersion(version, 0);
    library->SetLcid(LOCALE_NEUTRAL);
    base::ComPtr<ICreateTypeInfo> info;
    base::fetch_into(info,
                     [&](ICreateTypeInfo** out) { return library->CreateTypeInfo(name.data(), TKIND_INTERFACE, out); });
    info->SetGuid(type);
    info->SetDocString(help.data());
    info->LayOut();
    EXPECT_EQ(library->SaveAllChanges(), S_OK);
  }

  void register_it() const {
    std::wstring path = path_.wstring();
    base::ComPtr<ITypeLib> library;
    ASSERT_EQ(base::fetch_into(library, [&](ITypeLib** out) { return LoadTypeLibEx(path.c_str(), REGKIND_NONE, out); }),
              S_OK);
    ASSERT_EQ(RegisterTypeLib(library, path.data(), nullptr), S_OK);
  }

 private:
  test_support::TemporaryFolder folder_;
  std::filesystem::path path_ = folder_.path() / L"other.tlb";
};

class TypeInfoTest : public testing::Test {
 protected:
  test_support::ScratchRoot scratch_{HKEY_CLASSES_ROOT};
};

_bstr_t loaded_help_text(const TypeInfo& type) {
  base::ComPtr<ITypeInfo> info;
  EXPECT_EQ(base::fetch_into(info, [&](ITypeInfo** out) { return type.get(0, out); }), S_OK);
  return info ? help_text(info) : _bstr_t();
}

TEST_F(TypeInfoTest, ComesFromTheModulesOwnResourceWhenNothingIsRegistered) {
  const TypeInfo type(LIBID_zdExpirationRules, __uuidof(IkvPlugin));
  EXPECT_STREQ(loaded_help_text(type), L"IkvPlugin Interface");
}

TEST_F(TypeInfoTest, ComesFromTheRegisteredLibraryFirst) {
  const OtherLibrary other(__uuidof(IkvPlugin));
  other.register_it();
  const TypeInfo type(LIBID_zdExpirationRules, __uuidof(IkvPlugin));
  EXPECT_STREQ(loaded_help_text(type), L"from the registered library");
}

TEST_F(TypeInfoTest, ComesFromTheModulesOwnResourceWhenTheRegisteredFileIsMissing) {
  { OtherLibrary(__uuidof(IkvPlugin)).register_it(); }
  ASSERT_TRUE(test_support::registry_key_exists(HKEY_CLASSES_ROOT, L"TypeLib"));
  const TypeInfo type(LIBID_zdExpirationRules, __uuidof(IkvPlugin));
  EXPECT_STREQ(loaded_help_text(type), L"IkvPlugin Interface");
}

TEST_F(TypeInfoTest, ComesFromTheModulesOwnResourceWhenItIsNotInTheRegisteredLibrary) {
  const OtherLibrary stale(__uuidof(IUndescribed));
  stale.register_it();
  const TypeInfo fallback(LIBID_zdExpirationRules, __uuidof(IkvPlugin));
  EXPECT_STREQ(loaded_help_text(fallback), L"IkvPlugin Interface");
  const TypeInfo known(LIBID_zdExpirationRules, __uuidof(IUndescribed));
  EXPECT_STREQ(loaded_help_text(known), L"from the registered library") << "a library without the type is registered";
}

TEST_F(TypeInfoTest, ComesFromTheModulesOwnResourceWhenAnotherVersionIsRegistered) {
  const OtherLibrary newer(__uuidof(IkvPlugin), 2);
  newer.register_it();
  ASSERT_TRUE(test_support::registry_key_exists(HKEY_CLASSES_ROOT, L"TypeLib"));
  const TypeInfo type(LIBID_zdExpirationRules, __uuidof(IkvPlugin));
  EXPECT_STREQ(loaded_help_text(type), L"IkvPlugin Interface");
}

TEST_F(TypeInfoTest, StaysAsLoadedWhenTheRegistrationChanges) {
  const TypeInfo type(LIBID_zdExpirationRules, __uuidof(IkvPlugin));
  const OtherLibrary other(__uuidof(IkvPlugin));
  other.register_it();
  EXPECT_STREQ(loaded_help_text(type), L"IkvPlugin Interface");
}

TEST_F(TypeInfoTest, IsOneInformationOfOneType) {
  const TypeInfo type(LIBID_zdExpirationRules, __uuidof(IkvPlugin));
  UINT count = 7;
  EXPECT_EQ(type.get_count(&count), S_OK);
  EXPECT_EQ(count, 1u);
  EXPECT_EQ(type.get_count(nullptr), E_POINTER);
  ITypeInfo* info = reinterpret_cast<ITypeInfo*>(this);
  EXPECT_EQ(type.get(1, &info), DISP_E_BADINDEX);
  EXPECT_EQ(info, nullptr);
  EXPECT_EQ(type.get(0, nullptr), E_POINTER);
}

TEST_F(TypeInfoTest, EveryCallHandsOutAReferenceOfItsOwn) {
  ITypeInfo* info = nullptr;
  {
    const TypeInfo type(LIBID_zdExpirationRules, __uuidof(IkvPlugin));
    ASSERT_EQ(type.get(0, &info), S_OK);
  }
  EXPECT_STREQ(help_text(info), L"IkvPlugin Interface");
  info->Release();
}

/// A dual object on the stack without type information.
class Undescribed final : public DualInterface<IUndescribed, LIBID_zdExpirationRules>,
                          public ProvideClassInfo<IUndescribed, LIBID_zdExpirationRules> {
 public:
  STDMETHODIMP QueryInterface(REFIID, void**) noexcept override { return E_NOINTERFACE; }
  STDMETHODIMP_(ULONG) AddRef() noexcept override { return 1; }
  STDMETHODIMP_(ULONG) Release() noexcept override { return 1; }
};

TEST_F(TypeInfoTest, FailureToLoadIsReturnedByEveryDispatchCall) {
  Undescribed object;
  UINT count = 7;
  EXPECT_EQ(object.GetTypeInfoCount(&count), TYPE_E_ELEMENTNOTFOUND);
  EXPECT_EQ(count, 0u);
  ITypeInfo* info = reinterpret_cast<ITypeInfo*>(this);
  EXPECT_EQ(object.GetTypeInfo(0, LOCALE_NEUTRAL, &info), TYPE_E_ELEMENTNOTFOUND);
  EXPECT_EQ(info, nullptr);
  std::wstring name = L"Initialize";
  LPOLESTR names[] = {name.data()};
  DISPID id = 0;
  EXPECT_EQ(object.GetIDsOfNames(IID_NULL, names, 1, LOCALE_NEUTRAL, &id), TYPE_E_ELEMENTNOTFOUND);
  DISPPARAMS none = {};
  test_support::leave_error_information();
  EXPECT_EQ(object.Invoke(1, IID_NULL, LOCALE_NEUTRAL, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr),
            TYPE_E_ELEMENTNOTFOUND);
  EXPECT_FALSE(test_support::has_error_information());
  info = reinterpret_cast<ITypeInfo*>(this);
  EXPECT_EQ(object.GetClassInfo(&info), TYPE_E_ELEMENTNOTFOUND);
  EXPECT_EQ(info, nullptr);
}

TEST_F(TypeInfoTest, OtherLibraryThanTheModulesIsNotFound) {
  // No library of this identity is registered, and the module's own one describes other types.
  const TypeInfo type(__uuidof(IUndescribed), __uuidof(IUndescribed));
  ITypeInfo* info = nullptr;
  EXPECT_EQ(type.get(0, &info), TYPE_E_ELEMENTNOTFOUND);
  DISPPARAMS none = {};
  EXPECT_EQ(type.invoke(this, 1, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr), TYPE_E_ELEMENTNOTFOUND);
}

/// A described object on the stack that keeps what was called.
class Plugin final : public DualInterface<IkvPlugin, LIBID_zdExpirationRules> {
 public:
  STDMETHODIMP QueryInterface(REFIID, void**) noexcept override { return E_NOINTERFACE; }
  STDMETHODIMP_(ULONG) AddRef() noexcept override { return 1; }
  STDMETHODIMP_(ULONG) Release() noexcept override { return 1; }
  STDMETHODIMP Initialize(IDispatch*, IDispatch*, IDispatch*, IDispatch*, BSTR, IDispatch*) noexcept override {
    return E_NOTIMPL;
  }
  STDMETHODIMP OnSelectionChanged(IDispatch* table) noexcept override {
    selection = table;
    return S_OK;
  }
  STDMETHODIMP DoCommand(long Id, VARIANT) noexcept override {
    command = Id;
    return S_FALSE;
  }
  STDMETHODIMP Uninitialize() noexcept override { return E_ACCESSDENIED; }

  long command = 0;
  IDispatch* selection = nullptr;
};

TEST_F(TypeInfoTest, InvokedMethodIsCalledOnTheObjectItself) {
  Plugin object;
  VARIANTARG arguments[2] = {};
  arguments[1].vt = VT_I4;
  arguments[1].lVal = 4711;
  DISPPARAMS parameters = {arguments, nullptr, 2, 0};
  EXPECT_TRUE(
      SUCCEEDED(object.Invoke(3, IID_NULL, LOCALE_NEUTRAL, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr)));
  EXPECT_EQ(object.command, 4711);
}

TEST_F(TypeInfoTest, NullArgumentsOfDispatchCallsAreRefused) {
  Plugin object;
  DISPID id = 0;
  std::wstring name = L"DoCommand";
  LPOLESTR names[] = {name.data()};
  EXPECT_EQ(object.GetIDsOfNames(IID_NULL, nullptr, 1, LOCALE_NEUTRAL, &id), E_INVALIDARG);
  EXPECT_EQ(object.GetIDsOfNames(IID_NULL, names, 1, LOCALE_NEUTRAL, nullptr), E_INVALIDARG);
  EXPECT_TRUE(FAILED(object.Invoke(3, IID_NULL, LOCALE_NEUTRAL, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr)));
}

}  // namespace
}  // namespace platform
