#include <windows.h>

#include "ClassFactory.h"
#include "CzdExpirationRulesModule.h"
#include "zdExpirationRulePlugin.h"

namespace {

zd_expiration_rule_plugin::CzdExpirationRulesModule module_object;

platform::ClassFactory plugin_factory(&platform::create_com_object<zd_expiration_rule_plugin::CzdExpirationRulePlugin>);

const platform::ClassEntry classes[] = {
    {&__uuidof(CzdExpirationRulePlugin), &plugin_factory},
};

}  // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID) {
  return reason != DLL_PROCESS_ATTACH || module_object.initialised();
}

STDAPI DllGetClassObject(REFCLSID class_id, REFIID iid, void** object) {
  return platform::get_class_object(classes, class_id, iid, object);
}

STDAPI DllCanUnloadNow() { return module_object.can_unload() ? S_OK : S_FALSE; }

STDAPI DllRegisterServer() { return module_object.register_server(); }

STDAPI DllUnregisterServer() { return module_object.unregister_server(); }
