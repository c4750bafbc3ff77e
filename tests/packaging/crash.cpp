// Has the module crash inside `QueryInterface`, which writes where nothing can be written, and prints where, as a crash
// report does.
#include <windows.h>

#include <cstdio>

#include "zdExpirationRules_h.h"

namespace {

HMODULE module;

LONG CALLBACK print_and_end(EXCEPTION_POINTERS* exception) {
  if (exception->ExceptionRecord->ExceptionCode != EXCEPTION_ACCESS_VIOLATION) return EXCEPTION_CONTINUE_SEARCH;
  std::printf("%p %p\n", static_cast<void*>(module), exception->ExceptionRecord->ExceptionAddress);
  std::fflush(stdout);
  ExitProcess(3);
}

}  // namespace

int main() {
  AddVectoredExceptionHandler(1, print_and_end);
  module = LoadLibraryW(L"zdExpirationRules.dll");
  const auto get_class_object = reinterpret_cast<HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**)>(
      reinterpret_cast<void*>(GetProcAddress(module, "DllGetClassObject")));
  IClassFactory* factory = nullptr;
  IkvPlugin* plugin = nullptr;
  if (!get_class_object) return 1;
  get_class_object(__uuidof(CzdExpirationRulePlugin), IID_IClassFactory, reinterpret_cast<void**>(&factory));
  if (!factory) return 1;
  factory->CreateInstance(nullptr, __uuidof(IkvPlugin), reinterpret_cast<void**>(&plugin));
  if (!plugin) return 1;
  plugin->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(ULONG_PTR{16}));
  return 2;
}
