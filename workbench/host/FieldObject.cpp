#include "FieldObject.h"

#include "Bstr.h"

namespace workbench {

template <class Values, class Use>
HRESULT FieldObject::with_cell(Values* values, Use&& use) noexcept {
  if (!values) return DISP_E_TYPEMISMATCH;
  if (rows_->at_end()) return DISP_E_BADINDEX;
  return com_method([&] { return use((*values)[rows_->current()]); });
}

HRESULT FieldObject::GetText(BSTR* text) noexcept {
  if (!text) return E_POINTER;
  *text = nullptr;
  return with_cell(rows_->texts(column_), [&](const std::wstring& cell) {
    *text = base::create_bstr(cell);
    return *text ? S_OK : E_OUTOFMEMORY;
  });
}

HRESULT FieldObject::SetText(const wchar_t* text) noexcept {
  return with_cell(rows_->texts(column_), [&](std::wstring& cell) {
    cell = text ? text : L"";
    return S_OK;
  });
}

HRESULT FieldObject::GetLong(long* value) noexcept {
  if (!value) return E_POINTER;
  *value = 0;
  return with_cell(rows_->numbers(column_), [&](long cell) {
    *value = cell;
    return S_OK;
  });
}

HRESULT FieldObject::SetLong(long value) noexcept {
  return with_cell(rows_->numbers(column_), [&](long& cell) {
    cell = value;
    return S_OK;
  });
}

}  // namespace workbench
