#include "ListDialogTest.h"

#include <algorithm>

namespace list_test {
namespace {

constexpr std::size_t text_size = 1024;

LVITEMW item_at(int index, UINT mask) {
  LVITEMW item = {};
  item.mask = mask;
  item.iItem = index;
  return item;
}

}  // namespace

bool RuleList::can_change() const {
  EXPECT_EQ(enabled(IDC_EDIT_RULE), enabled(IDC_DELETE_RULE));
  return enabled(IDC_EDIT_RULE);
}

std::wstring RuleList::name(int index) const {
  std::wstring text(text_size, L'\0');
  LVITEMW item = item_at(index, LVIF_TEXT);
  item.pszText = text.data();
  item.cchTextMax = static_cast<int>(text.size());
  EXPECT_TRUE(send(LVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item)));
  return item.pszText;
}

LPARAM RuleList::data(int index) const {
  LVITEMW item = item_at(index, LVIF_PARAM);
  EXPECT_TRUE(send(LVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item)));
  return item.lParam;
}

void RuleList::set_data(int index, LPARAM data) const {
  LVITEMW item = item_at(index, LVIF_PARAM);
  item.lParam = data;
  EXPECT_TRUE(send(LVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item)));
}

Names RuleList::names() const {
  Names names;
  for (int index = 0; index < count(); ++index) names.push_back(name(index));
  return names;
}

std::vector<LPARAM> RuleList::rule_ids() const {
  std::vector<LPARAM> ids;
  for (int index = 0; index < count(); ++index) ids.push_back(data(index));
  return ids;
}

int RuleList::find(LPARAM rule_id) const {
  const std::vector<LPARAM> ids = rule_ids();
  const auto found = std::find(ids.begin(), ids.end(), rule_id);
  return found != ids.end() ? static_cast<int>(found - ids.begin()) : -1;
}

RECT RuleList::bounds(int index) const {
  RECT bounds = {};
  bounds.left = LVIR_BOUNDS;
  EXPECT_TRUE(send(LVM_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&bounds)));
  return bounds;
}

void RuleList::select(int index) const {
  LVITEMW item = {};
  item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
  item.state = index >= 0 ? item.stateMask : 0;
  const int changed = index >= 0 ? index : selected();
  if (changed >= 0) send(LVM_SETITEMSTATE, static_cast<WPARAM>(changed), reinterpret_cast<LPARAM>(&item));
}

void RuleList::double_click(int index) const {
  NMITEMACTIVATE notification = {};
  notification.hdr = {view(), IDC_RULES_LIST, static_cast<UINT>(NM_DBLCLK)};
  notification.iItem = index;
  SendMessageW(window_, WM_NOTIFY, IDC_RULES_LIST, reinterpret_cast<LPARAM>(&notification));
}

void RuleList::key_down(WORD virtual_key) const {
  NMLVKEYDOWN notification = {};
  notification.hdr = {view(), IDC_RULES_LIST, static_cast<UINT>(LVN_KEYDOWN)};
  notification.wVKey = virtual_key;
  SendMessageW(window_, WM_NOTIFY, IDC_RULES_LIST, reinterpret_cast<LPARAM>(&notification));
}

void RuleList::delete_selected() const {
  test_support::with_dialog([this] { press(IDC_DELETE_RULE); },
                            [](HWND question) { SendDlgItemMessageW(question, IDYES, BM_CLICK, 0, 0); });
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
  const bool handled = dialog_.ProcessWindowMessage(window_, message, wParam, lParam, result) != FALSE;
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
  const base::ComPtr<IDispatch> object = host.storage();
  block.storage = base::query<IkvStorage>(object);
  block.symbol_sources = base::query<IkvSymbolSourceService>(object);
  block.rules = base::query<IkvExpirationRuleService>(object);
}

ListDialogTest::~ListDialogTest() {
  block = {};
  EXPECT_THAT(host.living(), testing::IsEmpty());
}

INT_PTR ListDialogTest::open(const std::function<void(RuleList&)>& act, HWND owner) {
  CExpirationRulesListDialog dialog(&block);
  INT_PTR result = -1;
  test_support::with_dialog([&] { result = dialog.DoModal(owner); },
                            [&](HWND window) {
                              RuleList list(window, dialog);
                              act(list);
                              if (IsWindowVisible(window)) list.press(IDCANCEL);
                            });
  EXPECT_EQ(nullptr, dialog.m_hWnd);
  return result;
}

void ListDialogTest::store_rules(const Names& names) {
  for (const std::wstring& name : names) host.rules().push_back({static_cast<long>(host.rules().size()) + 1, name});
}

void save_in_editor(const std::function<void()>& press, const std::wstring& name) {
  test_support::with_dialog(press, [&](HWND editor) {
    SetDlgItemTextW(editor, IDC_NAME, name.c_str());
    SendDlgItemMessageW(editor, IDOK, BM_CLICK, 0, 0);
  });
}

std::wstring cancel_in_editor(const std::function<void()>& press) {
  std::wstring name;
  test_support::with_dialog(press, [&](HWND editor) {
    name = test_support::window_text(GetDlgItem(editor, IDC_NAME));
    SendDlgItemMessageW(editor, IDCANCEL, BM_CLICK, 0, 0);
  });
  return name;
}

}  // namespace list_test
