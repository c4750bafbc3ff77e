#include "DialogDriver.h"
#include "IgnoredLocations.h"
#include "LibraryTest.h"
#include "SnagtrapResource.h"
#include "WindowText.h"

namespace snagtrap_test {
namespace {

using test_support::click;
using test_support::DialogDriver;
using test_support::item_text;
using test_support::press_key;
using test_support::press_mnemonic;
using testing::HasSubstr;

/// Dialogs are shown, and each test closes them from inside the dialog's message loop.
class Interactive : public LibraryTest {
 protected:
  Interactive() { set_setting(L"Interactive", 1); }

  HRESULT process_with_user(const wchar_t* kind, const DialogDriver::Action& action) {
    const DialogDriver driver(action);
    const HRESULT result = process(kind);
    dialogs = driver.dialogs();
    return result;
  }

  std::string logged_answer() const {
    nlohmann::json line = folder.lines().back();
    return line["command"] == "ANSWER" ? line["answer"].get<std::string>() : "none";
  }

  int dialogs = 0;
};

TEST_F(Interactive, DebugReturnsOne) {
  EXPECT_EQ(process_with_user(L"ASSERT", [](HWND dialog) { click(dialog, IDC_DEBUG); }), 1);
  EXPECT_EQ(logged_answer(), "debug");
}

TEST_F(Interactive, AbortReturnsEAbort) {
  EXPECT_EQ(process_with_user(L"ASSERT", [](HWND dialog) { click(dialog, IDC_ABORT); }), E_ABORT);
  EXPECT_EQ(logged_answer(), "abort");
}

TEST_F(Interactive, IgnoreReturnsOk) {
  EXPECT_EQ(process_with_user(L"ASSERT", [](HWND dialog) { click(dialog, IDCANCEL); }), S_OK);
  EXPECT_EQ(logged_answer(), "ignore");
}

TEST_F(Interactive, EscapeEnterAndTheCloseBoxIgnore) {
  const DialogDriver::Action ways[] = {
      [](HWND dialog) { press_key(dialog, VK_ESCAPE); },
      [](HWND dialog) { press_key(dialog, VK_RETURN); },
      [](HWND dialog) { PostMessageW(dialog, WM_SYSCOMMAND, SC_CLOSE, 0); },
  };
  for (const auto& way : ways) {
    EXPECT_EQ(process_with_user(L"ASSERT", way), S_OK);
    EXPECT_EQ(logged_answer(), "ignore");
  }
}

TEST_F(Interactive, MnemonicsPressTheirButtons) {
  EXPECT_EQ(process_with_user(L"ASSERT", [](HWND dialog) { press_mnemonic(dialog, L'd'); }), 1);
  EXPECT_EQ(process_with_user(L"ASSERT", [](HWND dialog) { press_mnemonic(dialog, L'a'); }), E_ABORT);
  EXPECT_EQ(process_with_user(L"ASSERT", [](HWND dialog) { press_mnemonic(dialog, L'i'); }), S_OK);
}

TEST_F(Interactive, ErrorsOfferTheSameChoices) {
  for (const wchar_t* kind : {L"CREATE ERROR", L"ERROR"}) {
    EXPECT_EQ(process_with_user(kind, [](HWND dialog) { click(dialog, IDC_DEBUG); }), 1);
    EXPECT_EQ(process_with_user(kind, [](HWND dialog) { click(dialog, IDC_ABORT); }), E_ABORT);
    EXPECT_EQ(process_with_user(kind, [](HWND dialog) { click(dialog, IDCANCEL); }), S_OK);
  }
}

TEST_F(Interactive, TracesAndUnknownKindsShowNothing) {
  const auto end = [](HWND dialog) { click(dialog, IDCANCEL); };
  EXPECT_EQ(process_with_user(L"TRACE", end), S_OK);
  EXPECT_EQ(dialogs, 0);
  EXPECT_EQ(process_with_user(L"SOMETHING ELSE", end), S_OK);
  EXPECT_EQ(dialogs, 0);
}

TEST_F(Interactive, AlwaysIgnoreHidesLaterReportsOfTheLocation) {
  process_with_user(L"ASSERT", [](HWND dialog) {
    CheckDlgButton(dialog, IDC_ALWAYS_IGNORE, BST_CHECKED);
    click(dialog, IDCANCEL);
  });
  EXPECT_EQ(logged_answer(), "always ignore");
  EXPECT_TRUE(snagtrap::is_ignored({L"Some.cpp", 70}));
  EXPECT_EQ(process_with_user(L"ASSERT", [](HWND dialog) { click(dialog, IDC_DEBUG); }), S_OK);
  EXPECT_EQ(dialogs, 0);
}

TEST_F(Interactive, AlwaysIgnoreNeedsTheIgnoreButton) {
  process_with_user(L"ASSERT", [](HWND dialog) {
    CheckDlgButton(dialog, IDC_ALWAYS_IGNORE, BST_CHECKED);
    click(dialog, IDC_DEBUG);
  });
  EXPECT_FALSE(snagtrap::is_ignored({L"Some.cpp", 70}));
}

TEST_F(Interactive, AlwaysIgnoreIsNotOfferedWithoutALocation) {
  const DebugObjectPtr record = create();
  set_text(*record, L"$Type", L"ASSERT");
  BOOL offered = TRUE;
  const DialogDriver driver([&](HWND dialog) {
    offered = IsWindowEnabled(GetDlgItem(dialog, IDC_ALWAYS_IGNORE));
    click(dialog, IDCANCEL);
  });
  command(L"PROCESS", record);
  EXPECT_FALSE(offered);
  EXPECT_EQ(driver.dialogs(), 1);
}

TEST_F(Interactive, ReportIsLoggedBeforeTheUserAnswers) {
  std::size_t lines = 0;
  process_with_user(L"ASSERT", [&](HWND dialog) {
    lines = folder.lines().size();
    click(dialog, IDCANCEL);
  });
  EXPECT_EQ(lines, 1u);
}

TEST_F(Interactive, DialogSaysWhatFailedAndWhere) {
  std::wstring caption;
  std::wstring headline;
  std::wstring details;
  process_with_user(L"ASSERT", [&](HWND dialog) {
    caption = base::window_text(dialog);
    headline = item_text(dialog, IDC_HEADLINE);
    details = item_text(dialog, IDC_DETAILS);
    click(dialog, IDCANCEL);
  });
  EXPECT_EQ(caption, L"Assertion failed");
  EXPECT_EQ(headline, L"pMainMenu != 0");
  EXPECT_THAT(details, HasSubstr(L"File: Some.cpp\r\nLine: 70\r\n"));
}

TEST_F(Interactive, DialogWithoutDescriptionShowsTheFailedCall) {
  const DebugObjectPtr record = create();
  set_text(*record, L"$Type", L"ASSERT");
  set_number(*record, L"HRESULT", E_OUTOFMEMORY, VT_I4);
  std::wstring headline;
  const DialogDriver driver([&](HWND dialog) {
    headline = item_text(dialog, IDC_HEADLINE);
    click(dialog, IDCANCEL);
  });
  command(L"PROCESS", record);
  EXPECT_THAT(headline, HasSubstr(L"0x8007000e"));
}

TEST_F(Interactive, IgnoreIsTheDefaultAndHasTheFocus) {
  int default_id = 0;
  HWND focus = nullptr;
  HWND ignore = nullptr;
  process_with_user(L"ASSERT", [&](HWND dialog) {
    default_id = LOWORD(SendMessageW(dialog, DM_GETDEFID, 0, 0));
    focus = GetFocus();
    ignore = GetDlgItem(dialog, IDCANCEL);
    click(dialog, IDCANCEL);
  });
  EXPECT_EQ(default_id, IDCANCEL);
  EXPECT_EQ(focus, ignore);
}

TEST_F(Interactive, ReportWhileOneIsShownIsOnlyLogged) {
  HRESULT inner = E_UNEXPECTED;
  process_with_user(L"ASSERT", [&](HWND dialog) {
    inner = process(L"CREATE ERROR");
    click(dialog, IDCANCEL);
  });
  EXPECT_EQ(inner, S_OK);
  EXPECT_EQ(dialogs, 1);
  EXPECT_EQ(folder.lines().size(), 3u);
}

TEST_F(Interactive, DialogThatIsDestroyedFromOutsideIgnores) {
  EXPECT_EQ(process_with_user(L"ASSERT", [](HWND dialog) { DestroyWindow(dialog); }), S_OK);
}

class RecentReports : public Interactive {};

TEST_F(RecentReports, ShowsTheNewestLinesAndTheLogsPath) {
  process(L"TRACE");
  std::wstring recent;
  std::wstring path;
  const DialogDriver driver([&](HWND dialog) {
    recent = item_text(dialog, IDC_RECENT);
    path = item_text(dialog, IDC_LOG_PATH);
    press_key(dialog, VK_ESCAPE);
  });
  EXPECT_EQ(command(L"REPORTDIALOG"), S_OK);
  EXPECT_THAT(recent, HasSubstr(L"\"$Type\":\"TRACE\""));
  EXPECT_EQ(path, folder.file());
}

TEST_F(RecentReports, SaysWhenThereAreNone) {
  std::wstring recent;
  const DialogDriver driver([&](HWND dialog) {
    recent = item_text(dialog, IDC_RECENT);
    press_mnemonic(dialog, L'c');
  });
  EXPECT_EQ(command(L"REPORTDIALOG"), S_OK);
  EXPECT_EQ(recent, L"Nothing has been reported yet.");
}

TEST_F(RecentReports, ForgetsIgnoredLocations) {
  always_ignore(L"Some.cpp(70)");
  const DialogDriver driver([&](HWND dialog) {
    click(dialog, IDC_FORGET_IGNORED);
    press_key(dialog, VK_RETURN);
  });
  EXPECT_EQ(command(L"REPORTDIALOG"), S_OK);
  EXPECT_FALSE(snagtrap::is_ignored({L"Some.cpp", 70}));
}

}  // namespace
}  // namespace snagtrap_test
