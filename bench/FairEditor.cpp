#include "FairEditor.h"

#include <commctrl.h>

#include <string>

#include "ModulePath.h"

namespace bench {

namespace {

constexpr int days_in_month = 31;
constexpr int days_in_week = 7;

}  // namespace

BOOL FairEditor::ProcessWindowMessage(HWND, UINT message, WPARAM, LPARAM, LRESULT& result, DWORD) {
  if (message != WM_INITDIALOG) return FALSE;
  initialise();
  result = FALSE;
  return TRUE;
}

void FairEditor::initialise() {
  SetWindowTextW(m_hWnd, rule_.RuleName);
  send(IDC_NAME, EM_LIMITTEXT, 255);
  SetWindowTextW(GetItem(IDC_NAME), rule_.RuleName);
  send(IDC_OFFSET, EM_LIMITTEXT, 2);
  send(IDC_OFFSET_SPIN, UDM_SETRANGE, 0, MAKELPARAM(99, 0));
  send(IDC_OFFSET_SPIN, UDM_SETPOS, 0, rule_.RollOffset);
  const bool by_day = rule_.DayMode == DAYMODE_DAY_OF_MONTH;
  send(IDC_DAY_OF_MONTH_MODE, BM_SETCHECK, by_day ? BST_CHECKED : BST_UNCHECKED);
  send(IDC_WEEKDAY_MODE, BM_SETCHECK, by_day ? BST_UNCHECKED : BST_CHECKED);
  enable_mode();
  fill_combos();
  send(IDC_MOVE_TO_NEXT_TRADING_DAY, BM_SETCHECK, rule_.MoveToNextTradingDay == 1 ? BST_CHECKED : BST_UNCHECKED);
  describe();
}

void FairEditor::add(int combo, int string, long value) const {
  wchar_t text[64] = {};
  LoadStringW(base::module_instance(), static_cast<UINT>(string), text, ARRAYSIZE(text));
  const auto item = static_cast<WPARAM>(send(combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text)));
  send(combo, CB_SETITEMDATA, item, value);
}

void FairEditor::select(int combo, long value) const {
  const LRESULT count = send(combo, CB_GETCOUNT);
  for (LRESULT item = 0; item < count; ++item) {
    if (send(combo, CB_GETITEMDATA, static_cast<WPARAM>(item)) != value) continue;
    send(combo, CB_SETCURSEL, static_cast<WPARAM>(item));
    return;
  }
}

void FairEditor::fill_combos() const {
  for (const long unit : {DAYTYPE_TRADING_DAYS, DAYTYPE_CALENDAR_DAYS})
    add(IDC_DAY_TYPE, IDS_TRADING_DAYS + unit, unit);
  for (int day = 1; day <= days_in_month; ++day) add(IDC_DAY_OF_MONTH, IDS_FIRST_DAY + day - 1, day);
  for (const int months : {IDC_DAY_MONTH, IDC_WEEKDAY_MONTH}) {
    for (const long month : {MONTH_PREVIOUS, MONTH_CURRENT, MONTH_NEXT}) add(months, IDS_PREVIOUS_MONTH + month, month);
  }
  for (int ordinal = 1; ordinal < last_week_ordinal; ++ordinal)
    add(IDC_WEEK_ORDINAL, IDS_FIRST_DAY + ordinal - 1, ordinal);
  add(IDC_WEEK_ORDINAL, IDS_LAST_OCCURRENCE, last_week_ordinal);
  for (int day = 0; day < days_in_week; ++day) add(IDC_WEEKDAY, IDS_SUNDAY + day, day);
  select(IDC_DAY_TYPE, rule_.DayType);
  select(IDC_DAY_OF_MONTH, rule_.DayOfMonth);
  select(IDC_DAY_MONTH, rule_.DayMonth);
  select(IDC_WEEK_ORDINAL, rule_.WeekOrdinal);
  select(IDC_WEEKDAY, rule_.Weekday);
  select(IDC_WEEKDAY_MONTH, rule_.WeekdayMonth);
}

void FairEditor::enable_mode() const {
  const bool by_day = rule_.DayMode == DAYMODE_DAY_OF_MONTH;
  for (const int id : {IDC_DAY_OF_MONTH, IDC_DAY_SUFFIX, IDC_DAY_MONTH}) {
    if (!by_day) EnableWindow(GetItem(id), FALSE);
  }
  for (const int id : {IDC_WEEK_ORDINAL, IDC_WEEKDAY, IDC_WEEKDAY_SUFFIX, IDC_WEEKDAY_MONTH}) {
    if (by_day) EnableWindow(GetItem(id), FALSE);
  }
}

// The sentence is put together from what the controls show.
void FairEditor::describe() {
  LOGFONTW logical = {};
  GetObjectW(reinterpret_cast<HFONT>(send(IDC_DESCRIPTION, WM_GETFONT)), sizeof logical, &logical);
  logical.lfWeight = FW_BOLD;
  bold_font_.reset(CreateFontIndirectW(&logical));
  send(IDC_DESCRIPTION, WM_SETFONT, reinterpret_cast<WPARAM>(bold_font_.get()), TRUE);
  std::wstring sentence;
  for (const int id :
       {IDC_OFFSET_LABEL, IDC_OFFSET, IDC_DAY_TYPE, IDC_OFFSET_SUFFIX, IDC_DAY_LABEL, IDC_DAY_OF_MONTH, IDC_DAY_SUFFIX,
        IDC_DAY_MONTH, IDC_WEEK_ORDINAL, IDC_WEEKDAY, IDC_WEEKDAY_SUFFIX, IDC_WEEKDAY_MONTH}) {
    wchar_t text[64] = {};
    GetWindowTextW(GetItem(id), text, ARRAYSIZE(text));
    sentence += text;
  }
  SetWindowTextW(GetItem(IDC_DESCRIPTION), sentence.c_str());
}

}  // namespace bench
