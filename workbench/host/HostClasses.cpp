#include "HostClasses.h"

#include <comdef.h>

#include "ClassObject.h"
#include "RuleFilterObject.h"
#include "StorageObject.h"
#include "TableObject.h"

namespace workbench {

IDispatch* create_storage_object(std::shared_ptr<RuleStore> store, StoreListeners listeners) {
  return static_cast<IkvStorage*>(new StorageObject(std::move(store), std::move(listeners)));
}

HostClassObjects create_class_objects(const std::shared_ptr<RuleStore>& store, const StoreListeners& listeners) {
  const auto class_object = [](std::function<IUnknown*()> create) {
    return base::ComPtr<IClassFactory>(new ClassObject(std::move(create)), false);
  };
  return {{
      {__uuidof(kvStorage), class_object([=] { return create_storage_object(store, listeners); })},
      {__uuidof(kvTable), class_object([] { return static_cast<IKV_kvudfcom::IkvTable*>(new TableObject); })},
      {__uuidof(kvRuleFilter), class_object([] { return static_cast<IkvRuleFilter*>(new RuleFilterObject); })},
  }};
  // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): the pointers release what they own
}

HostClasses::HostClasses(const HostClassObjects& objects) {
  try {
    for (std::size_t i = 0; i < objects.size(); ++i) {
      IClassFactory* const factory = objects[i].factory;
      _com_util::CheckError(
          CoRegisterClassObject(objects[i].clsid, factory, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookies_[i]));
    }
  } catch (...) {
    revoke();
    throw;
  }
}

HostClasses::HostClasses(const std::shared_ptr<RuleStore>& store, const StoreListeners& listeners)
    : HostClasses(create_class_objects(store, listeners)) {}

HostClasses::~HostClasses() { revoke(); }

void HostClasses::revoke() noexcept {
  for (const DWORD cookie : cookies_)
    if (cookie) CoRevokeClassObject(cookie);
}

}  // namespace workbench
