#pragma once

#include <functional>
#include <string>
#include <vector>

#include "ComPtr.h"
#include "DispatchObject.h"
#include "zdExpirationRules_h.h"

namespace workbench {

/// Implements `IkvPlugin` and records the commands that it gets.
class StandInPlugin final : public DispatchObject<IkvPlugin> {
 public:
  std::vector<long> commands;
  std::vector<VARTYPE> parameter_types;
  HRESULT hresult = S_OK;
  std::function<void()> during_command;

  HRESULT STDMETHODCALLTYPE Initialize(IDispatch*, IDispatch*, IDispatch*, IDispatch*, BSTR,
                                       IDispatch*) noexcept override {
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE OnSelectionChanged(IDispatch*) noexcept override { return S_OK; }
  HRESULT STDMETHODCALLTYPE DoCommand(long id, VARIANT parameter) noexcept override {
    commands.push_back(id);
    parameter_types.push_back(parameter.vt);
    if (during_command) during_command();
    return hresult;
  }
  HRESULT STDMETHODCALLTYPE Uninitialize() noexcept override { return S_OK; }
};

/// Can only be called by name.
class LateBoundPlugin final : public IDispatch {
 public:
  std::vector<long> commands;
  std::vector<VARTYPE> parameter_types;
  HRESULT hresult = S_OK;
  SCODE exception_code = S_OK;
  bool knows_the_name = true;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept override {
    const bool known = iid == __uuidof(IUnknown) || iid == __uuidof(IDispatch);
    *object = known ? this : nullptr;
    if (!known) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() noexcept override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() noexcept override { return --references; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) noexcept override {
    if (!knows_the_name || std::wstring(*names) != L"DoCommand") return DISP_E_UNKNOWNNAME;
    *ids = dispid;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT*,
                                   EXCEPINFO* exception, UINT*) noexcept override {
    if (id != dispid || flags != DISPATCH_METHOD || parameters->cArgs != 2) return DISP_E_BADPARAMCOUNT;
    commands.push_back(parameters->rgvarg[1].lVal);
    parameter_types.push_back(parameters->rgvarg[0].vt);
    if (exception_code != S_OK) {
      exception->scode = exception_code;
      exception->bstrDescription = SysAllocString(L"description");
    }
    return hresult;
  }

  ULONG references = 1;

 private:
  static constexpr DISPID dispid = 77;
};

}  // namespace workbench
