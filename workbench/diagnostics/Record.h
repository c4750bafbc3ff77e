#pragma once

#include <windows.h>
#include <oleauto.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "DispatchObject.h"
#include "SnagtrapUtil.h"

namespace snagtrap {

/// Owns a VARIANT.
class Value {
 public:
  Value() noexcept = default;
  Value(Value&& other) noexcept : variant_(std::exchange(other.variant_, VARIANT{})) {}
  Value& operator=(Value&& other) noexcept {
    std::swap(variant_, other.variant_);
    return *this;
  }
  ~Value() { VariantClear(&variant_); }

  const VARIANT& get() const noexcept { return variant_; }
  VARIANT* out() noexcept { return &variant_; }

 private:
  VARIANT variant_ = {};
};

struct Field {
  std::wstring name;
  Value value;
};

/// The source location of a report, as its record says.
struct Location {
  std::wstring file;
  long line;
};

class Record;

/// The library recognises its own records by this private interface.
struct IOwnRecord : IUnknown {
  virtual Record& STDMETHODCALLTYPE record() noexcept = 0;
};

}  // namespace snagtrap

__CRT_UUID_DECL(snagtrap::IOwnRecord, 0x2f6b8d10, 0x5c5e, 0x4c0b, 0xa3, 0x8a, 0x71, 0x4d, 0x0e, 0x92, 0xb6, 0x5f)

namespace snagtrap {

/// A record: named values in the order in which they were first set. One thread at a time uses it.
class Record final : public workbench::DispatchObject<IKV_SnagtrapUtil::IDebugObject, IOwnRecord> {
 public:
  /// Keeps a copy of the value; what it only refers to (VT_BYREF) is copied too. A second value for
  /// a name replaces the first one and keeps its position. E_INVALIDARG for a null name, a null reference and for the
  /// record itself; DISP_E_BADVARTYPE for a VARIANT of an unknown type.
  HRESULT STDMETHODCALLTYPE SetField(BSTR name, VARIANT value) noexcept override;

  Record& STDMETHODCALLTYPE record() noexcept override { return *this; }

  const std::vector<Field>& fields() const noexcept { return fields_; }
  /// Null when the record has no field of that name.
  const VARIANT* find(std::wstring_view name) const noexcept;
  /// The text of a field; empty when there is no such field or when it holds no text.
  std::wstring_view text(std::wstring_view name) const noexcept;
  /// The value of a 32-bit integer field, signed or not; nothing when there is no such field.
  std::optional<long> integer(std::wstring_view name) const noexcept;
  /// Nothing when the record names no file.
  std::optional<Location> location() const;

  /// Whether the user always ignores the location; unset until the settings have been read for this record.
  std::optional<bool> ignored;

 private:
  bool accepts(const VARIANT& value) const noexcept;

  std::vector<Field> fields_;
};

/// The object as the library's own record; null when it is none. Adds no reference.
Record* own_record(IUnknown* object) noexcept;

}  // namespace snagtrap
