#pragma once

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "FieldIds.h"
#include "HostStorage.h"
#include "Object.h"

/// The value of one field: a number or a text, by the field.
struct Value {
  long number = 0;
  std::wstring text;
};

using Row = std::map<long, Value>;

/// A table in memory with one current row. It has every field that the module asks for.
class Table final : public Object<IKV_kvudfcom::IkvTable> {
 public:
  // clang-format off
  NOT_CALLED(7) NOT_CALLED(8) NOT_CALLED(9) NOT_CALLED(11) NOT_CALLED(12) NOT_CALLED(13) NOT_CALLED(15)
  NOT_CALLED(17) NOT_CALLED(18) NOT_CALLED(21) NOT_CALLED(22) NOT_CALLED(24) NOT_CALLED(25)
      // clang-format on

      /// Fills the table. Its first row is current then.
      void load(std::vector<Row> rows) {
    rows_ = std::move(rows);
    current_ = 0;
  }

  /// A value of the current row; null past the last row.
  Value* value(long field) { return current_ < rows_.size() ? &rows_[current_][field] : nullptr; }

  HRESULT STDMETHODCALLTYPE GetRowCount(long* count) override {
    return hand_out(count, static_cast<long>(rows_.size()));
  }
  HRESULT STDMETHODCALLTYPE GetFieldByID(long id, IKV_kvudfcom::IkvField** field) override;
  HRESULT STDMETHODCALLTYPE AddField(long, long, long, long) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE AppendRow() override {
    return com_method([&] {
      rows_.emplace_back();
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE MoveLast() override { return move_to(rows_.empty() ? 0 : rows_.size() - 1); }
  HRESULT STDMETHODCALLTYPE MoveFirst() override { return move_to(0); }
  HRESULT STDMETHODCALLTYPE MoveNext() override { return move_to(std::min(current_ + 1, rows_.size())); }
  HRESULT STDMETHODCALLTYPE IsEOF(long* flag) override { return hand_out(flag, current_ < rows_.size() ? 0 : 1); }

 private:
  HRESULT move_to(std::size_t row) {
    current_ = row;
    return S_OK;
  }

  std::vector<Row> rows_;
  std::size_t current_ = 0;
};

/// One field of whichever row is current in its table, which it keeps alive.
class Field final : public Object<IKV_kvudfcom::IkvField> {
 public:
  // clang-format off
  NOT_CALLED(7) NOT_CALLED(8) NOT_CALLED(9) NOT_CALLED(10) NOT_CALLED(11) NOT_CALLED(12) NOT_CALLED(13) NOT_CALLED(14)
  NOT_CALLED(15) NOT_CALLED(16) NOT_CALLED(17) NOT_CALLED(18) NOT_CALLED(19) NOT_CALLED(20) NOT_CALLED(23)
  NOT_CALLED(24)
      // clang-format on

      Field(Table& table, long id)
      : table_(table), id_(id) {
    table_.AddRef();
  }

  HRESULT STDMETHODCALLTYPE GetText(BSTR* text) override {
    if (!text) return E_POINTER;
    const Value* value = table_.value(id_);
    if (!value) return E_FAIL;
    *text = SysAllocStringLen(value->text.data(), static_cast<UINT>(value->text.size()));
    return *text ? S_OK : E_OUTOFMEMORY;
  }
  HRESULT STDMETHODCALLTYPE SetText(const wchar_t* text) override {
    return set([&](Value& value) { value.text = text ? text : L""; });
  }
  HRESULT STDMETHODCALLTYPE GetLong(long* number) override {
    const Value* value = table_.value(id_);
    return value ? hand_out(number, value->number) : E_FAIL;
  }
  HRESULT STDMETHODCALLTYPE SetLong(long number) override {
    return set([&](Value& value) { value.number = number; });
  }

 private:
  ~Field() override { table_.Release(); }

  template <class Change>
  HRESULT set(Change&& change) noexcept {
    return com_method([&] {
      Value* value = table_.value(id_);
      if (!value) return E_FAIL;
      change(*value);
      return S_OK;
    });
  }

  Table& table_;
  long id_;
};

inline HRESULT Table::GetFieldByID(long id, IKV_kvudfcom::IkvField** field) {
  return hand_out(field, [&] { return new Field(*this, id); });
}
