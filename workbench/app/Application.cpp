#include "Application.h"

#include <utility>

#include "LibrarySearch.h"
#include "ModulePath.h"
#include "RecentStores.h"
#include "ScopedFlag.h"
#include "StoreMessages.h"
#include "Texts.h"
#include "UserSettings.h"
#include "WaitBox.h"
#include "resource.h"

namespace workbench {

namespace {

constexpr int menus_after_those_of_plugins = 1;

}  // namespace

Application::Application(OpenedStore store, FileDialogs file_dialogs)
    : window_(events()),
      file_dialogs_(std::move(file_dialogs)),
      chooser_(window_, file_dialogs_, [this](OpenedStore opened) { change_store(std::move(opened)); }) {
  connect(std::move(store));
}

Application::~Application() { unload_plugin(); }

void Application::connect(OpenedStore opened) {
  subscription_.reset();
  classes_.reset();
  store_ = std::move(opened.store);
  store_description_ = std::move(opened.description);
  schedule_commands_.reset();
  const auto progress_of_call = [this] { return wait_for_file(store_description_); };
  shown_store_.emplace(store_, progress_of_call);
  plugin_store_ = std::make_shared<ProgressRuleStore>(store_, progress_of_call);
  schedule_commands_.emplace(*shown_store_, window_, file_dialogs_, [this](long number) { open_rule(number); });
  menu_ = std::make_shared<MainMenu>(GetMenu(window_.handle()), menus_after_those_of_plugins, targets_,
                                     [this] { DrawMenuBar(window_.handle()); });
  hot_keys_ = std::make_shared<HotKeys>(targets_);
  classes_.emplace(plugin_store_, store_listeners());
  window_.show_store(store_description_);
  window_.show_message(text(IDS_READY));
  subscribe_to_store();
  refresh_panes();
  if (!opened.name.empty()) remember_store(opened.name);
}

void Application::change_store(OpenedStore opened) {
  const bool has_plugin = plugin_.has_value();
  unload_plugin();
  window_.show_nothing();
  window_.reset_menu();
  connect(std::move(opened));
  if (has_plugin) load_plugin(std::filesystem::path(module_));
  offer_calendars();
}

void Application::run_if_idle(const std::function<void()>& command) {
  if (calling_plugin_ || !IsWindowEnabled(window_.handle())) return window_.show_message(text(IDS_BUSY));
  command();
}

void Application::load_plugin(const std::filesystem::path& module) {
  module_ = module;
  try {
    plugin_.emplace(module);
  } catch (const _com_error& error) {
    show_error(text(IDS_MODULE_NOT_CREATED, {describe(error.Error())}));
    return;
  }
  const HRESULT initialized = initialize_plugin();
  if (FAILED(initialized)) {
    show_error(text(IDS_MODULE_NOT_INITIALIZED, {describe(initialized)}));
  } else if (const std::wstring missing = missing_libraries(); !missing.empty()) {
    window_.show_message(text(IDS_LIBRARIES_MISSING, {missing}));
  } else {
    window_.show_message(text(IDS_MODULE_LOADED));
  }
}

HRESULT Application::initialize_plugin() {
  const base::ScopedFlag calling(calling_plugin_);
  return plugin_->initialize(
      {.main_menu = base::ComPtr<IDispatch>(menu_->create_dispatch(), false),
       .hot_keys = base::ComPtr<IDispatch>(hot_keys_->create_dispatch(), false),
       .storage = base::ComPtr<IDispatch>(create_storage_object(plugin_store_, store_listeners()), false),
       .registry_path = settings_path()});
}

void Application::run(long shown_rule) {
  ShowWindow(window_.handle(), SW_SHOWDEFAULT);
  offer_calendars();
  if (shown_rule != 0) window_.post([this, shown_rule] { open_rule(shown_rule); });
  HACCEL own_keys = LoadAcceleratorsW(base::module_instance(), MAKEINTRESOURCEW(IDR_ACCELERATORS));
  MSG message{};
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    if (TranslateAcceleratorW(window_.handle(), own_keys, &message)) continue;
    if (TranslateAcceleratorW(window_.handle(), hot_keys_->accelerators(), &message)) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

MainWindowEvents Application::events() {
  return {
      .open_rule = [this](long number) { open_rule(number); },
      .run_command = [this](long id) { run_command(id); },
      .run_schedule_command = [this](UINT id) { schedule_commands_->run(id); },
      .refresh =
          [this] {
            if (refresh_panes()) window_.show_message(text(IDS_REFRESHED));
          },
      .on_timer =
          [this] {
            look_for_changes();
            show_alarms();
          },
      .hint = [this](HMENU submenu) { return menu_->hint(submenu); },
      .about = [this] { show_about(); },
      .may_close = [this] { return may_close(); },
      .open_store = [this] { run_if_idle([this] { chooser_.choose(); }); },
      .open_recent_store = [this](std::size_t index) { run_if_idle([this, index] { chooser_.open_recent(index); }); },
      .recent_stores = &StoreChooser::recent};
}

/// A change may happen in the middle of a call of the plug-in, so the panes follow when the message loop runs next,
/// which may be that of the plug-in's dialog.
void Application::subscribe_to_store() {
  subscription_ = store_->subscribe([this] {
    if (std::exchange(refresh_posted_, true)) return;
    window_.post([this] {
      refresh_posted_ = false;
      refresh_panes();
    });
  });
}

bool Application::refresh_panes() {
  try {
    window_.show(shown_store_->load_rules(), shown_store_->load_settings(), shown_store_->load_calendars());
    return true;
  } catch (const StoreError& error) {
    window_.show_message(text(IDS_STORE_NOT_READ, {store_message(error)}));
  } catch (const schedule::Cancelled&) {
    window_.show_message(text(IDS_CANCELLED));
  }
  return false;
}

void Application::look_for_changes() {
  try {
    store_->poll_for_changes();
  } catch (const StoreError& error) {
    window_.show_message(text(IDS_STORE_NOT_READ, {store_message(error)}));
  }
}

template <class Call, class Failure>
void Application::call_plugin(const Call& call, const Failure& failure) {
  if (calling_plugin_ || !plugin_) {
    window_.show_message(text(calling_plugin_ ? IDS_BUSY : IDS_NO_MODULE));
    return;
  }
  const base::ScopedFlag calling(calling_plugin_);
  const HRESULT result = call();
  if (FAILED(result)) window_.show_message(failure(describe(result)));
}

void Application::open_rule(long number) {
  call_plugin([&] { return plugin_->show_rule(number); },
              [&](const std::wstring& reason) {
                return text(IDS_SHOW_FAILED, {std::to_wstring(number), reason});
              });
}

void Application::run_command(long id) {
  call_plugin([&] { return targets_.run(id); },
              [](const std::wstring& reason) { return text(IDS_COMMAND_FAILED, {reason}); });
}

void Application::show_about() {
  window_.try_show_box(text(IDS_ABOUT, {program_version(), store_description_}), MB_ICONINFORMATION);
}

/// Closing the window under an open dialog of the plug-in would destroy that dialog's owner.
bool Application::may_close() {
  if (calling_plugin_) {
    window_.show_message(text(IDS_BUSY));
    SetForegroundWindow(GetLastActivePopup(window_.handle()));
    return false;
  }
  unload_plugin();
  return true;
}

void Application::unload_plugin() noexcept {
  targets_.clear();
  plugin_.reset();
  CoFreeUnusedLibraries();
}

/// They are called inside a call of the plug-in, where nothing may block.
StoreListeners Application::store_listeners() {
  return {.failed =
              [this](const StoreError& error, const Rule* unsaved) {
                show_error(store_failure(error, unsaved));
                window_.show_message(store_message(error));
              },
          .restored =
              [this](const StoredRule& added) { window_.show_message(text(IDS_RULE_RESTORED, {added.rule.name})); }};
}

void Application::show_error(const std::wstring& message) {
  window_.show_message(message);
  alarms_.push_back(message);
  window_.post([this] { show_alarms(); });
}

void Application::show_alarms() {
  if (showing_alarms_) return;
  const base::ScopedFlag showing(showing_alarms_);
  while (!alarms_.empty() && window_.try_show_box(alarms_.front(), MB_ICONERROR)) alarms_.pop_front();
}

}  // namespace workbench
