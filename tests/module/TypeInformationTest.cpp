#include <ocidl.h>

#include <vector>

#include "Bstr.h"
#include "ModuleTest.h"

namespace module_test {
namespace {

std::wstring taken(BSTR text) {
  const base::OwnedBstr owned(text);
  return std::wstring(base::view_of(text));
}

/// Name and help text of a type or of one of its members.
struct Texts {
  std::wstring name;
  std::wstring help;
  bool operator==(const Texts&) const = default;
};

template <class Describable>
Texts texts(Describable* info, long member) {
  BSTR name = nullptr;
  BSTR help = nullptr;
  EXPECT_EQ(S_OK, info->GetDocumentation(member, &name, &help, nullptr, nullptr));
  return {taken(name), taken(help)};
}

struct Parameter {
  std::wstring name;
  VARTYPE type;
  USHORT flags;
  bool operator==(const Parameter&) const = default;
};

struct Method {
  DISPID id;
  Texts texts;
  VARTYPE result;
  std::vector<Parameter> parameters;
  bool operator==(const Method&) const = default;
};

void PrintTo(const Method& method, std::ostream* out) {
  *out << method.id << ' ' << testing::PrintToString(method.texts.name) << ' '
       << testing::PrintToString(method.texts.help) << " result " << method.result;
  for (const Parameter& parameter : method.parameters) {
    *out << ", " << testing::PrintToString(parameter.name) << " type " << parameter.type << " flags "
         << parameter.flags;
  }
}

Method method(ITypeInfo* info, UINT index) {
  FUNCDESC* function = nullptr;
  EXPECT_EQ(S_OK, info->GetFuncDesc(index, &function));
  BSTR names[8] = {};
  UINT count = 0;
  EXPECT_EQ(S_OK, info->GetNames(function->memid, names, 8, &count));
  Method described = {function->memid, texts(info, function->memid), function->elemdescFunc.tdesc.vt, {}};
  EXPECT_EQ(INVOKE_FUNC, function->invkind);
  SysFreeString(names[0]);
  for (short i = 0; i < function->cParams; ++i) {
    described.parameters.push_back({taken(names[i + 1]), function->lprgelemdescParam[i].tdesc.vt,
                                    function->lprgelemdescParam[i].paramdesc.wParamFlags});
  }
  info->ReleaseFuncDesc(function);
  return described;
}

/// A dual interface has two descriptions: this is the one of its method table.
base::ComPtr<ITypeInfo> table_side(ITypeInfo* dispatch_side) {
  HREFTYPE reference = 0;
  EXPECT_EQ(S_OK, dispatch_side->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference));
  base::ComPtr<ITypeInfo> side;
  EXPECT_EQ(S_OK, dispatch_side->GetRefTypeInfo(reference, &side));
  return side;
}

TYPEATTR attributes(ITypeInfo* info) {
  TYPEATTR* given = nullptr;
  EXPECT_EQ(S_OK, info->GetTypeAttr(&given));
  const TYPEATTR copy = *given;
  info->ReleaseTypeAttr(given);
  return copy;
}

/// The methods of a dual interface that stand after those of `IDispatch`, in the order of the method table.
std::vector<Method> methods(ITypeInfo* dispatch_side) {
  const base::ComPtr<ITypeInfo> side = table_side(dispatch_side);
  std::vector<Method> described;
  for (UINT i = 0; i < attributes(side).cFuncs; ++i) described.push_back(method(side, i));
  return described;
}

constexpr USHORT in = PARAMFLAG_FIN;
Parameter dispatch(const wchar_t* name) { return {name, VT_DISPATCH, in}; }

class TypeInformationTest : public ModuleTest {
 protected:
  base::ComPtr<ITypeInfo> class_info() const {
    base::ComPtr<ITypeInfo> info;
    const auto provider = base::try_query<IProvideClassInfo>(module_.plugin());
    EXPECT_EQ(S_OK, provider->GetClassInfo(&info));
    return info;
  }

  base::ComPtr<ITypeLib> library() const {
    base::ComPtr<ITypeLib> library;
    UINT index = 0;
    EXPECT_EQ(S_OK, class_info()->GetContainingTypeLib(&library, &index));
    return library;
  }

