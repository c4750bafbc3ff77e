#include "TableObject.h"

namespace workbench {

HRESULT TableObject::GetRowCount(long* count) noexcept {
  if (!count) return E_POINTER;
  *count = static_cast<long>(rows_->count());
  return S_OK;
}

base::ComPtr<IKV_kvudfcom::IkvField> TableObject::field_at(std::ptrdiff_t column) {
  const auto index = static_cast<std::size_t>(column);
  if (index >= fields_.size()) fields_.resize(index + 1);
  if (!fields_[index]) fields_[index].Attach(new FieldObject(rows_, column));
  return fields_[index];
}

HRESULT TableObject::GetFieldByID(long fieldId, IKV_kvudfcom::IkvField** field) noexcept {
  if (!field) return E_POINTER;
  *field = nullptr;
  const std::ptrdiff_t column = rows_->find(fieldId);
  if (column < 0) return S_FALSE;
  return com_method([&] {
    *field = field_at(column).Detach();
    return S_OK;
  });
}

HRESULT TableObject::AddField(long fieldId, long, long, long) noexcept {
  return com_method([&] { return rows_->declare(fieldId) ? S_OK : E_INVALIDARG; });
}

HRESULT TableObject::AppendRow() noexcept {
  return com_method([&] {
    rows_->append();
    return S_OK;
  });
}

HRESULT TableObject::MoveLast() noexcept {
  rows_->move_to(rows_->count() - (rows_->count() > 0));
  return S_OK;
}

HRESULT TableObject::MoveFirst() noexcept {
  rows_->move_to(0);
  return S_OK;
}

HRESULT TableObject::MoveNext() noexcept {
  if (rows_->at_end()) return S_FALSE;
  rows_->move_to(rows_->current() + 1);
  return S_OK;
}

HRESULT TableObject::IsEOF(long* flag) noexcept {
  if (!flag) return E_POINTER;
  *flag = rows_->at_end() ? 1 : 0;
  return S_OK;
}

}  // namespace workbench
