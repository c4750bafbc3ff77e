#include "HostClasses.h"

#include <comdef.h>

#include "ClassObject.h"
#include "RuleFilterObject.h"
#include "StorageObject.h"
#include "TableObject.h"

namespace workbench {

namespace {

void register_class(REFCLSID clsid, std::function<IUnknown*()> make, DWORD& cookie) {
  auto* object = new ClassObject(std::move(make));
  const HRESULT result = CoRegisterClassObject(clsid, object, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie);
  object->Release();
  _com_util::CheckError(result);
}

}  // namespace

IDispatch* create_storage_object(std::shared_ptr<RuleStore> store, StoreFailureListener listener) {
  return static_cast<IkvStorage*>(new StorageObject(std::move(store), std::move(listener)));
}

HostClasses::HostClasses(const std::shared_ptr<RuleStore>& store, const StoreFailureListener& listener) {
  try {
    register_class(
        __uuidof(kvStorage), [=] { return create_storage_object(store, listener); }, cookies_[0]);
    register_class(
        __uuidof(kvTable), [] { return static_cast<IKV_kvudfcom::IkvTable*>(new TableObject); }, cookies_[1]);
    register_class(
        __uuidof(kvRuleFilter), [] { return static_cast<IkvRuleFilter*>(new RuleFilterObject); }, cookies_[2]);
  } catch (...) {
    revoke();
    throw;
  }
}

HostClasses::~HostClasses() { revoke(); }

void HostClasses::revoke() noexcept {
  for (const DWORD cookie : cookies_)
    if (cookie) CoRevokeClassObject(cookie);
}

}  // namespace workbench
