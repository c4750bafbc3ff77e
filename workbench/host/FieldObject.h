#pragma once

#include <memory>

#include "DispatchObject.h"
#include "HostStorage.h"
#include "TableRows.h"

namespace workbench {

/// A field of a table. It reads and writes the row that is current at the time of the call, also after its table object
/// is gone. Text of a number field, or the reverse, is DISP_E_TYPEMISMATCH; no current row is DISP_E_BADINDEX.
class FieldObject final : public DispatchObject<IKV_kvudfcom::IkvField> {
 public:
  FieldObject(std::shared_ptr<TableRows> rows, std::ptrdiff_t place) noexcept : rows_(std::move(rows)), place_(place) {}

  HRESULT STDMETHODCALLTYPE GetText(BSTR* text) noexcept override;
  /// A null pointer is the empty text.
  HRESULT STDMETHODCALLTYPE SetText(const wchar_t* text) noexcept override;
  HRESULT STDMETHODCALLTYPE GetLong(long* value) noexcept override;
  HRESULT STDMETHODCALLTYPE SetLong(long value) noexcept override;

  KV_UNUSED_SLOT(7)
  KV_UNUSED_SLOT(8)
  KV_UNUSED_SLOT(9)
  KV_UNUSED_SLOT(10)
  KV_UNUSED_SLOT(11)
  KV_UNUSED_SLOT(12)
  KV_UNUSED_SLOT(13)
  KV_UNUSED_SLOT(14)
  KV_UNUSED_SLOT(15)
  KV_UNUSED_SLOT(16)
  KV_UNUSED_SLOT(17)
  KV_UNUSED_SLOT(18)
  KV_UNUSED_SLOT(19)
  KV_UNUSED_SLOT(20)
  KV_UNUSED_SLOT(23)
  KV_UNUSED_SLOT(24)

 private:
  template <class Values, class Use>
  HRESULT with_cell(Values* values, Use&& use) noexcept;

  std::shared_ptr<TableRows> rows_;
  std::ptrdiff_t place_;
};

}  // namespace workbench
