#pragma once

#include <memory>
#include <string>
#include <utility>

#include "ComPtr.h"
#include "HostState.h"
#include "UnusedSlots.h"

namespace test_support {

/// The name of an interface of the host, "unknown" for any other.
const char* interface_name(REFIID iid) noexcept;

/// Base of the proxies over the reference host's objects: implements `Interfaces`, `IDispatch` and `IUnknown`, counts
/// references, destroys itself at the last release and is known to the host while it lives. Created with one reference.
/// Any other interface is private to the reference host, which recognises its own objects by it: a query for it reaches
/// the object behind the proxy, and is neither recorded nor failed.
template <class First, class... Others>
class ProxyObject : public LivingObject, public First, public Others... {
 public:
  ProxyObject(const ProxyObject&) = delete;
  ProxyObject& operator=(const ProxyObject&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept final {
    if (!object) return E_POINTER;
    const bool is_private = !find_interface(iid) && interface_name(iid) == std::string_view("unknown");
    // The system asks whether an object is runnable and requires a truthful result.
    if (!host_->record_queries || is_private || iid == IID_IRunnableObject) return query(iid, object);
    return calls().call(query_.c_str(), {interface_name(iid)}, object, [&] { return query(iid, object); });
  }
  ULONG STDMETHODCALLTYPE AddRef() noexcept final { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() noexcept final {
    const ULONG left = --references_;
    if (left == 0) {
      if (host_->released) host_->released(name_);
      delete this;
    }
    return left;
  }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept final { return late()->GetTypeInfoCount(count); }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) noexcept final {
    return late()->GetTypeInfo(index, locale, info);
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* ids) noexcept final {
    return late()->GetIDsOfNames(iid, names, count, locale, ids);
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO* exception, UINT* argument) noexcept final {
    return late()->Invoke(id, iid, locale, flags, parameters, result, exception, argument);
  }

  /// `QueryInterface` without the record.
  HRESULT query(REFIID iid, void** object) noexcept {
    *object = find_interface(iid);
    if (!*object) return inner_->QueryInterface(iid, object);
    AddRef();
    return S_OK;
  }

  std::string description() const final { return name_ + " with references: " + std::to_string(references_); }

 protected:
  /// `name` is the object's class: queries are recorded under it, as in "kvTable::QueryInterface".
  ProxyObject(std::shared_ptr<HostState> host, const char* name, const base::ComPtr<IUnknown>& inner)
      : host_(std::move(host)), name_(name), query_(name_ + "::QueryInterface"), inner_(inner) {
    host_->living.insert(this);
  }
  virtual ~ProxyObject() { host_->living.erase(this); }

  const std::shared_ptr<HostState>& host() const noexcept { return host_; }
  HostCalls& calls() const noexcept { return host_->calls; }

  /// The object behind the proxy.
  template <class Interface>
  base::ComPtr<Interface> inner() const {
    return inner_;
  }

  /// Records a call without an out parameter and passes it on.
  template <class Interface, class... Parameters>
  HRESULT forward(const char* name, HRESULT (STDMETHODCALLTYPE Interface::*method)(Parameters...),
                  std::type_identity_t<Parameters>... arguments) noexcept {
    return calls().call(name, {HostArgument(arguments)...},
                        [&] { return (inner<Interface>().GetInterfacePtr()->*method)(arguments...); });
  }

  /// The same for a call that fetches something into its last parameter, given here as the first one.
  template <class Interface, class Out, class... Parameters, class... Arguments>
  HRESULT fetch(const char* name, HRESULT (STDMETHODCALLTYPE Interface::*method)(Parameters...), Out* out,
                Arguments... arguments) noexcept {
    return calls().call(name, {HostArgument(arguments)...}, out,
                        [&] { return (inner<Interface>().GetInterfacePtr()->*method)(arguments..., out); });
  }

  /// The same for a call that gives out an object of the host: `wrap` puts it behind a proxy.
  template <class Interface, class Out, class... Parameters, class Wrap, class... Arguments>
  HRESULT fetch_object(const char* name, HRESULT (STDMETHODCALLTYPE Interface::*method)(Parameters...),
                       const Wrap& wrap, Out** out, Arguments... arguments) noexcept {
    return calls().call(name, {HostArgument(arguments)...}, out, [&] {
      const HRESULT result = (inner<Interface>().GetInterfacePtr()->*method)(arguments..., out);
      const base::ComPtr<Out> object(std::exchange(*out, nullptr), false);
      if (object) *out = wrap(object);
      return result;
    });
  }

 private:
  base::ComPtr<IDispatch> late() const { return inner_; }

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
  base::ComPtr<IUnknown> inner_;
  ULONG references_ = 1;
};

}  // namespace test_support
