#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "ComPtr.h"
#include "FakeTable.h"
#include "HostState.h"

namespace test_support {

/// A host in memory: its storage object, tables, filters, menu and hot keys. While it lives, the classes of the host
/// are registered in this process, so that `CoCreateInstance` makes its objects. Every call of every method is recorded
/// and can be made to fail. The end of the host fails the test when an object of it is still referenced.
class FakeHost {
 public:
  FakeHost();
  ~FakeHost();
  FakeHost(const FakeHost&) = delete;
  FakeHost& operator=(const FakeHost&) = delete;

  HostCalls& calls() noexcept { return state_->calls; }
  std::vector<HostRule>& rules() noexcept { return state_->rules; }
  std::vector<HostSetting>& settings() noexcept { return state_->settings; }
  /// The captions of the submenus that the main menu has.
  std::set<std::wstring>& submenus() noexcept { return state_->submenus; }
  /// Whom the host calls for each command id that it gave out; not referenced.
  const std::map<long, IDispatch*>& commands() const noexcept { return state_->commands; }
  /// What the host puts into a row that is appended to a table.
  HostRow& new_row() noexcept { return state_->new_row; }
  /// What fields hold instead of their values, in every row that a service loads from now on.
  HostRow& odd_values() noexcept { return state_->odd_values; }
  /// Whether `QueryInterface` counts as a call; it does not at first.
  void record_queries(bool record) noexcept { state_->record_queries = record; }

  /// New objects, as a plug-in is given them; making them is not recorded.
  base::ComPtr<IDispatch> storage() const;
  base::ComPtr<IDispatch> main_menu() const;
  base::ComPtr<IDispatch> hot_keys() const;
  /// A table of these rows with one reference, which the caller owns.
  FakeTable* table(std::vector<HostRow> rows = {}) const;

  /// A description of every object that somebody still holds.
  std::vector<std::string> living() const;

 private:
  std::shared_ptr<HostState> state_;
  std::vector<DWORD> classes_;
};

}  // namespace test_support
