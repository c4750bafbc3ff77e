#include "BenchmarkHost.h"

#include <stdexcept>

#include "MessagePump.h"
#include "ModulePath.h"

namespace bench {

namespace {

constexpr DWORD timeout_ms = 10'000;

}  // namespace

DialogOwner::DialogOwner() {
  SubclassWindow(CreateWindowExW(0, L"Static", L"benchmark", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 20, 20, 900, 800,
                                 nullptr, nullptr, nullptr, nullptr));
}

DialogOwner::~DialogOwner() { DestroyWindow(m_hWnd); }

Reading DialogOwner::time_to_first_paint(const std::function<void()>& open) {
  activate();
  Stopwatch watch;
  running_ = &watch;
  watch.start();
  open();
  if (running_) throw std::runtime_error("no dialog was opened over the benchmark's window");
  return watch.reading();
}

BOOL DialogOwner::ProcessWindowMessage(HWND, UINT message, WPARAM, LPARAM lParam, LRESULT&, DWORD) {
  if (message != WM_ENTERIDLE || !running_) return FALSE;
  const auto dialog = reinterpret_cast<HWND>(lParam);
  RedrawWindow(dialog, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
  running_->stop();
  running_ = nullptr;
  EndDialog(dialog, IDCANCEL);
  return FALSE;
}

/// The window manager activates the window late. Dialogs that open before it is in front have no owner and never report
/// that they are idle.
void DialogOwner::activate() const {
  const ULONGLONG end = GetTickCount64() + timeout_ms;
  do {
    test_support::pump_messages();
    SetForegroundWindow(m_hWnd);
    if (GetTickCount64() > end) throw std::runtime_error("the benchmark's window does not come to the front");
  } while (GetActiveWindow() != m_hWnd);
  test_support::pump_messages();
}

BenchmarkHost::BenchmarkHost(const std::vector<std::wstring>& names)
    : host_(names),
      bar_(CreateMenu()),
      menu_(std::make_shared<workbench::MainMenu>(bar_.get(), 0, targets_, [] {})),
      hot_keys_(std::make_shared<workbench::HotKeys>(targets_)),
      plugin_(base::path_beside_program(L"zdExpirationRules.dll")) {
  plugin_.initialize({.main_menu = {menu_->create_dispatch(), false},
                      .hot_keys = {hot_keys_->create_dispatch(), false},
                      .storage = host_.storage(),
                      .registry_path = L"Software"});
}

BenchmarkHost::~BenchmarkHost() { targets_.clear(); }

}  // namespace bench
