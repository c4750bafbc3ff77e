#include "RuleList.h"

#include <algorithm>

namespace test_support {
namespace {

constexpr std::size_t text_size = 2048;

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

RuleList::Names RuleList::names() const {
  Names names;
  for (int index = 0; index < count(); ++index) names.push_back(name(index));
  return names;
}

std::vector<LPARAM> RuleList::rule_ids() const {
  std::vector<LPARAM> ids;
  for (int index = 0; index < count(); ++index) ids.push_back(data(index));
  return ids;
}

RuleList::Rows RuleList::rows() const {
  Rows rows;
  for (int index = 0; index < count(); ++index) rows.push_back({name(index), data(index)});
  return rows;
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

void RuleList::select_rule(long rule_id) const {
  const int index = find(rule_id);
  if (index >= 0) select(index);
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

}  // namespace test_support
