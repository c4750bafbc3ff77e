#pragma once

#include <windows.h>
#include <comdef.h>

#include <algorithm>
#include <string>
#include <vector>

namespace module_test {

/// What a late-bound call gave.
struct LateBoundResult {
  HRESULT hresult = S_OK;
  SCODE code = S_OK;  ///< the method's own failure, when the result is DISP_E_EXCEPTION
  _variant_t result;
  std::wstring description;  ///< what the exception says of itself
};

inline HRESULT id_of(IDispatch* object, const std::wstring& name, DISPID& id) {
  std::wstring text = name;
  LPOLESTR names[] = {text.data()};
  return object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
}

/// Calls a method by its number as a script does, with the arguments in the order of the declaration.
inline LateBoundResult invoke(IDispatch* object, DISPID id, std::vector<_variant_t> arguments = {},
                              WORD flags = DISPATCH_METHOD) {
  std::reverse(arguments.begin(), arguments.end());
  DISPPARAMS parameters = {arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
  EXCEPINFO exception = {};
  LateBoundResult called;
  called.hresult =
      object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, &called.result, &exception, nullptr);
  called.code = exception.scode;
  called.description.assign(exception.bstrDescription ? exception.bstrDescription : L"");
  for (const BSTR text : {exception.bstrSource, exception.bstrDescription, exception.bstrHelpFile}) SysFreeString(text);
  return called;
}

/// Calls a method by its name.
inline LateBoundResult call(IDispatch* object, const std::wstring& name, std::vector<_variant_t> arguments = {}) {
  DISPID id = DISPID_UNKNOWN;
  const HRESULT found = id_of(object, name, id);
  if (FAILED(found)) return {found, S_OK, {}, {}};
  return invoke(object, id, std::move(arguments));
}

}  // namespace module_test
