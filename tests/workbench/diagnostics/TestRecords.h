#pragma once

#include <windows.h>
#include <oleauto.h>

#include <string>

#include "Bstr.h"
#include "ComPtr.h"
#include "Record.h"

namespace snagtrap_test {

using RecordPtr = base::ComPtr<snagtrap::Record>;

inline RecordPtr create_record() { return base::own(new snagtrap::Record); }

/// Sets a field; the value stays the caller's.
inline HRESULT set(IKV_SnagtrapUtil::IDebugObject& record, const wchar_t* name, const VARIANT& value) {
  return record.SetField(_bstr_t(name), value);
}

inline HRESULT set_text(IKV_SnagtrapUtil::IDebugObject& record, const wchar_t* name, const std::wstring& text) {
  VARIANT value{};
  value.vt = VT_BSTR;
  value.bstrVal = base::create_bstr(text);
  const HRESULT result = set(record, name, value);
  VariantClear(&value);
  return result;
}

inline HRESULT set_number(IKV_SnagtrapUtil::IDebugObject& record, const wchar_t* name, LONG number,
                          VARTYPE type = VT_INT) {
  VARIANT value{};
  value.vt = type;
  value.lVal = number;
  return set(record, name, value);
}

inline HRESULT set_object(IKV_SnagtrapUtil::IDebugObject& record, const wchar_t* name, IDispatch* object) {
  VARIANT value{};
  value.vt = VT_DISPATCH;
  value.pdispVal = object;
  return set(record, name, value);
}

}  // namespace snagtrap_test
