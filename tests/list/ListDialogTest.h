#pragma once

#include <windows.h>
#include <commctrl.h>

#include <functional>
#include <string>

#include "DialogDriver.h"
#include "LookupTest.h"
#include "RegistrySandbox.h"
#include "RuleList.h"
#include "SentMessages.h"

namespace list_test {

using test_support::client_rect;
using test_support::HandledMessages;
using test_support::MessageBoxContent;
using test_support::SentMessages;
using test_support::window_rect;

/// The open rule list, as its user sees and uses it, and the dialog object behind it.
class RuleList : public test_support::RuleList {
 public:
  RuleList(HWND window, CExpirationRulesListDialog& dialog) : test_support::RuleList(window), dialog_(dialog) {}

  CExpirationRulesListDialog& dialog() const { return dialog_; }

  /// Clicks Delete and confirms.
  void delete_selected() const;
  /// Clicks Delete, which must be refused or asked about, and reads what is shown; a question is answered with No.
  MessageBoxContent refused_delete() const;

  /// Hands a message to the dialog's message map; returns whether it was handled and fails the test when the result of
  /// a handled one is not 0.
  bool handles(UINT message, WPARAM wParam, LPARAM lParam) const;
  bool handles_command(int id, WORD notification) const;
  bool handles_notification(UINT_PTR id, int code) const;

 private:
  CExpirationRulesListDialog& dialog_;
};

/// A host with an empty storage and a registry of its own.
class ListDialogTest : public LookupTest {
 protected:
  ListDialogTest();

  /// Opens the dialog, lets the user act, clicks Close unless the dialog is closed then, and returns its result.
  INT_PTR open(const std::function<void(RuleList&)>& act, HWND owner = nullptr);

  /// Stores rules of these names, numbered from 1 on.
  void store_rules(const Names& names);
  /// Stores a hundred rules instead of those that are there.
  void store_hundred_rules();

  test_support::RegistrySandbox registry;
};

/// Whether a window is the list's view, for a test that sees the messages of all windows.
bool is_list_view(HWND window);

/// Runs `press`, which opens the editor; enters a name there and presses OK.
void save_in_editor(const std::function<void()>& press, const std::wstring& name);
/// Runs `press`, which opens the editor, and cancels there. Returns the name that the editor showed.
std::wstring cancel_in_editor(const std::function<void()>& press);

}  // namespace list_test
