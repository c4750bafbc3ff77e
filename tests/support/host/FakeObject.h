#pragma once

#include <memory>
#include <set>
#include <string>
#include <utility>

#include "HostState.h"

namespace test_support {

/// The name of an interface of the host, "unknown" for any other.
const char* interface_name(REFIID iid) noexcept;

/// Base of the fake host's objects: answers `Interfaces`, `IDispatch` and `IUnknown`, counts references, destroys
/// itself at the last release and is known to the host while it lives. Born with one reference.
template <class First, class... Others>
class FakeObject : public LivingObject, public First, public Others... {
 public:
  FakeObject(const FakeObject&) = delete;
  FakeObject& operator=(const FakeObject&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept final {
    if (!object) return E_POINTER;
    // It is the system that asks whether an object is runnable, and the system relies on a truthful answer.
    if (!host_->record_queries || iid == IID_IRunnableObject) return answer_query(iid, object);
    return calls().call(query_.c_str(), {interface_name(iid)}, object, [&] { return answer_query(iid, object); });
  }
  ULONG STDMETHODCALLTYPE AddRef() noexcept final { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() noexcept final {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) noexcept final { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept final { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) noexcept final { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) noexcept final {
    return E_NOTIMPL;
  }

  /// `QueryInterface` without the record.
  HRESULT answer_query(REFIID iid, void** object) noexcept {
    *object = find_interface(iid);
    if (!*object) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }

  std::string description() const final { return name_ + " with references: " + std::to_string(references_); }

 protected:
  /// `name` is the object's class: queries are recorded under it, as in "kvTable::QueryInterface".
  FakeObject(std::shared_ptr<HostState> host, const char* name)
      : host_(std::move(host)), name_(name), query_(name_ + "::QueryInterface") {
    host_->living.insert(this);
  }
  virtual ~FakeObject() { host_->living.erase(this); }

  const std::shared_ptr<HostState>& host() const noexcept { return host_; }
  HostCalls& calls() const noexcept { return host_->calls; }

 private:
  void* find_interface(REFIID iid) noexcept {
    void* found = nullptr;
    if (iid == __uuidof(IUnknown) || iid == __uuidof(IDispatch) || iid == __uuidof(First)) {
      found = static_cast<First*>(this);
    }
    ((iid == __uuidof(Others) ? found = static_cast<Others*>(this) : nullptr), ...);
    return found;
  }

  std::shared_ptr<HostState> host_;
  std::string name_;
  std::string query_;
  ULONG references_ = 1;
};

}  // namespace test_support
