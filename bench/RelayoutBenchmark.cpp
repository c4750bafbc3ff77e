// A dialog with the rule list's template lays out its six children, against a batch written by hand for them.

#include <windows.h>
#include <commctrl.h>

#include <memory>

#include "Benchmark.h"
#include "ResizableDialog.h"
#include "resource.h"

namespace {

constexpr int repetitions = 10;

/// Grows and shrinks a dialog between two sizes, so that every child that can move does.
template <class Relayout>
double measure(HWND dialog, const Relayout& relayout) {
  RECT opened = {};
  GetWindowRect(dialog, &opened);
  const int width = opened.right - opened.left;
  const int height = opened.bottom - opened.top;
  bench::Stopwatch watch;
  for (int i = 0; i < repetitions; ++i) {
    const int more = i % 2 == 0 ? 40 : 0;
    SetWindowPos(dialog, nullptr, 0, 0, width + more, height + more, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    watch.start();
    relayout();
    watch.stop();
  }
  UpdateWindow(dialog);
  return watch.seconds() / repetitions;
}

/// The library's way. Sizes are laid out when the benchmark says so, as in the handler of WM_SIZE.
class LibraryDialog : public CResizableDialogImpl<LibraryDialog> {
 public:
  static constexpr int IDD = IDD_EXPIRATION_RULES_LIST;

  BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result,
                            DWORD mapId = 0) override {
    if (message == WM_SIZE && !sizing) return FALSE;
    if (CResizableDialogImpl::ProcessWindowMessage(window, message, wParam, lParam, result, mapId)) return TRUE;
    if (message != WM_INITDIALOG) return FALSE;
    for (const int id : {IDC_RULES_GROUP, IDC_RULES_LIST}) AddAnchor(GetItem(id), TOP_LEFT, BOTTOM_RIGHT);
    for (const int id : {IDC_ADD_RULE, IDC_EDIT_RULE, IDC_DELETE_RULE}) AddAnchor(GetItem(id), TOP_RIGHT);
    AddAnchor(GetItem(IDCANCEL), BOTTOM_RIGHT);
    return TRUE;
  }

  void size() {
    LRESULT result = 0;
    sizing = true;
    ProcessWindowMessage(m_hWnd, WM_SIZE, SIZE_RESTORED, 0, result);
    sizing = false;
  }

 private:
  bool sizing = false;
};

/// The way of a dialog that knows its children by name.
class HandWrittenDialog : public platform::CDialogImpl<HandWrittenDialog> {
 public:
  static constexpr int IDD = IDD_EXPIRATION_RULES_LIST;

  BOOL ProcessWindowMessage(HWND, UINT message, WPARAM, LPARAM, LRESULT&, DWORD) override {
    if (message != WM_INITDIALOG) return FALSE;
    client_ = GetClientRect();
    for (std::size_t i = 0; i < std::size(ids); ++i) {
      children_[i] = GetItem(ids[i]);
      ::GetWindowRect(children_[i], &rects_[i]);
      MapWindowPoints(nullptr, m_hWnd, reinterpret_cast<POINT*>(&rects_[i]), 2);
    }
    grip_ = CreateWindowExW(0, L"SCROLLBAR", nullptr, WS_CHILD | WS_VISIBLE | SBS_SIZEGRIP, 0, 0, grip_width,
                            grip_height, m_hWnd, nullptr, nullptr, nullptr);
    return TRUE;
  }

  void arrange() {
    const RECT client = GetClientRect();
    const int right = client.right - client_.right;
    const int down = client.bottom - client_.bottom;
    HDWP batch = BeginDeferWindowPos(6);
    batch = stretched(batch, 0, right, down);
    batch = stretched(batch, 1, right, down);
    batch = moved(batch, 2, right, 0);
    batch = moved(batch, 3, right, 0);
    batch = moved(batch, 4, right, 0);
    batch = moved(batch, 5, right, down);
    EndDeferWindowPos(batch);
  }

  void place_grip() {
    const RECT client = GetClientRect();
    SetWindowPos(grip_, HWND_BOTTOM, client.right - grip_width, client.bottom - grip_height, 0, 0,
                 SWP_NOSIZE | SWP_NOACTIVATE | SWP_NOOWNERZORDER | SWP_SHOWWINDOW);
  }

 private:
  static constexpr int ids[] = {IDC_RULES_GROUP, IDC_RULES_LIST,  IDC_ADD_RULE,
                                IDC_EDIT_RULE,   IDC_DELETE_RULE, IDCANCEL};
  static constexpr UINT flags = SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOOWNERZORDER;

  HDWP stretched(HDWP batch, std::size_t i, int right, int down) {
    const RECT& rect = rects_[i];
    return DeferWindowPos(batch, children_[i], nullptr, 0, 0, rect.right - rect.left + right,
                          rect.bottom - rect.top + down, flags | SWP_NOMOVE);
  }

  HDWP moved(HDWP batch, std::size_t i, int right, int down) {
    const RECT& rect = rects_[i];
    return DeferWindowPos(batch, children_[i], nullptr, rect.left + right, rect.top + down, 0, 0, flags | SWP_NOSIZE);
  }

  const int grip_width = GetSystemMetrics(SM_CXVSCROLL);
  const int grip_height = GetSystemMetrics(SM_CYHSCROLL);
  RECT client_ = {};
  HWND children_[std::size(ids)] = {};
  RECT rects_[std::size(ids)] = {};
  HWND grip_ = nullptr;
};

template <class Dialog>
std::shared_ptr<Dialog> opened() {
  const INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_LISTVIEW_CLASSES};
  InitCommonControlsEx(&controls);
  std::shared_ptr<Dialog> dialog(new Dialog, [](Dialog* closed) {
    DestroyWindow(closed->m_hWnd);
    delete closed;
  });
  ShowWindow(dialog->Create(nullptr), SW_SHOWNOACTIVATE);
  return dialog;
}

bench::BaselineComparison batch_comparison() {
  const auto library = opened<LibraryDialog>();
  const auto by_hand = opened<HandWrittenDialog>();
  return {[=] { return measure(library->m_hWnd, [&] { library->ArrangeLayout(); }); },
          [=] { return measure(by_hand->m_hWnd, [&] { by_hand->arrange(); }); }};
}

bench::BaselineComparison handler_comparison() {
  const auto library = opened<LibraryDialog>();
  const auto by_hand = opened<HandWrittenDialog>();
  return {[=] { return measure(library->m_hWnd, [&] { library->size(); }); },
          [=] {
            return measure(by_hand->m_hWnd, [&] {
              by_hand->place_grip();
              by_hand->arrange();
            });
          }};
}

const bench::Registration batch({"relayout of the list's six children", 1.05, batch_comparison});
const bench::Registration handler({"whole size handler, with the grip", 1.05, handler_comparison});

}  // namespace
