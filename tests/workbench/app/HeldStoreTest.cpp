// A call of the store that takes long shows its progress in the window and can be cancelled, and nothing else happens
// meanwhile.
#include <thread>
#include <utility>

#include "ComPtr.h"
#include "HostStorage.h"
#include "MessagePump.h"
#include "ProgressDialog.h"
#include "ScheduleTest.h"
#include "TemporaryFolder.h"
#include "Texts.h"
#include "WaitBox.h"
#include "WindowText.h"
#include "WithinSeconds.h"

namespace workbench {
namespace {

using test_support::click;
using test_support::DialogDriver;

/// A store that is held by another program until the user cancels the progress that is shown for it.
class HeldStore final : public MemoryRuleStore {
 public:
  bool is_held = false;
  int cancelled = 0;
  std::function<bool()> may_cancel = [] { return true; };  ///< whether the user cancels now

  void set_progress(const schedule::Progress& progress) override { progress_ = progress; }
  std::vector<StoredRule> load_rules() override {
    wait();
    return MemoryRuleStore::load_rules();
  }
  StoredRule update_rule(long number, const Rule& rule, std::optional<Revision> expected) override {
    wait();
    return MemoryRuleStore::update_rule(number, rule, expected);
  }
  StoredSetting update_setting(long number, const SymbolSourceSetting& setting,
                               std::optional<Revision> expected) override {
    wait();
    return MemoryRuleStore::update_setting(number, setting, expected);
  }
  void replace_calendars(const std::vector<StoredCalendar>& calendars) override {
    wait();
    MemoryRuleStore::replace_calendars(calendars);
  }

 private:
  void wait() {
    if (!is_held) return;
    EXPECT_FALSE(waiting_) << "nothing else happens meanwhile";
    waiting_ = true;
    const ULONGLONG end = GetTickCount64() + 20'000;
    try {
      while (GetTickCount64() < end) {
        schedule::advance(progress_, 1, 4);
        HWND box = shown_wait_box();
        if (box && may_cancel()) PostMessageW(box, WM_COMMAND, IDCANCEL, 0);
        Sleep(60);
      }
    } catch (const schedule::Cancelled&) {
      ++cancelled;
      waiting_ = false;
      throw;
    }
    ADD_FAILURE() << "no progress was shown";
  }

  schedule::Progress progress_;
  bool waiting_ = false;
};

class HeldStoreTest : public ScheduleTest {
 protected:
  HeldStoreTest() {
    held_->replace_content(content());
    store_ = held_;
    chosen_file_ = folder_.path() / L"file.csv";
  }
  ~HeldStoreTest() override { WaitBox::delay_ms = usual_delay_; }

  /// Runs `work` while the store is held. Returns how often the user cancelled.
  int cancel_while_held(const std::function<void()>& work) {
    held_->cancelled = 0;
    held_->is_held = true;
    WaitBox::delay_ms = 0;
    work();
    WaitBox::delay_ms = usual_delay_;
    held_->is_held = false;
    return held_->cancelled;
  }

