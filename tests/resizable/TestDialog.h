#pragma once

#include <windows.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <vector>

#include "ResizableDialog.h"
#include "ScratchRoot.h"
#include "TestDialogs.h"
#include "TestWindows.h"

namespace resizable_test {

/// A resizable dialog from a template of this program. What the base leaves unhandled reaches `on_message`.
template <int id>
class TestDialog : public CResizableDialogImpl<TestDialog<id>> {
  using Base = CResizableDialogImpl<TestDialog<id>>;

 public:
  static constexpr int IDD = id;
  using Base::Anchored;
  using Base::m_bRectOnly;
  using Base::m_bSavePlacement;

  BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result,
                            DWORD mapId = 0) override {
    if (message == WM_INITDIALOG && before_initialisation) before_initialisation();
    if (Base::ProcessWindowMessage(window, message, wParam, lParam, result, mapId)) return TRUE;
    seen.push_back(message);
    return on_message ? on_message(message, wParam, lParam, result) : FALSE;
  }

  bool has_seen(UINT message) const { return std::find(seen.begin(), seen.end(), message) != seen.end(); }

  /// Restores the placement as the dialog class does at the end of its initialisation.
  BOOL restore() {
    m_bSavePlacement = TRUE;
    return this->RestorePlacement(HKEY_CURRENT_USER, L"SOFTWARE\\A B\\C", L"Windows Placement", L"TestDialog", FALSE);
  }

  HWND item(int item_id) const { return this->GetItem(item_id); }
  HWND grip() { return this->SizeGrip().m_hWnd; }

  std::function<void()> before_initialisation;  ///< runs when the children are there and nothing else is
  std::function<BOOL(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result)> on_message;
  std::vector<UINT> seen;  ///< the messages that the base left unhandled, in order
};

/// One resizable dialog, modeless until a test says otherwise, with a registry of its own.
template <int id>
class DialogFixture : public testing::Test {
 protected:
  ~DialogFixture() override { destroy(); }

  void open(HWND owner = nullptr) { ASSERT_NE(dialog.Create(owner), nullptr); }

  /// Opens the dialog with an initialisation of its own.
  void open_with(const std::function<void()>& initialise) {
    dialog.on_message = [initialise](UINT message, WPARAM, LPARAM, LRESULT&) {
      if (message != WM_INITDIALOG) return FALSE;
      initialise();
      return TRUE;
    };
    open();
  }

  void destroy() {
    if (IsWindow(dialog.m_hWnd)) DestroyWindow(dialog.m_hWnd);
  }

  LRESULT send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    return SendMessageW(dialog.m_hWnd, message, wParam, lParam);
  }

  /// Whether the base handles a message; the result goes to `result`.
  BOOL handles(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    dialog.seen.clear();
    dialog.ProcessWindowMessage(dialog.m_hWnd, message, wParam, lParam, result);
    return !dialog.has_seen(message);
  }

  RECT rect() const { return dialog.GetWindowRect(); }
  CSize size() const { return resizable::size_of(rect()); }

  test_support::ScratchRoot registry{HKEY_CURRENT_USER};
  TestDialog<id> dialog;
  LRESULT result = 0;
};

}  // namespace resizable_test
