#pragma once

#include <memory>
#include <vector>

#include "ComPtr.h"
#include "FieldObject.h"
#include "HostStorage.h"
#include "PrivateInterfaces.h"
#include "UnusedSlots.h"

namespace workbench {

/// The host's table. Its fields are those of `tagKVFIELDID`; numbers start at 0 and texts empty in a new row.
class TableObject final : public TableSlots<DispatchObject<IKV_kvudfcom::IkvTable, ITableAccess>> {
 public:
  TableObject() : rows_(std::make_shared<TableRows>()) {}

  HRESULT STDMETHODCALLTYPE GetRowCount(long* count) noexcept override;
  HRESULT STDMETHODCALLTYPE GetFieldByID(long fieldId, IKV_kvudfcom::IkvField** field) noexcept override;
  /// E_INVALIDARG for a field that the host does not know, or once the table has rows.
  HRESULT STDMETHODCALLTYPE AddField(long fieldId, long reserved1, long reserved2, long reserved3) noexcept override;
  HRESULT STDMETHODCALLTYPE AppendRow() noexcept override;
  HRESULT STDMETHODCALLTYPE MoveLast() noexcept override;
  HRESULT STDMETHODCALLTYPE MoveFirst() noexcept override;
  HRESULT STDMETHODCALLTYPE MoveNext() noexcept override;
  HRESULT STDMETHODCALLTYPE IsEOF(long* flag) noexcept override;

  std::shared_ptr<TableRows> rows() noexcept override { return rows_; }

 private:
  /// The field of this column, created on first use.
  base::ComPtr<IKV_kvudfcom::IkvField> field_at(std::ptrdiff_t column);

  std::shared_ptr<TableRows> rows_;
  std::vector<base::ComPtr<IKV_kvudfcom::IkvField>> fields_;
};

}  // namespace workbench
