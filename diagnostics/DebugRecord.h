#pragma once

#include <windows.h>

#include <cstdarg>
#include <string_view>

#include "Bstr.h"
#include "ComPtr.h"
#include "SnagtrapUtil.h"

namespace SnagtrapUtil {

class SnagtrapInitializer;

/// Owns one COM string. Out of memory leaves it null, which reads as an empty text: reporting must never throw.
class Bstr {
 public:
  explicit Bstr(std::wstring_view text) noexcept : text_(base::create_bstr(text)) {}
  /// Widens with a code page: CP_UTF8 for texts of the sources, CP_ACP for texts of the runtime.
  Bstr(const char* text, UINT code_page) noexcept;

  BSTR get() const noexcept { return text_.get(); }
  std::wstring_view view() const noexcept { return base::view_of(get()); }

 private:
  base::OwnedBstr text_;
};

/// The text of a wide printf format, in which %s takes wide text; null when out of memory.
Bstr format_text(const wchar_t* format, ...) noexcept;
Bstr format_text_list(const wchar_t* format, va_list arguments) noexcept;

/// The text of a narrow printf format, widened from the code page of the runtime; null when out of memory.
Bstr format_narrow_text(const char* format, ...) noexcept __attribute__((format(ms_printf, 1, 2)));

/// A record of the diagnostics library that is filled field by field. A record that could not be created ignores its
/// fields. Nothing here throws; a field that the library refuses is left out.
class DebugRecord {
 public:
  /// Creates the record with the command "CREATE".
  explicit DebugRecord(SnagtrapInitializer& client) noexcept;

  /// The result of "CREATE"; E_FAIL when the library returned success without a record.
  HRESULT status() const noexcept { return status_; }
  /// Null when the record was not created. The record stays the owner.
  IKV_SnagtrapUtil::IDebugObject* get() const noexcept { return record_; }

  void marker(const wchar_t* name) noexcept;
  void text(const wchar_t* name, std::wstring_view value) noexcept;
  void text_if_set(const wchar_t* name, std::wstring_view value) noexcept;
  /// `value` is UTF-8.
  void source_text(const wchar_t* name, const char* value) noexcept;
  void ui4(const wchar_t* name, DWORD value) noexcept;
  void ui4_if_set(const wchar_t* name, DWORD value) noexcept;
  void i4(const wchar_t* name, LONG value) noexcept;
  void integer(const wchar_t* name, int value) noexcept;
  void integer_if_set(const wchar_t* name, int value) noexcept;
  void ui8(const wchar_t* name, ULONGLONG value) noexcept;
  void ui8_if_set(const wchar_t* name, ULONGLONG value) noexcept;
  void r8_if_set(const wchar_t* name, double value) noexcept;
  void boolean(const wchar_t* name, bool value) noexcept;
  void object(const wchar_t* name, IDispatch* value) noexcept;

 private:
  void set(const wchar_t* name, const VARIANT& value) noexcept;

  base::ComPtr<IKV_SnagtrapUtil::IDebugObject> record_;
  HRESULT status_;
};

}  // namespace SnagtrapUtil
