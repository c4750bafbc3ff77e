#pragma once

#include <windows.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "HostClasses.h"
#include "HostState.h"
#include "HostStorage.h"

namespace test_support {

/// The id of the first command that a plug-in adds; each further one is greater by 1.
inline constexpr long first_command_id = 0x8000;

/// The reference host over a store in memory, with a proxy before each of its objects: the storage object, tables,
/// filters, menu and hot keys. While it lives, the classes of the host are registered in this process, so that
/// `CoCreateInstance` creates its objects. Every call of every method is recorded and can fail on demand. The end of
/// the host fails the test when an object of it is still referenced.
class RecordingHost {
 public:
  RecordingHost();
  ~RecordingHost();
  RecordingHost(const RecordingHost&) = delete;
  RecordingHost& operator=(const RecordingHost&) = delete;

  HostCalls& calls() noexcept { return state_->calls; }
  /// What the store holds; a change counts from the next call on.
  std::vector<HostRule>& rules() noexcept { return state_->store->content().rules; }
  std::vector<HostSetting>& settings() noexcept { return state_->store->content().settings; }
  /// Frees what the host keeps of changes.
  void forget_changes() noexcept { state_->store->forget_changes(); }
  /// Every rule that a client asked to store, in order, whatever came of it; number 0 for a new one.
  std::vector<HostRule>& saves() noexcept { return state_->saves; }
  /// What these fields hold in every row until a client writes them, whatever the host put there. A value of another
  /// type than the field's is a type mismatch for who reads it; none is a null text or 0.
  HostRow& odd_values() noexcept { return state_->odd_values; }
  /// The object that the host calls for each command id that it gave out; not referenced.
  const std::map<long, IDispatch*>& commands() const noexcept { return state_->commands; }
  /// Calls `released` whenever the last reference of an object is released, with its class, as in "kvMenuItem".
  void on_release(std::function<void(const std::string& name)> released) { state_->released = std::move(released); }
  /// Whether `QueryInterface` counts as a call; it does not at first.
  void record_queries(bool record) noexcept { state_->record_queries = record; }

  /// The number of submenus of the main menu.
  int submenus() const;
  void add_submenu(const std::wstring& caption);
  void remove_submenus();

  /// New objects, as a plug-in is given them; creating them is not recorded.
  base::ComPtr<IDispatch> storage() const;
  base::ComPtr<IDispatch> main_menu() const;
  base::ComPtr<IDispatch> hot_keys() const;
  /// A table of these rows, before the first; the first row says which fields there are. A field without a value keeps
  /// what the host puts there. Filling it is not recorded.
  base::ComPtr<IKV_kvudfcom::IkvTable> table(const std::vector<HostRow>& rows = {}) const;

  /// A description of every object that is still referenced.
  std::vector<std::string> living() const;

 private:
  struct Frame;

  std::shared_ptr<HostState> state_;
  std::unique_ptr<Frame> frame_;
  workbench::HostClassObjects class_objects_;
  workbench::HostClasses classes_;
};

}  // namespace test_support
