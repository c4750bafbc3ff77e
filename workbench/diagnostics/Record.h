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

/// Where a report was made, as its record says.
struct Place {
  std::wstring file;
  long line;
};

class Record;

/// By this private interface the library knows its own records among the objects that it is given.
struct IOwnRecord : IUnknown {
  virtual Record& STDMETHODCALLTYPE record() noexcept = 0;
};

}  // namespace snagtrap

__CRT_UUID_DECL(snagtrap::IOwnRecord, 0x2f6b8d10, 0x5c5e, 0x4c0b, 0xa3, 0x8a, 0x71, 0x4d, 0x0e, 0x92, 0xb6, 0x5f)

namespace snagtrap {

/// A record: named values in the order in which they were first set. One thread at a time uses it.
class Record final : public workbench::DispatchObject<IKV_SnagtrapUtil::IDebugObject, IOwnRecord> {
 public:
  /// Keeps a copy of the value; what it only refers to (VT_BYREF) is copied too. Setting a name again replaces its
  /// value in place. E_INVALIDARG for a null name, a null reference and a record put into itself; DISP_E_BADVARTYPE for
  /// a VARIANT that is none.
  HRESULT STDMETHODCALLTYPE SetField(BSTR name, VARIANT value) noexcept override;

  Record& STDMETHODCALLTYPE record() noexcept override { return *this; }

  const std::vector<Field>& fields() const noexcept { return fields_; }
  /// Null when the record has no field of that name.
  const VARIANT* find(std::wstring_view name) const noexcept;
  /// The text of a field; empty when there is none or when it is no text.
  std::wstring_view text(std::wstring_view name) const noexcept;
  /// The value of a 32-bit integer field, signed or not; nothing when there is none.
  std::optional<long> integer(std::wstring_view name) const noexcept;
  /// Nothing when the record names no file.
  std::optional<Place> place() const;

  /// Whether the place is one that the user always ignores; unset until somebody has looked.
  std::optional<bool> ignored;

 private:
  bool accepts(const VARIANT& value) const noexcept;

  std::vector<Field> fields_;
};

/// The library's record behind an object, or null. Does not add a reference.
Record* own_record(IUnknown* object) noexcept;

}  // namespace snagtrap
