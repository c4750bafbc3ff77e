#include "DebugRecord.h"

#include <cstdio>
#include <memory>
#include <new>

#include "SnagtrapClient.h"

namespace SnagtrapUtil {

namespace {

BSTR widen(const char* text, UINT code_page) noexcept {
  const int size = MultiByteToWideChar(code_page, 0, text, -1, nullptr, 0);
  if (size <= 1) return nullptr;
  BSTR wide = SysAllocStringLen(nullptr, static_cast<UINT>(size - 1));
  if (!wide || MultiByteToWideChar(code_page, 0, text, -1, wide, size) != 0) return wide;
  SysFreeString(wide);
  return nullptr;
}

VARIANT typed(VARTYPE type) noexcept {
  VARIANT value;
  VariantInit(&value);
  value.vt = type;
  return value;
}

}  // namespace

Bstr::Bstr(const char* text, UINT code_page) noexcept : text_(text ? widen(text, code_page) : nullptr) {}

Bstr format_text_list(const wchar_t* format, va_list arguments) noexcept {
  va_list measured = {};
  va_copy(measured, arguments);
  const int length = _vscwprintf(format, measured);
  va_end(measured);
  const std::size_t size = length > 0 ? static_cast<std::size_t>(length) : 0;
  const std::unique_ptr<wchar_t[]> text(new (std::nothrow) wchar_t[size + 1]());
  if (!text) return Bstr({});
  _vsnwprintf(text.get(), size, format, arguments);
  return Bstr({text.get(), size});
}

Bstr format_text(const wchar_t* format, ...) noexcept {
  va_list arguments = {};
  va_start(arguments, format);
  Bstr text = format_text_list(format, arguments);
  va_end(arguments);
  return text;
}

Bstr format_narrow_text(const char* format, ...) noexcept {
  va_list arguments = {};
  va_start(arguments, format);
  va_list measured = {};
  va_copy(measured, arguments);
  const int length = _vscprintf(format, measured);
  va_end(measured);
  const std::size_t size = length > 0 ? static_cast<std::size_t>(length) : 0;
  const std::unique_ptr<char[]> text(new (std::nothrow) char[size + 1]());
  if (text) _vsnprintf(text.get(), size, format, arguments);
  va_end(arguments);
  return {text.get(), CP_ACP};
}

DebugRecord::DebugRecord(SnagtrapInitializer& client) noexcept : status_(client.command(L"CREATE", nullptr, &record_)) {
  if (SUCCEEDED(status_) && !record_) status_ = E_FAIL;
}

void DebugRecord::set(const wchar_t* name, const VARIANT& value) noexcept {
  if (!record_) return;
  const Bstr name_text(name);
  record_->SetField(name_text.get(), value);
}

void DebugRecord::marker(const wchar_t* name) noexcept { set(name, typed(VT_EMPTY)); }

void DebugRecord::text(const wchar_t* name, std::wstring_view value) noexcept {
  const Bstr copy(value);
  VARIANT variant = typed(VT_BSTR);
  variant.bstrVal = copy.get();
  set(name, variant);
}

void DebugRecord::text_if_set(const wchar_t* name, std::wstring_view value) noexcept {
  if (!value.empty()) text(name, value);
}

void DebugRecord::source_text(const wchar_t* name, const char* value) noexcept {
  const Bstr wide(value, CP_UTF8);
  text(name, wide.view());
}

void DebugRecord::ui4(const wchar_t* name, DWORD value) noexcept {
  VARIANT variant = typed(VT_UI4);
  variant.ulVal = value;
  set(name, variant);
}

void DebugRecord::ui4_if_set(const wchar_t* name, DWORD value) noexcept {
  if (value != 0) ui4(name, value);
}

void DebugRecord::i4(const wchar_t* name, LONG value) noexcept {
  VARIANT variant = typed(VT_I4);
  variant.lVal = value;
  set(name, variant);
}

void DebugRecord::integer(const wchar_t* name, int value) noexcept {
  VARIANT variant = typed(VT_INT);
  variant.intVal = value;
  set(name, variant);
}

void DebugRecord::integer_if_set(const wchar_t* name, int value) noexcept {
  if (value != 0) integer(name, value);
}

void DebugRecord::ui8(const wchar_t* name, ULONGLONG value) noexcept {
  VARIANT variant = typed(VT_UI8);
  variant.ullVal = value;
  set(name, variant);
}

void DebugRecord::ui8_if_set(const wchar_t* name, ULONGLONG value) noexcept {
  if (value != 0) ui8(name, value);
}

void DebugRecord::r8_if_set(const wchar_t* name, double value) noexcept {
  if (value == 0) return;
  VARIANT variant = typed(VT_R8);
  variant.dblVal = value;
  set(name, variant);
}

void DebugRecord::boolean(const wchar_t* name, bool value) noexcept {
  VARIANT variant = typed(VT_BOOL);
  variant.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
  set(name, variant);
}

void DebugRecord::object(const wchar_t* name, IDispatch* value) noexcept {
  VARIANT variant = typed(VT_DISPATCH);
  variant.pdispVal = value;
  set(name, variant);
}

}  // namespace SnagtrapUtil
