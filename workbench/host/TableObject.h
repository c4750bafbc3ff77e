#pragma once

#include <memory>
#include <vector>

#include "DispatchObject.h"
#include "FieldObject.h"
#include "HostOnly.h"
#include "HostStorage.h"

namespace workbench {

/// The host's table. Its fields are those of `tagKVFIELDID`; numbers start at 0 and texts empty in a new row.
class TableObject final : public DispatchObject<IKV_kvudfcom::IkvTable, ITableAccess> {
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

  TableRows& rows() noexcept override { return *rows_; }

  KV_UNUSED_SLOT(7)
  KV_UNUSED_SLOT(8)
  KV_UNUSED_SLOT(9)
  KV_UNUSED_SLOT(11)
  KV_UNUSED_SLOT(12)
  KV_UNUSED_SLOT(13)
  KV_UNUSED_SLOT(15)
  KV_UNUSED_SLOT(17)
  KV_UNUSED_SLOT(18)
  KV_UNUSED_SLOT(21)
  KV_UNUSED_SLOT(22)
  KV_UNUSED_SLOT(24)
  KV_UNUSED_SLOT(25)

 private:
  struct ReleaseField {
    void operator()(FieldObject* field) const noexcept { field->Release(); }
  };

  FieldObject* field_at(std::ptrdiff_t place);

  std::shared_ptr<TableRows> rows_;
  std::vector<std::unique_ptr<FieldObject, ReleaseField>> fields_;  // made when first asked for, one for each column
};

}  // namespace workbench
