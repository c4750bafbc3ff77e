#pragma once

#include <windows.h>
#include <commctrl.h>
#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <vector>

#include "Controls.h"
#include "DialogDriver.h"
#include "ExpirationRulesListDialog.h"
#include "FakeHost.h"
#include "Input.h"
#include "ModalDialog.h"
#include "Recorder.h"
#include "RegistrySandbox.h"
#include "Reports.h"
#include "SentMessages.h"
#include "resource.h"

namespace list_test {

using test_support::AnsweredMessages;
using test_support::Fault;
using test_support::HostRule;
using test_support::HostSetting;
using test_support::MessageBoxContent;
using test_support::SentMessages;
using zd_expiration_rule_plugin::CExpirationRulesListDialog;

using Names = std::vector<std::wstring>;

/// The rule list on the screen, as its user sees and uses it.
class RuleList {
 public:
  RuleList(HWND window, CExpirationRulesListDialog& dialog) : window_(window), dialog_(dialog) {}

  HWND window() const { return window_; }
  CExpirationRulesListDialog& dialog() const { return dialog_; }
  HWND item(int id) const { return GetDlgItem(window_, id); }
  HWND view() const { return item(IDC_RULES_LIST); }
  bool enabled(int id) const { return IsWindowEnabled(item(id)) != FALSE; }
  /// Whether Edit and Delete are enabled; fails the test when they differ.
  bool can_change() const;

  int count() const { return static_cast<int>(send(LVM_GETITEMCOUNT)); }
  std::wstring name(int index) const;
  /// The item's data as the dialog keeps it.
  LPARAM data(int index) const;
  /// Gives an item other data, as only this test does.
  void set_data(int index, LPARAM data) const;
  Names names() const;
  std::vector<LPARAM> rule_ids() const;
  int find(LPARAM rule_id) const;
  /// The selected index, -1 for none.
  int selected() const { return static_cast<int>(send(LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED)); }
  UINT state(int index) const { return static_cast<UINT>(send(LVM_GETITEMSTATE, static_cast<WPARAM>(index), ~0U)); }
  RECT bounds(int index) const;
  int column_width() const { return static_cast<int>(send(LVM_GETCOLUMNWIDTH, 0)); }

  /// Selects an item as a click on it does; -1 takes the selection away.
  void select(int index) const;
  /// Presses a button as a click does.
  void press(int id) const { SendMessageW(item(id), BM_CLICK, 0, 0); }
  /// Tells the dialog of a double click on an item; -1 is empty space.
  void double_click(int index) const;
  /// Tells the dialog of a key that was pressed in the list.
  void key_down(WORD virtual_key) const;
  /// Presses Delete and answers Yes.
  void delete_selected() const;
  /// Presses Delete, which must be refused or asked about, and reads what is shown; a question is answered with No.
  MessageBoxContent refused_delete() const;

  /// Hands a message to the dialog's message map; answers whether it was handled and fails the test when the result of
  /// a handled one is not 0.
  bool handles(UINT message, WPARAM wParam, LPARAM lParam) const;
  bool handles_command(int id, WORD notification) const;
  bool handles_notification(UINT_PTR id, int code) const;

  LRESULT send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return SendMessageW(view(), message, wParam, lParam);
  }

 private:
  HWND window_;
  CExpirationRulesListDialog& dialog_;
};

/// A host with an empty storage and a registry of its own.
class ListDialogTest : public testing::Test {
 protected:
  ListDialogTest();
  ~ListDialogTest() override;

  /// Opens the dialog, lets the user act, presses Close unless the dialog is closed then, and answers its result.
  INT_PTR open(const std::function<void(RuleList&)>& act, HWND owner = nullptr);

  /// Stores rules of these names, numbered from 1 on.
  void store_rules(const Names& names);

  const std::vector<std::string>& calls() { return host.calls().all(); }
  std::vector<std::string> reports() const { return test_support::reports(recorder); }

  test_support::Recorder recorder;
  test_support::RegistrySandbox registry;
  test_support::FakeHost host;
  StorageBlock block;
};

/// Runs `press`, which opens the editor; enters a name there and presses OK.
void save_in_editor(const std::function<void()>& press, const std::wstring& name);
/// Runs `press`, which opens the editor, and cancels there. Answers the name that the editor showed.
std::wstring cancel_in_editor(const std::function<void()>& press);

}  // namespace list_test