  const ULONGLONG usual_delay_ = WaitBox::delay_ms;
  test_support::TemporaryFolder folder_;
  std::shared_ptr<HeldStore> held_ = std::make_shared<HeldStore>();
};

TEST_F(HeldStoreTest, RefreshKeepsThePanes) {
  start_at_2026();
  // What is in the queue waits: the store is in the middle of a call.
  PostMessageW(window(), WM_COMMAND, IDM_REFRESH, 0);
  EXPECT_EQ(cancel_while_held([&] { press(IDM_REFRESH); }), 1);
  EXPECT_EQ(message(), text(IDS_CANCELLED));
  EXPECT_EQ(ListView_GetItemCount(rules()), 2);
  EXPECT_TRUE(IsWindowEnabled(window()));
  test_support::pump_messages();
  EXPECT_EQ(message(), text(IDS_REFRESHED));
}

TEST_F(HeldStoreTest, WhatAnotherThreadSendsWaitsForTheEndOfTheCall) {
  start_at_2026();
  std::jthread sender;
  ULONGLONG sent = 0;
  held_->may_cancel = [&] {
    if (sent == 0) {
      sent = GetTickCount64();
      sender = std::jthread([window = window()] { SendMessageW(window, WM_COMMAND, IDM_REFRESH, 0); });
    }
    return GetTickCount64() - sent >= 500;
  };
  EXPECT_EQ(cancel_while_held([&] { press(IDM_REFRESH); }), 1);
  EXPECT_EQ(message(), text(IDS_CANCELLED));
  EXPECT_TRUE(test_support::within_seconds(10, [&] {
    test_support::pump_messages();
    return message() == text(IDS_REFRESHED);
  }));
}

TEST_F(HeldStoreTest, CancelledSaveOfASettingKeepsWhatWasEntered) {
  start_at_2026();
  std::wstring said;
  const DialogDriver user(DialogDriver::When::shown, [&](HWND dialog, int visit) {
    if (!GetDlgItem(dialog, IDC_SETTING_NAME)) {
      said = test_support::read_message_box(dialog).text;
      test_support::close_message_box(dialog);
    } else if (visit == 1) {
      SetDlgItemTextW(dialog, IDC_SETTING_NAME, L"changed");
      EXPECT_EQ(cancel_while_held([&] { click(dialog, IDOK); }), 1);
    } else {
      EXPECT_EQ(base::window_text(GetDlgItem(dialog, IDC_SETTING_NAME)), L"changed");
      EXPECT_FALSE(IsWindowEnabled(window())) << "the dialog is still open";
      click(dialog, IDCANCEL);
    }
  });
  press(IDM_EDIT_SETTING);
  EXPECT_EQ(said, text(IDS_CANCELLED));
  EXPECT_EQ(store_->load_settings().front().setting.name, L"IF");
}

TEST_F(HeldStoreTest, CancelledImportOfACalendarChangesNothing) {
  start_at_2026();
  ASSERT_TRUE(try_write_file(*chosen_file_, "# name: sample\n# from: 2025-01-01\n# to: 2026-12-31\ndate\n"));
  test_support::with_dialog([&] { press(IDM_IMPORT_CALENDAR); },
                            [&](HWND dialog) {
                              WaitBox::delay_ms = 0;
                              held_->is_held = true;
                              click(dialog, IDOK);
                            });
  WaitBox::delay_ms = usual_delay_;
  EXPECT_EQ(held_->cancelled, 1);
  EXPECT_EQ(message(), text(IDS_CANCELLED));
  EXPECT_EQ(store_->load_calendars().front().calendar.closed.size(), 1u);
}

TEST_F(HeldStoreTest, UserGivesUpACallOfThePluginAndReadsWhatWasNotSaved) {
  start_at_2026();
  base::ComPtr<IkvExpirationRuleService> service;
  service.CreateInstance(__uuidof(kvStorage), nullptr, CLSCTX_INPROC_SERVER);
  HRESULT result = S_OK;
  EXPECT_EQ(
      cancel_while_held([&] { result = service->update_rule(1, _bstr_t(L"entered"), 0, 0, 0, 1, 1, 1, 1, 1, 0); }), 1);
  EXPECT_EQ(result, E_ABORT);
  EXPECT_FALSE(shown_wait_box());
  const std::wstring said = text_of_next_box();
  EXPECT_NE(said.find(text(IDS_STORE_CANCELLED)), std::wstring::npos);
  EXPECT_NE(said.find(L"entered"), std::wstring::npos);
  EXPECT_EQ(store_->load_rules().front().rule.name, L"CSI 300");
}

TEST_F(HeldStoreTest, OwnerThatTookNoInputBeforeTakesNoneAfterwards) {
  start_at_2026();
  const ULONGLONG usual_delay = std::exchange(ProgressDialog::delay_ms, 0);
  EnableWindow(window(), FALSE);
  {
    ProgressDialog progress(window());
    progress.go_on(0, 1);
    EXPECT_NE(GetLastActivePopup(window()), window());
  }
  ProgressDialog::delay_ms = usual_delay;
  EXPECT_FALSE(IsWindowEnabled(window())) << "a dialog of the plug-in may be open";
}

}  // namespace
}  // namespace workbench
