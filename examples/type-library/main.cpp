// Prints what the module's type library says: its classes, interfaces, methods and parameters.
//   print-type-library [FILE]
// FILE is the module itself, which carries its type library, or a .tlb file; zdExpirationRules.dll when none is named.

#include <windows.h>
#include <oleauto.h>

#include <cstdio>
#include <filesystem>
#include <string>

namespace {

/// Owns one reference to an interface for a scope.
template <class Interface>
class Owned {
 public:
  Owned() = default;
  Owned(const Owned&) = delete;
  Owned& operator=(const Owned&) = delete;
  ~Owned() {
    if (pointer_) pointer_->Release();
  }
  Interface** operator&() { return &pointer_; }
  Interface* operator->() const { return pointer_; }

 private:
  Interface* pointer_ = nullptr;
};

std::wstring take(BSTR text) {
  std::wstring taken(text ? text : L"", SysStringLen(text));
  SysFreeString(text);
  return taken;
}

const wchar_t* type_name(const TYPEDESC& type) {
  switch (type.vt) {
    case VT_I4:
      return L"long";
    case VT_BSTR:
      return L"BSTR";
    case VT_VARIANT:
      return L"VARIANT";
    case VT_DISPATCH:
      return L"IDispatch*";
    case VT_HRESULT:
      return L"HRESULT";
    case VT_VOID:
      return L"void";
    case VT_PTR:
      return type.lptdesc->vt == VT_USERDEFINED ? L"interface*" : L"pointer";
    default:
      return L"other";
  }
}

void print_method(ITypeInfo& type, const FUNCDESC& method) {
  BSTR names[16] = {};
  UINT count = 0;
  type.GetNames(method.memid, names, 16, &count);
  std::printf("    [%ld] %ls(", method.memid, take(names[0]).c_str());
  for (short i = 0; i < method.cParams; ++i) {
    const std::wstring name = static_cast<UINT>(i) + 1 < count ? take(names[i + 1]) : L"?";
    std::printf("%s%ls %ls", i ? ", " : "", type_name(method.lprgelemdescParam[i].tdesc), name.c_str());
  }
  std::puts(")");
}

/// The methods that the interface adds to those of IDispatch.
void print_methods(ITypeInfo& type, const TYPEATTR& attributes) {
  for (UINT i = 0; i < attributes.cFuncs; ++i) {
    FUNCDESC* method = nullptr;
    if (FAILED(type.GetFuncDesc(i, &method))) continue;
    if (!(method->wFuncFlags & FUNCFLAG_FRESTRICTED)) print_method(type, *method);
    type.ReleaseFuncDesc(method);
  }
}

void print_type(ITypeInfo& type) {
  TYPEATTR* attributes = nullptr;
  BSTR name = nullptr;
  BSTR help = nullptr;
  if (FAILED(type.GetTypeAttr(&attributes))) return;
  type.GetDocumentation(MEMBERID_NIL, &name, &help, nullptr, nullptr);
  wchar_t id[39] = {};
  StringFromGUID2(attributes->guid, id, 39);
  const char* kind = attributes->typekind == TKIND_COCLASS ? "class" : "interface";
  std::printf("  %s %ls %ls", kind, take(name).c_str(), id);
  std::printf("  %ls\n", take(help).c_str());
  print_methods(type, *attributes);
  type.ReleaseTypeAttr(attributes);
}

void print_library(ITypeLib& library) {
  BSTR name = nullptr;
  BSTR help = nullptr;
  library.GetDocumentation(MEMBERID_NIL, &name, &help, nullptr, nullptr);
  std::printf("library %ls", take(name).c_str());
  std::printf("  %ls\n", take(help).c_str());
  for (UINT i = 0; i < library.GetTypeInfoCount(); ++i) {
    Owned<ITypeInfo> type;
    if (SUCCEEDED(library.GetTypeInfo(i, &type))) print_type(*type.operator->());
  }
}

}  // namespace

int main(int count, char** arguments) {
  const std::filesystem::path file = count > 1 ? arguments[1] : "zdExpirationRules.dll";
  Owned<ITypeLib> library;
  // A path without its folder would be looked for along PATH as well.
  const HRESULT loaded = LoadTypeLibEx(std::filesystem::absolute(file).c_str(), REGKIND_NONE, &library);
  if (FAILED(loaded)) {
    std::printf("%s: no type library, error %08lx\n", file.string().c_str(), static_cast<unsigned long>(loaded));
    return 1;
  }
  print_library(*library.operator->());
  return 0;
}
