#include <functional>
#include <map>

#include "HostMenu.h"
#include "HostStorage.h"
#include "ModuleTest.h"
#include "UnusedSlots.h"

namespace module_test {
namespace {

using testing::ElementsAre;

/// Records which interfaces the plug-in released, in order.
struct Log {
  std::vector<std::string> released;
  std::function<void()> on_release;
};

/// An object with one interface, which records the release of its last reference. It lives as long as the test.
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
    if (--references_ == 0) {
      log_.released.push_back(name_);
      if (log_.on_release) log_.on_release();
    }
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

class Item final : public Watched<IkvMenuItem> {
 public:
  using Watched::Watched;
  STDMETHODIMP get_CommandID(long* id) noexcept override {
    *id = 1;
    return S_OK;
  }
};

class HotKey final : public Watched<IkvHotKey> {
 public:
  using Watched::Watched;
  STDMETHODIMP get_CommandID(long* id) noexcept override {
    *id = 2;
    return S_OK;
  }
};

class SubMenu final : public workbench::SubMenuSlots<Watched<IkvSubMenu>> {
 public:
  SubMenu(Log& log, Item& item) : SubMenuSlots(log, "submenu"), item_(item) {}
  STDMETHODIMP AddCommand(BSTR, long, long, long, IUnknown*, long, IDispatch*, IkvMenuItem** item) noexcept override {
    item_.AddRef();
    *item = &item_;
    return S_OK;
  }

 private:
  Item& item_;
};

class MainMenu final : public workbench::MainMenuSlots<Watched<IkvMainMenu>> {
 public:
  MainMenu(Log& log, SubMenu& submenu) : MainMenuSlots(log, "main menu"), submenu_(submenu) {}
  STDMETHODIMP FindSubMenu(BSTR, IkvSubMenu** submenu) noexcept override {
    submenu_.AddRef();
    *submenu = &submenu_;
    return S_OK;
  }
  STDMETHODIMP AddSubMenu(BSTR, BSTR, long, IkvSubMenu**) noexcept override { return E_NOTIMPL; }

 private:
  SubMenu& submenu_;
};

class HotKeys final : public Watched<IkvHotKeyCollection> {
 public:
  HotKeys(Log& log, HotKey& hot_key) : Watched(log, "hot keys"), hot_key_(hot_key) {}
  STDMETHODIMP AddHotKey(long, long, IDispatch*, IDispatch** hot_key) noexcept override {
    hot_key_.AddRef();
    *hot_key = &hot_key_;
    return S_OK;
  }

 private:
  HotKey& hot_key_;
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

class ReleaseTest : public ModuleTest {
 protected:
  ReleaseTest() {
    storage_.others = {{2, {__uuidof(IkvStorageSession), &session_}},
                       {3, {__uuidof(IkvSymbolSourceService), &symbol_sources_}},
                       {4, {__uuidof(IkvExpirationRuleService), &rules_}}};
  }

  base::ComPtr<IkvPlugin> initialised_plugin() {
    const base::ComPtr<IkvPlugin> plugin = module_.plugin();
    EXPECT_EQ(S_OK, plugin->Initialize(&menu_, &menu_, &menu_, &hot_keys_, _bstr_t(L"x"), &storage_));
    log_.released.clear();
    return plugin;
  }

  Log log_;
  Item item_{log_, "menu item"};
  SubMenu submenu_{log_, item_};
  MainMenu menu_{log_, submenu_};
  HotKey hot_key_{log_, "hot key"};
  HotKeys hot_keys_{log_, hot_key_};
  Storage storage_{log_, "storage"};
  Session session_{log_, "session"};
  SymbolSources symbol_sources_{log_, "symbol sources"};
  Rules rules_{log_, "rules"};
};

TEST_F(ReleaseTest, LastReleaseReleasesInTheReverseOrder) {
  base::ComPtr<IkvPlugin> plugin = initialised_plugin();
  plugin = nullptr;
  EXPECT_THAT(log_.released,
              ElementsAre("hot key", "menu item", "submenu", "rules", "symbol sources", "session", "storage"));
}

TEST_F(ReleaseTest, OnlyWhatIsHeldIsReleased) {
  storage_.others.erase(3);
  base::ComPtr<IkvPlugin> plugin = initialised_plugin();
  plugin = nullptr;
  EXPECT_THAT(log_.released, ElementsAre("hot key", "menu item", "submenu", "rules", "session", "storage"));
}

TEST_F(ReleaseTest, ModuleStaysLockedUntilEverythingIsReleased) {
  base::ComPtr<IkvPlugin> plugin = initialised_plugin();
  int checked = 0;
  log_.on_release = [&] {
    ++checked;
    EXPECT_EQ(S_FALSE, module_.can_unload()) << "while releasing " << log_.released.back();
  };
  plugin = nullptr;
  EXPECT_EQ(7, checked);
  EXPECT_EQ(S_OK, module_.can_unload());
}

TEST_F(ReleaseTest, HostMayCallBackWhileItIsReleased) {
  base::ComPtr<IkvPlugin> plugin = initialised_plugin();
  IkvPlugin* dying = plugin;
  log_.on_release = [&] {
    // A host that still has the target of its menu item uses it once more.
    const auto own = base::try_query<IzdExpirationRulesPlugin>(dying);
    EXPECT_TRUE(own);
    UINT count = 0;
    EXPECT_EQ(S_OK, dying->GetTypeInfoCount(&count));
    VARIANT none = {};
    EXPECT_EQ(E_FAIL, dying->DoCommand(1, none)) << "what is released is not used any more";
  };
  plugin = nullptr;
  log_.on_release = nullptr;
  EXPECT_EQ(7u, take_reports().size());
  EXPECT_EQ(7u, log_.released.size());
}

}  // namespace
}  // namespace module_test
