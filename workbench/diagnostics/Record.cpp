#include "Record.h"

#include <algorithm>

#include "Bstr.h"
#include "ComPtr.h"

namespace snagtrap {

HRESULT Record::SetField(BSTR name, VARIANT value) noexcept {
  return workbench::com_method([&]() -> HRESULT {
    if (!name || !accepts(value)) return E_INVALIDARG;
    Value copy;
    const HRESULT copied = VariantCopyInd(copy.out(), &value);
    if (FAILED(copied)) return copied;
    const std::wstring_view wanted = base::view_of(name);
    const auto known =
        std::find_if(fields_.begin(), fields_.end(), [&](const Field& field) { return field.name == wanted; });
    if (known != fields_.end()) {
      known->value = std::move(copy);
    } else {
      fields_.push_back({std::wstring(wanted), std::move(copy)});
    }
    return S_OK;
  });
}

const VARIANT* Record::find(std::wstring_view name) const noexcept {
  const auto found =
      std::find_if(fields_.begin(), fields_.end(), [&](const Field& field) { return field.name == name; });
  return found != fields_.end() ? &found->value.get() : nullptr;
}

std::wstring_view Record::text(std::wstring_view name) const noexcept {
  const VARIANT* value = find(name);
  return value && value->vt == VT_BSTR ? base::view_of(value->bstrVal) : std::wstring_view();
}

std::optional<long> Record::integer(std::wstring_view name) const noexcept {
  const VARIANT* value = find(name);
  if (!value) return std::nullopt;
  switch (value->vt) {
    case VT_I4:
    case VT_INT:
    case VT_UI4:
    case VT_UINT:
      return value->lVal;
    default:
      return std::nullopt;
  }
}

std::optional<Location> Record::location() const {
  const std::wstring_view file = text(L"File");
  if (file.empty()) return std::nullopt;
  return Location{std::wstring(file), integer(L"Line").value_or(0)};
}

bool Record::accepts(const VARIANT& value) const noexcept {
  if (value.vt & VT_BYREF) return value.byref != nullptr;
  const bool is_object = value.vt == VT_DISPATCH || value.vt == VT_UNKNOWN;
  return !is_object || own_record(value.punkVal) != this;
}

Record* own_record(IUnknown* object) noexcept {
  void* found = nullptr;
  if (!object || FAILED(object->QueryInterface(__uuidof(IOwnRecord), &found)) || !found) return nullptr;
  return &base::own(static_cast<IOwnRecord*>(found))->record();
}

}  // namespace snagtrap
