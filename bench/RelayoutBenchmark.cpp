// A dialog with the rule list's template lays out its six children, against a batch written by hand for them.

#include <windows.h>
#include <commctrl.h>

#include <memory>

#include "Benchmark.h"
#include "HandLayout.h"
#include "ResizableDialog.h"
#include "resource.h"

namespace {

constexpr int repetitions = 10;

/// Grows and shrinks a dialog between two sizes, so that every child that can move does.
template <class Relayout>
bench::Reading measure(HWND dialog, const Relayout& relayout) {
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
  return watch.reading(repetitions);
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
template <bench::HandLayout::Grip grip>
class HandWrittenDialog : public platform::CDialogImpl<HandWrittenDialog<grip>> {
 public:
  static constexpr int IDD = IDD_EXPIRATION_RULES_LIST;

  BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM, LPARAM, LRESULT&, DWORD) override {
    if (message != WM_INITDIALOG) return FALSE;
    layout.measure(window, grip);
    return TRUE;
  }

  bench::HandLayout layout;
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

template <class Relayout>
bench::Measurement by_library(const Relayout& relayout) {
  const auto dialog = opened<LibraryDialog>();
  return [=] { return measure(dialog->m_hWnd, [&] { relayout(*dialog); }); };
}

template <bench::HandLayout::Grip grip, class Relayout>
bench::Measurement by_hand(const Relayout& relayout) {
  const auto dialog = opened<HandWrittenDialog<grip>>();
  return [=] { return measure(dialog->m_hWnd, [&] { relayout(dialog->layout); }); };
}

template <class ByLibrary, class ByHand>
bench::BaselineComparison comparison(const ByLibrary& library, const ByHand& hand) {
  return {by_library(library), by_hand<bench::HandLayout::Grip::triangular>(hand),
          by_hand<bench::HandLayout::Grip::plain>(hand)};
}

bench::BaselineComparison batch_comparison() {
  return comparison([](LibraryDialog& dialog) { dialog.ArrangeLayout(); },
                    [](const bench::HandLayout& layout) { layout.arrange(); });
}

bench::BaselineComparison handler_comparison() {
  return comparison([](LibraryDialog& dialog) { dialog.size(); },
                    [](const bench::HandLayout& layout) {
                      layout.place_grip();
                      layout.arrange();
                    });
}

const bench::Registration batch({"relayout of the list's six children", 1.05, 1.05, 2.4, 1.0, batch_comparison});
const bench::Registration handler({"whole size handler, with the grip", 1.05, 1.05, 2.9, 1.0, handler_comparison});

}  // namespace
