#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Benchmark.h"
#include "CommandTargets.h"
#include "HotKeys.h"
#include "MainMenu.h"
#include "Owned.h"
#include "PluginHost.h"
#include "RuleHost.h"
#include "SubclassedWindow.h"

namespace bench {

/// A window over which modal dialogs open. A dialog ends as soon as it is idle and painted.
class DialogOwner : private platform::CSubclassedWindow {
 public:
  DialogOwner();
  ~DialogOwner() override;

  HWND window() const noexcept { return m_hWnd; }

  /// Runs `open`, which opens one modal dialog over the active window, and returns what passes until that is painted.
  Reading time_to_first_paint(const std::function<void()>& open);

 private:
  BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result,
                            DWORD mapId) override;
  void activate() const;

  Stopwatch* running_ = nullptr;
};

/// The built module, loaded into the reference host.
class BenchmarkHost {
 public:
  explicit BenchmarkHost(const std::vector<std::wstring>& names);
  ~BenchmarkHost();
  BenchmarkHost(const BenchmarkHost&) = delete;
  BenchmarkHost& operator=(const BenchmarkHost&) = delete;

  /// What the menu command does.
  void open_list() { targets_.run(workbench::CommandTargets::first_id); }
  const RuleHost& rules() const noexcept { return host_; }
  void show_rule(long rule_id) { plugin_.show_rule(rule_id); }

 private:
  RuleHost host_;
  base::Menu bar_;
  workbench::CommandTargets targets_;
  std::shared_ptr<workbench::MainMenu> menu_;
  std::shared_ptr<workbench::HotKeys> hot_keys_;
  workbench::PluginHost plugin_;
};

}  // namespace bench
