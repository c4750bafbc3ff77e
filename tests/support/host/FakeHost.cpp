#include "FakeHost.h"

#include <gtest/gtest.h>

#include "FakeMenu.h"
#include "FakeStorage.h"

namespace test_support {
namespace {

/// The class object of one class of the host.
template <class Object>
class FakeClass final : public IClassFactory {
 public:
  FakeClass(std::shared_ptr<HostState> host, const char* create) : host_(std::move(host)), create_(create) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept override {
    const bool known = iid == __uuidof(IUnknown) || iid == __uuidof(IClassFactory);
    *object = known ? this : nullptr;
    if (known) AddRef();
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() noexcept override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() noexcept override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) noexcept override {
    return host_->calls.call(create_, {interface_name(iid)}, object, [&] {
      *object = nullptr;
      if (outer) return CLASS_E_NOAGGREGATION;
      auto* made = new Object(host_);
      const HRESULT hr = made->answer_query(iid, object);
      made->Release();
      return hr;
    });
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) noexcept override { return S_OK; }

 private:
  ~FakeClass() = default;

  std::shared_ptr<HostState> host_;
  const char* create_;
  ULONG references_ = 1;
};

template <class Object>
DWORD register_class(REFCLSID id, const std::shared_ptr<HostState>& host, const char* create) {
  auto* factory = new FakeClass<Object>(host, create);
  DWORD cookie = 0;
  const HRESULT hr = CoRegisterClassObject(id, factory, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie);
  factory->Release();
  EXPECT_EQ(S_OK, hr) << create;
  return cookie;
}

/// Wraps a new object, whose one reference goes to the caller.
base::ComPtr<IDispatch> owned(IDispatch* object) { return {object, false}; }

}  // namespace

const char* interface_name(REFIID iid) noexcept {
  struct Name {
    const IID& iid;
    const char* name;
  };
  const Name names[] = {{__uuidof(IUnknown), "IUnknown"},
                        {__uuidof(IDispatch), "IDispatch"},
                        {__uuidof(IRunnableObject), "IRunnableObject"},
                        {__uuidof(IKV_kvudfcom::IkvTable), "IkvTable"},
                        {__uuidof(IKV_kvudfcom::IkvField), "IkvField"},
                        {__uuidof(IkvRuleFilter), "IkvRuleFilter"},
                        {__uuidof(IkvStorage), "IkvStorage"},
                        {__uuidof(IkvStorageSession), "IkvStorageSession"},
                        {__uuidof(IkvSymbolSourceService), "IkvSymbolSourceService"},
                        {__uuidof(IkvExpirationRuleService), "IkvExpirationRuleService"},
                        {__uuidof(IkvMainMenu), "IkvMainMenu"},
                        {__uuidof(IkvSubMenu), "IkvSubMenu"},
                        {__uuidof(IkvMenuItem), "IkvMenuItem"},
                        {__uuidof(IkvHotKeyCollection), "IkvHotKeyCollection"},
                        {__uuidof(IkvHotKey), "IkvHotKey"}};
  for (const Name& known : names) {
    if (known.iid == iid) return known.name;
  }
  return "unknown";
}

FakeHost::FakeHost() : state_(std::make_shared<HostState>()) {
  classes_ = {register_class<FakeStorage>(__uuidof(kvStorage), state_, "kvStorage::CreateInstance"),
              register_class<FakeTable>(__uuidof(kvTable), state_, "kvTable::CreateInstance"),
              register_class<FakeFilter>(__uuidof(kvRuleFilter), state_, "kvRuleFilter::CreateInstance")};
}

FakeHost::~FakeHost() {
  for (const DWORD cookie : classes_) CoRevokeClassObject(cookie);
  for (const std::string& object : living()) ADD_FAILURE() << "not released: " << object;
}

base::ComPtr<IDispatch> FakeHost::storage() const { return owned(static_cast<IkvStorage*>(new FakeStorage(state_))); }

base::ComPtr<IDispatch> FakeHost::main_menu() const { return owned(new FakeMainMenu(state_)); }

base::ComPtr<IDispatch> FakeHost::hot_keys() const { return owned(new FakeHotKeys(state_)); }

FakeTable* FakeHost::table(std::vector<HostRow> rows) const {
  auto* table = new FakeTable(state_);
  table->load(std::move(rows));
  return table;
}

std::vector<std::string> FakeHost::living() const {
  std::vector<std::string> descriptions;
  for (const LivingObject* object : state_->living) descriptions.push_back(object->description());
  return descriptions;
}

}  // namespace test_support
