// The smallest host: it keeps two rules in memory, opens the module's rule list or its rule editor, and prints what the
// rules are afterwards. The module is not registered: it lies beside this program with its manifest.
//   minimal-host list
//   minimal-host edit NUMBER

#include <cstdio>
#include <cwchar>
#include <filesystem>
#include <functional>

#include "HostMenu.h"
#include "Storage.h"
#include "zdExpirationRules_h.h"

namespace {

constexpr long list_command = 100;

/// A menu item or a hot key: all that the module asks of it is the id of its command.
template <class Interface>
class Command final : public Object<Interface> {
 public:
  HRESULT STDMETHODCALLTYPE get_CommandID(long* id) override { return hand_out(id, list_command); }
};

class SubMenu final : public Object<IkvSubMenu> {
 public:
  HRESULT STDMETHODCALLTYPE AddCommand(BSTR, long, long, long, IUnknown*, long, IDispatch*,
                                       IkvMenuItem** item) override {
    return hand_out(item, [] { return new Command<IkvMenuItem>; });
  }
  NOT_CALLED(7) NOT_CALLED(8) NOT_CALLED(9)
};

/// A host with a menu adds the caption to it, and calls `DoCommand` of the target when the user picks the command.
class MainMenu final : public Object<IkvMainMenu> {
 public:
  HRESULT STDMETHODCALLTYPE FindSubMenu(BSTR, IkvSubMenu** submenu) override {
    return hand_out(submenu, [] { return nullptr; });
  }
  HRESULT STDMETHODCALLTYPE AddSubMenu(BSTR, BSTR, long, IkvSubMenu** submenu) override {
    return hand_out(submenu, [] { return new SubMenu; });
  }
  NOT_CALLED(8)
};

class HotKeys final : public Object<IkvHotKeyCollection> {
 public:
  HRESULT STDMETHODCALLTYPE AddHotKey(long, long, IDispatch*, IDispatch** hot_key) override {
    return hand_out(hot_key, [] { return new Command<IkvHotKey>; });
  }
};

/// Creates the host's objects of one class for the module.
class Factory final : public IClassFactory {
 public:
  explicit Factory(std::function<IUnknown*()> make) : make_(std::move(make)) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    if (!object) return E_POINTER;
    *object = iid == IID_IUnknown || iid == IID_IClassFactory ? this : nullptr;
    return *object ? S_OK : E_NOINTERFACE;
  }
  // It lives as long as `main`.
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (outer) return CLASS_E_NOAGGREGATION;
    return com_method([&] {
      IUnknown* created = make_();
      const HRESULT result = created->QueryInterface(iid, object);
      created->Release();
      return result;
    });
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

 private:
  std::function<IUnknown*()> make_;
};

/// Lets this thread create the classes of the module's manifest, which lies beside the program with the module.
bool use_manifest() {
  wchar_t program[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, program, MAX_PATH);
  const auto manifest = std::filesystem::path(program).parent_path() / L"zdExpirationRules.manifest";
  ACTCTXW source = {};
  source.cbSize = sizeof source;
  source.lpSource = manifest.c_str();
  HANDLE context = CreateActCtxW(&source);
  ULONG_PTR cookie = 0;
  return context != INVALID_HANDLE_VALUE && ActivateActCtx(context, &cookie);
}

/// Creates and initializes the module, opens the list (for 0) or the editor on a rule, and returns when the user has
/// closed it.
HRESULT run(Storage& storage, long rule) {
  IkvPlugin* plugin = nullptr;
  HRESULT result = CoCreateInstance(__uuidof(CzdExpirationRulePlugin), nullptr, CLSCTX_INPROC_SERVER,
                                    __uuidof(IkvPlugin), reinterpret_cast<void**>(&plugin));
  if (FAILED(result)) return result;
  auto* menu = new MainMenu;
  auto* keys = new HotKeys;
  BSTR path = SysAllocString(L"SOFTWARE\\Examples\\Minimal host");
  result = plugin->Initialize(menu, menu, menu, keys, path, static_cast<IkvStorage*>(&storage));
  if (SUCCEEDED(result) && rule == 0) {
    result = plugin->DoCommand(list_command, VARIANT{});
  } else if (SUCCEEDED(result)) {
    IzdExpirationRulesPlugin* rules = nullptr;
    result = plugin->QueryInterface(__uuidof(IzdExpirationRulesPlugin), reinterpret_cast<void**>(&rules));
    if (SUCCEEDED(result)) result = rules->Show(rule);
    if (rules) rules->Release();
  }
  plugin->Uninitialize();
  plugin->Release();
  SysFreeString(path);
  keys->Release();
  menu->Release();
  return result;
}

}  // namespace

int main(int count, char** arguments) {
  // The module loads two libraries by name. They are looked for beside this program and in the system's folder only,
  // not in the current folder nor along PATH.
  if (!SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_DEFAULT_DIRS)) return 1;
  const bool list = count == 2 && std::string(arguments[1]) == "list";
  const long rule = count == 3 && std::string(arguments[1]) == "edit" ? std::strtol(arguments[2], nullptr, 10) : 0;
  if (!list && rule < 1) {
    std::puts("minimal-host list | minimal-host edit NUMBER");
    return 2;
  }
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  if (!use_manifest()) {
    std::printf("zdExpirationRules.manifest cannot be used: error %lu\n", GetLastError());
    return 1;
  }

  Factory tables([] { return static_cast<IKV_kvudfcom::IkvTable*>(new Table); });
  Factory filters([] { return static_cast<IkvRuleFilter*>(new RuleFilter); });
  DWORD cookies[2] = {};
  CoRegisterClassObject(__uuidof(kvTable), &tables, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookies[0]);
  CoRegisterClassObject(__uuidof(kvRuleFilter), &filters, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookies[1]);

  auto* storage = new Storage;
  storage->add(L"Third Friday", {0, 0, 1, 1, 1, 3, 5, 1, 1});
  storage->add(L"Fifteenth", {2, 0, 0, 15, 1, 1, 1, 1, 0});
  const HRESULT result = run(*storage, list ? 0 : rule);
  std::printf("result %08lx\n", static_cast<unsigned long>(result));
  for (const auto& [id, row] : storage->rules()) {
    std::printf("%ld\t%ls", id, row.at(KVFIELD_RULE_NAME).text.c_str());
    for (const long field : number_fields) std::printf("\t%ld", row.at(field).number);
    std::puts("");
  }
  storage->Release();
  for (const DWORD cookie : cookies) CoRevokeClassObject(cookie);
  CoUninitialize();
  return SUCCEEDED(result) ? 0 : 1;
}
