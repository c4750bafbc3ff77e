#include "FakeTable.h"

#include <oleauto.h>

#include "FieldIds.h"

namespace test_support {
namespace {

/// One field of whichever row is current in its table.
class FakeField final : public FakeObject<IKV_kvudfcom::IkvField> {
 public:
  FakeField(std::shared_ptr<HostState> host, FakeTable& table, long id)
      : FakeObject(std::move(host), "kvField"), table_(table), id_(id) {
    table_.AddRef();
  }

  HRESULT STDMETHODCALLTYPE GetText(BSTR* text) noexcept override {
    return calls().call("IkvField::GetText", {id_}, text, [&] {
      const HostValue* value = table_.value(id_);
      if (!value) return E_FAIL;
      if (std::holds_alternative<long>(*value)) return DISP_E_TYPEMISMATCH;
      *text = nullptr;
      if (const auto* stored = std::get_if<std::wstring>(value)) {
        *text = SysAllocStringLen(stored->data(), static_cast<UINT>(stored->size()));
        if (!*text) return E_OUTOFMEMORY;
      }
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE SetText(const wchar_t* text) noexcept override {
    return calls().call("IkvField::SetText", {id_, text}, [&] { return set(std::wstring(text ? text : L"")); });
  }
  HRESULT STDMETHODCALLTYPE GetLong(long* number) noexcept override {
    return calls().call("IkvField::GetLong", {id_}, number, [&] {
      const HostValue* value = table_.value(id_);
      if (!value) return E_FAIL;
      if (std::holds_alternative<std::wstring>(*value)) return DISP_E_TYPEMISMATCH;
      const long* stored = std::get_if<long>(value);
      *number = stored ? *stored : 0;
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE SetLong(long number) noexcept override {
    return calls().call("IkvField::SetLong", {id_, number}, [&] { return set(number); });
  }
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
  ~FakeField() override { table_.Release(); }

  HRESULT set(HostValue value) {
    HostValue* stored = table_.value(id_);
    if (!stored) return E_FAIL;
    *stored = std::move(value);
    return S_OK;
  }

  FakeTable& table_;
  long id_;
};

HostValue text_value(const std::optional<std::wstring>& text) { return text ? HostValue(*text) : HostValue(); }

}  // namespace

void FakeTable::load(std::vector<HostRow> rows) {
  for (const HostRow& row : rows) {
    for (const auto& [id, value] : row) fields_.insert(id);
  }
  rows_ = std::move(rows);
  current_ = 0;
}

HostValue* FakeTable::value(long field_id) {
  return current_ < rows_.size() && fields_.count(field_id) != 0 ? &rows_[current_][field_id] : nullptr;
}

HRESULT FakeTable::GetRowCount(long* count) noexcept {
  return calls().call("IkvTable::GetRowCount", {}, count, [&] {
    *count = static_cast<long>(rows_.size());
    return S_OK;
  });
}

HRESULT FakeTable::GetFieldByID(long field_id, IKV_kvudfcom::IkvField** field) noexcept {
  return calls().call("IkvTable::GetFieldByID", {field_id}, field, [&] {
    *field = nullptr;
    if (fields_.count(field_id) == 0) return S_FALSE;
    *field = new FakeField(host(), *this, field_id);
    return S_OK;
  });
}

HRESULT FakeTable::AddField(long field_id, long reserved1, long reserved2, long reserved3) noexcept {
  return calls().call("IkvTable::AddField", {field_id, reserved1, reserved2, reserved3}, [&] {
    fields_.insert(field_id);
    return S_OK;
  });
}

HRESULT FakeTable::AppendRow() noexcept {
  return calls().call("IkvTable::AppendRow", [&] {
    rows_.push_back(host()->new_row);
    return S_OK;
  });
}

HRESULT FakeTable::MoveLast() noexcept {
  return calls().call("IkvTable::MoveLast", [&] {
    current_ = rows_.empty() ? 0 : rows_.size() - 1;
    return S_OK;
  });
}

HRESULT FakeTable::MoveFirst() noexcept {
  return calls().call("IkvTable::MoveFirst", [&] {
    current_ = 0;
    return S_OK;
  });
}

HRESULT FakeTable::MoveNext() noexcept {
  return calls().call("IkvTable::MoveNext", [&] {
    if (current_ < rows_.size()) ++current_;
    return S_OK;
  });
}

HRESULT FakeTable::IsEOF(long* flag) noexcept {
  return calls().call("IkvTable::IsEOF", {}, flag, [&] {
    *flag = current_ < rows_.size() ? 0 : 1;
    return S_OK;
  });
}

HRESULT FakeTable::Run(IBindCtx*) noexcept {
  return calls().call("IRunnableObject::Run", [] { return S_OK; });
}

HostRow row_of(const HostRule& rule) {
  return {{KVFIELD_RULE_ID, rule.id},
          {KVFIELD_RULE_NAME, text_value(rule.name)},
          {KVFIELD_ROLL_OFFSET, rule.roll_offset},
          {KVFIELD_DAY_TYPE, rule.day_type},
          {KVFIELD_DAY_MODE, rule.day_mode},
          {KVFIELD_DAY_OF_MONTH, rule.day_of_month},
          {KVFIELD_DAY_MONTH, rule.day_month},
          {KVFIELD_WEEK_ORDINAL, rule.week_ordinal},
          {KVFIELD_WEEKDAY, rule.weekday},
          {KVFIELD_WEEKDAY_MONTH, rule.weekday_month},
          {KVFIELD_MOVE_TO_NEXT_TRADING_DAY, rule.move_to_next_trading_day}};
}

HostRow row_of(const HostSetting& setting) {
  return {{KVFIELD_SETTING_NAME, text_value(setting.name)}, {KVFIELD_RULE_NAME, text_value(setting.rule_name)}};
}

}  // namespace test_support