  base::ComPtr<ITypeInfo> type(const GUID& id) const {
    base::ComPtr<ITypeInfo> info;
    EXPECT_EQ(S_OK, library()->GetTypeInfoOfGuid(id, &info));
    return info;
  }
};

TEST_F(TypeInformationTest, LibraryHasItsNameVersionAndHelpText) {
  const base::ComPtr<ITypeLib> found = library();
  EXPECT_EQ((Texts{L"zdExpirationRules", L"zdExpirationRules 1.0 Type Library"}), texts(found.GetInterfacePtr(), -1));
  TLIBATTR* attributes = nullptr;
  ASSERT_EQ(S_OK, found->GetLibAttr(&attributes));
  EXPECT_EQ(LIBID_zdExpirationRules, attributes->guid);
  EXPECT_EQ(1, attributes->wMajorVerNum);
  EXPECT_EQ(0, attributes->wMinorVerNum);
  EXPECT_EQ(static_cast<LCID>(LOCALE_NEUTRAL), attributes->lcid);
  EXPECT_EQ(SYS_WIN64, attributes->syskind);
  found->ReleaseTLibAttr(attributes);
}

TEST_F(TypeInformationTest, LibraryHoldsTheTwoInterfacesAndTheClassAndNothingElse) {
  const base::ComPtr<ITypeLib> found = library();
  std::vector<std::wstring> names;
  for (UINT i = 0; i < found->GetTypeInfoCount(); ++i) {
    names.push_back(texts(found.GetInterfacePtr(), static_cast<long>(i)).name);
  }
  EXPECT_THAT(names,
              testing::UnorderedElementsAre(L"IkvPlugin", L"IzdExpirationRulesPlugin", L"CzdExpirationRulePlugin"));
}

TEST_F(TypeInformationTest, ClassIsCreatableAndListsItsInterfaces) {
  const base::ComPtr<ITypeInfo> info = class_info();
  EXPECT_EQ((Texts{L"CzdExpirationRulePlugin", L"CzdExpirationRulePlugin Class"}),
            texts(info.GetInterfacePtr(), MEMBERID_NIL));
  const TYPEATTR found = attributes(info);
  EXPECT_EQ(__uuidof(CzdExpirationRulePlugin), found.guid);
  EXPECT_EQ(TKIND_COCLASS, found.typekind);
  EXPECT_EQ(TYPEFLAG_FCANCREATE, found.wTypeFlags);
  EXPECT_EQ(2, found.cImplTypes);

  const std::wstring names[] = {L"IkvPlugin", L"IzdExpirationRulesPlugin"};
  const int flags[] = {IMPLTYPEFLAG_FDEFAULT, 0};
  for (UINT i = 0; i < 2; ++i) {
    HREFTYPE reference = 0;
    base::ComPtr<ITypeInfo> implemented;
    int flag = -1;
    ASSERT_EQ(S_OK, info->GetRefTypeOfImplType(i, &reference));
    ASSERT_EQ(S_OK, info->GetRefTypeInfo(reference, &implemented));
    EXPECT_EQ(S_OK, info->GetImplTypeFlags(i, &flag));
    EXPECT_EQ(names[i], texts(implemented.GetInterfacePtr(), MEMBERID_NIL).name);
    EXPECT_EQ(flags[i], flag);
  }
}

TEST_F(TypeInformationTest, BothInterfacesAreDualAndAutomationCompatible) {
  for (const GUID& id : {__uuidof(IkvPlugin), __uuidof(IzdExpirationRulesPlugin)}) {
    const base::ComPtr<ITypeInfo> info = type(id);
    EXPECT_EQ(id, attributes(info).guid);
    EXPECT_EQ(TKIND_DISPATCH, attributes(info).typekind);
    EXPECT_TRUE(attributes(info).wTypeFlags & TYPEFLAG_FDUAL);
    const base::ComPtr<ITypeInfo> side = table_side(info);
    EXPECT_EQ(TKIND_INTERFACE, attributes(side).typekind);
    EXPECT_TRUE(attributes(side).wTypeFlags & TYPEFLAG_FDUAL);
    EXPECT_TRUE(attributes(side).wTypeFlags & TYPEFLAG_FOLEAUTOMATION);
  }
}

TEST_F(TypeInformationTest, PluginInterfaceIsDescribedMethodByMethod) {
  const base::ComPtr<ITypeInfo> info = type(__uuidof(IkvPlugin));
  EXPECT_EQ((Texts{L"IkvPlugin", L"IkvPlugin Interface"}), texts(info.GetInterfacePtr(), MEMBERID_NIL));
  const std::vector<Method> expected = {
      {1,
       {L"Initialize", L"method Initialize"},
       VT_HRESULT,
       {dispatch(L"pMainMenu"), dispatch(L"MainControlBar"), dispatch(L"PortfolioContextMenu"),
        dispatch(L"PortfolioHotKeys"), Parameter{L"RegistryPath", VT_BSTR, in}, dispatch(L"zdStorage")}},
      {2, {L"OnSelectionChanged", L"method OnSelectionChanged"}, VT_HRESULT, {dispatch(L"SelectionTable")}},
      {3,
       {L"DoCommand", L"method DoCommand"},
       VT_HRESULT,
       {Parameter{L"Id", VT_I4, in}, Parameter{L"Parameter", VT_VARIANT, in}}},
      {4, {L"Uninitialize", L"method Uninitialize"}, VT_HRESULT, {}},
  };
  EXPECT_EQ(expected, methods(info));
}

TEST_F(TypeInformationTest, OwnInterfaceIsDescribedWithItsHelpTextAsItHasAlwaysBeenSpelt) {
  const base::ComPtr<ITypeInfo> info = type(__uuidof(IzdExpirationRulesPlugin));
  EXPECT_EQ((Texts{L"IzdExpirationRulesPlugin", L"IzdExpirationRulesPlugin Interface"}),
            texts(info.GetInterfacePtr(), MEMBERID_NIL));
  const std::vector<Method> expected = {
      {1, {L"Show", L"Show expiraion rules"}, VT_HRESULT, {Parameter{L"RuleID", VT_I4, in}}}};
  EXPECT_EQ(expected, methods(info));
}

TEST_F(TypeInformationTest, EachInterfaceReturnsItsOwnType) {
  const base::ComPtr<IkvPlugin> plugin = module_.plugin();
  const auto own = base::try_query<IzdExpirationRulesPlugin>(plugin);
  base::ComPtr<ITypeInfo> of_plugin;
  base::ComPtr<ITypeInfo> of_own;
  ASSERT_EQ(S_OK, plugin->GetTypeInfo(0, LOCALE_SYSTEM_DEFAULT, &of_plugin));
  ASSERT_EQ(S_OK, own->GetTypeInfo(0, LOCALE_SYSTEM_DEFAULT, &of_own));
  EXPECT_EQ(L"IkvPlugin", texts(of_plugin.GetInterfacePtr(), MEMBERID_NIL).name);
  EXPECT_EQ(L"IzdExpirationRulesPlugin", texts(of_own.GetInterfacePtr(), MEMBERID_NIL).name);
}

TEST_F(TypeInformationTest, IsLoadedOnceAndServedToEveryObject) {
  base::ComPtr<ITypeInfo> first;
  base::ComPtr<ITypeInfo> second;
  ASSERT_EQ(S_OK, module_.plugin()->GetTypeInfo(0, LOCALE_NEUTRAL, &first));
  ASSERT_EQ(S_OK, module_.plugin()->GetTypeInfo(0, LOCALE_NEUTRAL, &second));
  EXPECT_EQ(first.GetInterfacePtr(), second.GetInterfacePtr());
}

TEST_F(TypeInformationTest, OddArgumentsAreRefused) {
  const base::ComPtr<IkvPlugin> plugin = module_.plugin();
  UINT count = 0;
  EXPECT_EQ(S_OK, plugin->GetTypeInfoCount(&count));
  EXPECT_EQ(1u, count);
  EXPECT_EQ(E_POINTER, plugin->GetTypeInfoCount(nullptr));
  ITypeInfo* info = reinterpret_cast<ITypeInfo*>(this);
  EXPECT_EQ(DISP_E_BADINDEX, plugin->GetTypeInfo(1, LOCALE_NEUTRAL, &info));
  EXPECT_EQ(nullptr, info);
  EXPECT_EQ(E_POINTER, plugin->GetTypeInfo(0, LOCALE_NEUTRAL, nullptr));
  EXPECT_EQ(E_POINTER, base::try_query<IProvideClassInfo>(plugin)->GetClassInfo(nullptr));
}

}  // namespace
}  // namespace module_test
