#include "TableProxies.h"

#include "Bstr.h"

namespace test_support {
namespace {

using base::ComPtr;
using IKV_kvudfcom::IkvField;
using IKV_kvudfcom::IkvTable;

/// One field of whichever row is current in its table. Until it is written, it may hold an odd value instead of
/// what the host put there.
class FieldProxy final : public workbench::FieldSlots<ProxyObject<IkvField>> {
 public:
  FieldProxy(std::shared_ptr<HostState> host, const ComPtr<IUnknown>& field, const ComPtr<IUnknown>& table, long id,
             std::shared_ptr<std::set<long>> written)
      : FieldSlots(std::move(host), "kvField", field), table_(table), id_(id), written_(std::move(written)) {}

  HRESULT STDMETHODCALLTYPE GetText(BSTR* text) noexcept override {
    return calls().call("IkvField::GetText", {id_}, text, [&] {
      const HostValue* odd = odd_value();
      if (!odd) return inner<IkvField>()->GetText(text);
      if (std::holds_alternative<long>(*odd)) return DISP_E_TYPEMISMATCH;
      *text = nullptr;
      const auto* value = std::get_if<std::wstring>(odd);
      if (!value) return S_OK;
      *text = base::create_bstr(*value);
      return *text ? S_OK : E_OUTOFMEMORY;
    });
  }
  HRESULT STDMETHODCALLTYPE SetText(const wchar_t* text) noexcept override {
    return calls().call("IkvField::SetText", {id_, text}, [&] {
      written_->insert(id_);
      return inner<IkvField>()->SetText(text);
    });
  }
  HRESULT STDMETHODCALLTYPE GetLong(long* number) noexcept override {
    return calls().call("IkvField::GetLong", {id_}, number, [&] {
      const HostValue* odd = odd_value();
      if (!odd) return inner<IkvField>()->GetLong(number);
      if (std::holds_alternative<std::wstring>(*odd)) return DISP_E_TYPEMISMATCH;
      const long* value = std::get_if<long>(odd);
      *number = value ? *value : 0;
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE SetLong(long number) noexcept override {
    return calls().call("IkvField::SetLong", {id_, number}, [&] {
      written_->insert(id_);
      return inner<IkvField>()->SetLong(number);
    });
  }

 private:
  const HostValue* odd_value() const {
    const auto found = host()->odd_values.find(id_);
    return found == host()->odd_values.end() || written_->contains(id_) ? nullptr : &found->second;
  }

  ComPtr<IUnknown> table_;
  long id_;
  std::shared_ptr<std::set<long>> written_;
};

}  // namespace

HRESULT TableProxy::GetRowCount(long* count) noexcept {
  return fetch("IkvTable::GetRowCount", &IkvTable::GetRowCount, count);
}

HRESULT TableProxy::GetFieldByID(long field_id, IkvField** field) noexcept {
  const auto wrap = [&](const ComPtr<IkvField>& found) {
    IUnknown* const table = static_cast<IkvTable*>(this);  // as it is: a query of its own would be recorded
    return new FieldProxy(host(), found, table, field_id, written_);
  };
  return fetch_object("IkvTable::GetFieldByID", &IkvTable::GetFieldByID, wrap, field, field_id);
}

HRESULT TableProxy::AddField(long field_id, long reserved1, long reserved2, long reserved3) noexcept {
  return forward("IkvTable::AddField", &IkvTable::AddField, field_id, reserved1, reserved2, reserved3);
}

HRESULT TableProxy::AppendRow() noexcept { return forward("IkvTable::AppendRow", &IkvTable::AppendRow); }

HRESULT TableProxy::MoveLast() noexcept { return forward("IkvTable::MoveLast", &IkvTable::MoveLast); }

HRESULT TableProxy::MoveFirst() noexcept { return forward("IkvTable::MoveFirst", &IkvTable::MoveFirst); }

HRESULT TableProxy::MoveNext() noexcept { return forward("IkvTable::MoveNext", &IkvTable::MoveNext); }

HRESULT TableProxy::IsEOF(long* flag) noexcept { return fetch("IkvTable::IsEOF", &IkvTable::IsEOF, flag); }

HRESULT TableProxy::Run(IBindCtx*) noexcept {
  return calls().call("IRunnableObject::Run", [] { return S_OK; });
}

}  // namespace test_support
