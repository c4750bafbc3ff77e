#include "RecordingHost.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>

#include "CommandTargets.h"
#include "FieldIds.h"
#include "HotKeys.h"
#include "MainMenu.h"
#include "MenuProxies.h"
#include "Owned.h"
#include "StorageProxies.h"
#include "TableProxies.h"
#include "TextEncoding.h"

namespace test_support {
namespace {

using base::ComPtr;

static_assert(first_command_id == workbench::CommandTargets::first_id);

/// A class object of the reference host, whose objects get a proxy.
template <class Proxy>
class ClassProxy final : public IClassFactory {
 public:
  ClassProxy(std::shared_ptr<HostState> host, const char* create, const ComPtr<IClassFactory>& inner)
      : host_(std::move(host)), create_(create), inner_(inner) {}

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
      ComPtr<IUnknown> created;
      const HRESULT result = inner_->CreateInstance(outer, IID_IUnknown, reinterpret_cast<void**>(&created));
      if (FAILED(result)) return result;
      auto* proxy = new Proxy(host_, created);
      const HRESULT found = proxy->query(iid, object);
      proxy->Release();
      return found;
    });
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) noexcept override { return inner_->LockServer(lock); }

 private:
  ~ClassProxy() = default;

  std::shared_ptr<HostState> host_;
  const char* create_;
  ComPtr<IClassFactory> inner_;
  ULONG references_ = 1;
};

template <class Proxy>
workbench::HostClass with_proxy(const workbench::HostClass& inner, const std::shared_ptr<HostState>& host,
                                const char* create) {
  return {inner.clsid, ComPtr<IClassFactory>(new ClassProxy<Proxy>(host, create, inner.factory), false)};
}

workbench::HostClassObjects with_proxies(const std::shared_ptr<HostState>& host) {
  const workbench::HostClassObjects inner = workbench::create_class_objects(host->store, {});
  return {with_proxy<StorageProxy>(inner[0], host, "kvStorage::CreateInstance"),
          with_proxy<TableProxy>(inner[1], host, "kvTable::CreateInstance"),
          with_proxy<FilterProxy>(inner[2], host, "kvRuleFilter::CreateInstance")};
}

/// Wraps a new object, whose one reference belongs to the caller.
base::ComPtr<IDispatch> owned(IDispatch* object) { return {object, false}; }

void set_value(IKV_kvudfcom::IkvTable& table, long id, const HostValue& value) {
  ComPtr<IKV_kvudfcom::IkvField> field;
  ASSERT_EQ(S_OK, table.GetFieldByID(id, &field));
  if (const long* number = std::get_if<long>(&value)) {
    ASSERT_EQ(S_OK, field->SetLong(*number));
  } else if (const auto* text = std::get_if<std::wstring>(&value)) {
    ASSERT_EQ(S_OK, field->SetText(text->c_str()));
  }
}

}  // namespace

/// The part of the reference host that has windows: a menu bar that is on no window, and what calls its commands.
struct RecordingHost::Frame {
  workbench::CommandTargets targets;
  base::Menu bar{CreateMenu()};
  std::shared_ptr<workbench::MainMenu> menu = std::make_shared<workbench::MainMenu>(bar.get(), 0, targets, [] {});
  std::shared_ptr<workbench::HotKeys> hot_keys = std::make_shared<workbench::HotKeys>(targets);
};

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

RecordingHost::RecordingHost()
    : state_(std::make_shared<HostState>()),
      frame_(std::make_unique<Frame>()),
      class_objects_(with_proxies(state_)),
      classes_(class_objects_) {}

RecordingHost::~RecordingHost() {
  for (const std::string& object : living()) ADD_FAILURE() << "not released: " << object;
}

int RecordingHost::submenus() const { return GetMenuItemCount(frame_->menu->bar()); }

void RecordingHost::add_submenu(const std::wstring& caption) { frame_->menu->add_submenu(caption, {}); }

void RecordingHost::remove_submenus() {
  while (submenus() > 0) DeleteMenu(frame_->menu->bar(), 0, MF_BYPOSITION);
}

base::ComPtr<IDispatch> RecordingHost::storage() const {
  const base::ComPtr<IDispatch> storage = owned(workbench::create_storage_object(state_->store, {}));
  return owned(static_cast<IkvStorage*>(new StorageProxy(state_, storage)));
}

base::ComPtr<IDispatch> RecordingHost::main_menu() const {
  return owned(new MainMenuProxy(state_, owned(frame_->menu->create_dispatch())));
}

base::ComPtr<IDispatch> RecordingHost::hot_keys() const {
  return owned(new HotKeysProxy(state_, owned(frame_->hot_keys->create_dispatch())));
}

ComPtr<IKV_kvudfcom::IkvTable> RecordingHost::table(const std::vector<HostRow>& rows) const {
  ComPtr<IUnknown> object;
  const workbench::HostClassObjects classes = workbench::create_class_objects(state_->store, {});
  EXPECT_EQ(S_OK, classes[1].factory->CreateInstance(nullptr, IID_IUnknown, reinterpret_cast<void**>(&object)));
  const ComPtr<IKV_kvudfcom::IkvTable> table = object;
  if (!rows.empty()) {
    for (const auto& [id, value] : rows.front()) EXPECT_EQ(S_OK, table->AddField(id, 0, 0, 0));
  }
  for (const HostRow& row : rows) {
    EXPECT_EQ(S_OK, table->AppendRow());
    EXPECT_EQ(S_OK, table->MoveLast());
    for (const auto& [id, value] : row) set_value(*table, id, value);
  }
  EXPECT_EQ(S_OK, table->MoveFirst());
  return {new TableProxy(state_, object), false};
}

std::vector<std::string> RecordingHost::living() const {
  std::vector<std::string> descriptions;
  for (const LivingObject* object : state_->living) descriptions.push_back(object->description());
  return descriptions;
}

void PrintTo(const HostRule& rule, std::ostream* out) {
  *out << rule.id << " \"" << base::to_utf8(rule.name) << '"';
  for (const workbench::RuleColumn& column : workbench::rule_columns) *out << ' ' << rule.*column.value;
}

HostRow row_of(const HostRule& rule) {
  HostRow row = {{KVFIELD_RULE_ID, rule.id}, {KVFIELD_RULE_NAME, rule.name}};
  for (const workbench::RuleColumn& column : workbench::rule_columns) row[column.field] = rule.*column.value;
  return row;
}

}  // namespace test_support
