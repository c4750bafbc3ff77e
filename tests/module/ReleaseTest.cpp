#include <functional>
#include <map>

#include "HostMenu.h"
#include "HostStorage.h"
#include "ModuleTest.h"
#include "UnusedSlots.h"

namespace module_test {
namespace {

using testing::ElementsAre;

/// Records which objects of the host the plug-in released, in order.
struct Log {
  std::vector<std::string> released;
  std::function<void()> on_release;

  void add(const std::string& name) {
    released.push_back(name);
    if (on_release) on_release();
  }
};

/// An object with one interface, which records the release of its last reference. It lives as long as the test. The
/// plug-in holds each interface of the storage object, whose order of release shows only where each of them is an
/// object of its own; those of the reference host are one object.
template <class Interface>
class Watched : public Interface {
 public:
  Watched(Log& log, const char* name) : log_(log), name_(name) {}
  Watched(const Watched&) = delete;
  Watched& operator=(const Watched&) = delete;

  STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override {
    *object = nullptr;
    if (IUnknown* found = find(iid)) {
      found->AddRef();
      *object = found;
    }
    return *object ? S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() noexcept override {
    if (--references_ == 0) log_.add(name_);
    return references_;
  }
  STDMETHODIMP GetTypeInfoCount(UINT*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) noexcept override {
    return E_NOTIMPL;
  }

  /// Further interfaces, each an object of its own.
  std::map<int, std::pair<IID, IUnknown*>> others;

 private:
  IUnknown* find(REFIID iid) {
    if (iid == __uuidof(Interface)) return this;
    for (const auto& [order, other] : others) {
      if (other.first == iid) return other.second;
    }
    return nullptr;
  }

  Log& log_;
  const char* name_;
  ULONG references_ = 0;
};

class Session final : public Watched<IkvStorageSession> {
 public:
  using Watched::Watched;
};

class SymbolSources final : public Watched<IkvSymbolSourceService> {
 public:
  using Watched::Watched;
  STDMETHODIMP load_symbol_source_settings(IkvRuleFilter*, IKV_kvudfcom::IkvTable*) noexcept override {
    return E_NOTIMPL;
  }
};

class Rules final : public workbench::RuleServiceSlots<Watched<IkvExpirationRuleService>> {
 public:
  using RuleServiceSlots::RuleServiceSlots;
  STDMETHODIMP load_rules(IkvRuleFilter*, IKV_kvudfcom::IkvTable*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP delete_rule(long, long*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP add_rule(BSTR, long, long, long, long, long, long, long, long, long, long*) noexcept override {
    return E_NOTIMPL;
  }
  STDMETHODIMP update_rule(long, BSTR, long, long, long, long, long, long, long, long, long) noexcept override {
    return E_NOTIMPL;
  }
};

class Storage final : public Watched<IkvStorage> {
 public:
  using Watched::Watched;
};

class ReleaseTest : public HostedTest {
 protected:
  ReleaseTest() {
    storage_object_.others = {{2, {__uuidof(IkvStorageSession), &session_}},
                              {3, {__uuidof(IkvSymbolSourceService), &symbol_sources_}},
                              {4, {__uuidof(IkvExpirationRuleService), &rules_}}};
    storage_ = static_cast<IDispatch*>(&storage_object_);
    host_.on_release([this](const std::string& name) { log_.add(name); });
  }

  void initialize_plugin() {
    EXPECT_EQ(S_OK, initialize());
    storage_ = nullptr;
    log_.released.clear();
  }

  Log log_;
  Storage storage_object_{log_, "storage"};
  Session session_{log_, "session"};
  SymbolSources symbol_sources_{log_, "symbol sources"};
  Rules rules_{log_, "rules"};
};

TEST_F(ReleaseTest, LastReleaseReleasesInTheReverseOrder) {
  initialize_plugin();
  plugin_ = nullptr;
  EXPECT_THAT(log_.released,
              ElementsAre("kvHotKey", "kvMenuItem", "kvSubMenu", "rules", "symbol sources", "session", "storage"));
}

TEST_F(ReleaseTest, OnlyWhatIsHeldIsReleased) {
  storage_object_.others.erase(3);
  initialize_plugin();
  plugin_ = nullptr;
  EXPECT_THAT(log_.released, ElementsAre("kvHotKey", "kvMenuItem", "kvSubMenu", "rules", "session", "storage"));
}

TEST_F(ReleaseTest, ModuleStaysLockedUntilEverythingIsReleased) {
  initialize_plugin();
  int checked = 0;
  log_.on_release = [&] {
    ++checked;
    EXPECT_EQ(S_FALSE, module_.can_unload()) << "while releasing " << log_.released.back();
  };
  plugin_ = nullptr;
  log_.on_release = nullptr;
  EXPECT_EQ(7, checked);
  EXPECT_EQ(S_OK, module_.can_unload());
}

TEST_F(ReleaseTest, HostMayCallBackWhileItIsReleased) {
  initialize_plugin();
  IkvPlugin* dying = plugin_;
  log_.on_release = [&] {
    // A host that still has the target of its menu item uses it once more.
    const auto own = base::try_query<IzdExpirationRulesPlugin>(dying);
    EXPECT_TRUE(own);
    UINT count = 0;
    EXPECT_EQ(S_OK, dying->GetTypeInfoCount(&count));
    VARIANT none = {};
    EXPECT_EQ(E_FAIL, dying->DoCommand(menu_id, none)) << "what is released is not used any more";
  };
  plugin_ = nullptr;
  log_.on_release = nullptr;
  EXPECT_EQ(7u, take_reports().size());
  EXPECT_EQ(7u, log_.released.size());
}

}  // namespace
}  // namespace module_test
