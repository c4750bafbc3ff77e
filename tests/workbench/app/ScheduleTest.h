#pragma once

#include "ApplicationTest.h"
#include "DialogControls.h"
#include "Files.h"
#include "MessagePump.h"
#include "WindowText.h"

namespace workbench {

inline constexpr int schedule_flags_column = 5;

/// The program over a store with a rule, two settings that use it and a calendar; the schedule begins with 2026.
class ScheduleTest : public ApplicationTest {
 protected:
  ScheduleTest() { store_->replace_content(content()); }

  static StoreContent content() {
    using namespace std::chrono;
    return {
        .rules = {{.name = L"CSI 300", .day_mode = 1, .week_ordinal = 3, .weekday = 5, .move_to_next_trading_day = 1},
                  {.name = L"unused", .day_of_month = 15}},
        .settings = {{.name = L"IF", .rule_name = L"CSI 300", .calendar = L"sample"},
                     {.name = L"IH", .rule_name = L"CSI 300", .calendar = L"sample", .months = L"HMUZ"}},
        .calendars = {{.calendar = {.name = "sample",
                                    .from = sys_days{2025y / 1 / 1},
                                    .to = sys_days{2026y / 12 / 31},
                                    .closed = {{sys_days{2026y / 2 / 20}, "春节"}}}}}};
  }

  FileDialogs files() {
    return {.ask_to_open = [this](HWND, const FileKind&) { return chosen_file_; },
            .ask_to_save = [this](HWND, const FileKind&) { return chosen_file_; }};
  }

  void start_at_2026() {
    application_.emplace(OpenedStore{store_, L"C:\\rules.db"}, files());
    ShowWindow(window(), SW_SHOW);
    SetFocus(settings());
    choose_first_month(L"2026-01");
  }

  HWND pane() const { return GetDlgItem(window(), IDC_SCHEDULE_PANE); }
  HWND part(int id) const { return GetDlgItem(pane(), id); }
  HWND list() const { return part(IDC_SCHEDULE); }
  std::wstring notice() const { return base::window_text(part(IDC_NOTICE)); }

  void choose_first_month(const wchar_t* month) {
    SetWindowTextW(part(IDC_FIRST_MONTH), month);
    SendMessageW(pane(), WM_COMMAND, MAKEWPARAM(IDC_FIRST_MONTH, CBN_EDITCHANGE), 0);
  }
  void choose(int combo, int item) {
    choose_item(part(combo), item);
    SendMessageW(pane(), WM_COMMAND, MAKEWPARAM(combo, CBN_SELCHANGE), 0);
  }
  void focus(HWND list, int row) {
    SetFocus(list);
    ListView_SetItemState(list, row, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
  }

  void change_offset(long offset) {
    StoredRule stored = store_->load_rules().front();
    stored.rule.roll_offset = offset;
    store_->update_rule(stored.number, stored.rule, stored.revision);
    test_support::pump_messages();
  }

  std::optional<std::filesystem::path> chosen_file_;
};

}  // namespace workbench
