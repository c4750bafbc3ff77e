#include "ListDialogTest.h"

namespace list_test {
void RuleList::delete_selected() const {
  test_support::with_message_box([this] { press(IDC_DELETE_RULE); }, IDYES);
}

MessageBoxContent RuleList::refused_delete() const {
  MessageBoxContent content;
  test_support::with_dialog([this] { press(IDC_DELETE_RULE); },
                            [&](HWND box) {
                              content = test_support::read_message_box(box);
                              EndDialog(box, IDNO);
                            });
  return content;
}

bool RuleList::handles(UINT message, WPARAM wParam, LPARAM lParam) const {
  LRESULT result = -1;
  const bool handled = dialog_.ProcessWindowMessage(window(), message, wParam, lParam, result) != FALSE;
  EXPECT_EQ(0, handled ? result : 0);
  return handled;
}

bool RuleList::handles_command(int id, WORD notification) const {
  return handles(WM_COMMAND, MAKEWPARAM(id, notification), reinterpret_cast<LPARAM>(item(id)));
}

bool RuleList::handles_notification(UINT_PTR id, int code) const {
  NMITEMACTIVATE notification = {};
  notification.hdr = {view(), id, static_cast<UINT>(code)};
  notification.iItem = -1;
  return handles(WM_NOTIFY, id, reinterpret_cast<LPARAM>(&notification));
}

ListDialogTest::ListDialogTest() {
  const INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_LISTVIEW_CLASSES};
  InitCommonControlsEx(&controls);
}

INT_PTR ListDialogTest::open(const std::function<void(RuleList&)>& act, HWND owner) {
  CExpirationRulesListDialog opened(&block);
  INT_PTR result = -1;
  test_support::with_dialog([&] { result = opened.DoModal(owner); },
                            [&](HWND window) {
                              RuleList list(window, opened);
                              act(list);
                              if (IsWindowVisible(window)) list.press(IDCANCEL);
                            });
  EXPECT_EQ(nullptr, opened.m_hWnd);
  return result;
}

void ListDialogTest::store_rules(const Names& names) {
  for (const std::wstring& name : names) host.rules().push_back({static_cast<long>(host.rules().size()) + 1, name});
}

void ListDialogTest::store_hundred_rules() {
  host.rules().clear();
  for (int index = 0; index < 100; ++index) store_rules({L"rule " + std::to_wstring(100 + index)});
}

bool is_list_view(HWND window) { return GetDlgCtrlID(window) == IDC_RULES_LIST; }

void save_in_editor(const std::function<void()>& press, const std::wstring& name) {
  test_support::with_dialog(press, [&](HWND editor) {
    SetDlgItemTextW(editor, IDC_NAME, name.c_str());
    test_support::click(editor, IDOK);
  });
}

std::wstring cancel_in_editor(const std::function<void()>& press) {
  std::wstring name;
  test_support::with_dialog(press, [&](HWND editor) {
    name = test_support::item_text(editor, IDC_NAME);
    test_support::click(editor, IDCANCEL);
  });
  return name;
}

}  // namespace list_test
