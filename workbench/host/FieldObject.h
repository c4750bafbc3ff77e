#pragma once

#include <memory>

#include "HostStorage.h"
#include "TableRows.h"
#include "UnusedSlots.h"

namespace workbench {

/// A field of a table. It reads and writes the row that is current at the time of the call, also after its table object
/// is destroyed. Text of a number field, or the reverse, is DISP_E_TYPEMISMATCH; no current row is DISP_E_BADINDEX.
class FieldObject final : public FieldSlots<DispatchObject<IKV_kvudfcom::IkvField>> {
 public:
  FieldObject(std::shared_ptr<TableRows> rows, std::ptrdiff_t column) noexcept
      : rows_(std::move(rows)), column_(column) {}

  HRESULT STDMETHODCALLTYPE GetText(BSTR* text) noexcept override;
  /// A null pointer is the empty text.
  HRESULT STDMETHODCALLTYPE SetText(const wchar_t* text) noexcept override;
  HRESULT STDMETHODCALLTYPE GetLong(long* value) noexcept override;
  HRESULT STDMETHODCALLTYPE SetLong(long value) noexcept override;

 private:
  template <class Values, class Use>
  HRESULT with_cell(Values* values, Use&& use) noexcept;

  std::shared_ptr<TableRows> rows_;
  std::ptrdiff_t column_;
};

}  // namespace workbench
