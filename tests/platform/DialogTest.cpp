#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "Dialog.h"
#include "Recorder.h"
#include "TestResources.h"
#include "Thrower.h"

namespace platform {
namespace {

constexpr UINT close_message = WM_APP + 1;
constexpr UINT dialog_message = WM_APP + 2;

/// A dialog whose handler the test gives; it keeps the messages that reach it.
class SampleDialog final : public CDialogImpl<SampleDialog> {
 public:
  static constexpr int IDD = IDD_SAMPLE;

  SampleDialog() = default;
  ~SampleDialog() override = default;

  BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result, DWORD) override {
    messages.push_back(message);
    windows_match = windows_match && window == m_hWnd;
    if (message == WM_INITDIALOG) PostMessageW(window, close_message, 0, 0);
    if (handler && handler(message, wParam, lParam, result)) return TRUE;
    if (message == close_message) EndDialog(7);
    return message == close_message;
  }

  std::function<bool(UINT, WPARAM, LPARAM, LRESULT&)> handler;
  std::vector<UINT> messages;
  bool windows_match = true;
};

class MissingDialog final : public CDialogImpl<MissingDialog> {
 public:
  static constexpr int IDD = IDD_MISSING;

  MissingDialog() = default;
  ~MissingDialog() override = default;

  BOOL ProcessWindowMessage(HWND, UINT, WPARAM, LPARAM, LRESULT&, DWORD) override {
    ADD_FAILURE() << "a message reached a dialog that cannot be created";
    return FALSE;
  }
};

class DialogTest : public testing::Test {
 protected:
  std::vector<std::wstring> traces() const { return recorder_.texts(L"TRACE", L"$Message"); }

  test_support::Recorder recorder_;
  SampleDialog dialog_;
};

TEST_F(DialogTest, ModalDialogReturnsTheResultItWasEndedWith) {
  EXPECT_EQ(dialog_.DoModal(nullptr), 7);
  EXPECT_EQ(dialog_.m_hWnd, nullptr);
}

TEST_F(DialogTest, CanBeShownAgain) {
  EXPECT_EQ(dialog_.DoModal(nullptr), 7);
  EXPECT_EQ(dialog_.DoModal(nullptr), 7);
}

TEST_F(DialogTest, MessagesReachItFromInitDialogToNcDestroy) {
  dialog_.DoModal(nullptr);
  EXPECT_EQ(dialog_.messages.front(), static_cast<UINT>(WM_INITDIALOG));
  EXPECT_EQ(dialog_.messages.back(), static_cast<UINT>(WM_NCDESTROY));
  EXPECT_TRUE(dialog_.windows_match);
}

TEST_F(DialogTest, ModelessDialogIsBoundUntilItsWindowIsDestroyed) {
  HWND window = dialog_.Create(nullptr);
  ASSERT_TRUE(IsWindow(window));
  EXPECT_EQ(dialog_.m_hWnd, window);
  DestroyWindow(window);
  EXPECT_EQ(dialog_.m_hWnd, nullptr);
  EXPECT_EQ(dialog_.messages.back(), static_cast<UINT>(WM_NCDESTROY));
}

TEST_F(DialogTest, MessagesOfAnotherWindowAndAfterItsLastOneGoTheDefaultWay) {
  HWND window = dialog_.Create(nullptr);
  HWND stranger = CreateWindowExW(0, L"#32770", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
  const auto procedure = reinterpret_cast<DLGPROC>(GetWindowLongPtrW(window, DWLP_DLGPROC));
  dialog_.messages.clear();
  const auto expect_unhandled = [&](HWND receiver) {
    for (const UINT message : {static_cast<UINT>(WM_COMMAND), static_cast<UINT>(WM_SETFONT), close_message,
                               static_cast<UINT>(WM_DESTROY), static_cast<UINT>(WM_NCDESTROY)}) {
      EXPECT_EQ(procedure(receiver, message, IDOK, 0), FALSE) << message;
    }
    EXPECT_TRUE(dialog_.messages.empty());
  };
  expect_unhandled(stranger);
  DestroyWindow(stranger);
  EXPECT_EQ(dialog_.m_hWnd, window);
  DestroyWindow(window);
  dialog_.messages.clear();
  expect_unhandled(window);
}

TEST_F(DialogTest, SecondInitMessageDoesNotBindAgain) {
  HWND window = dialog_.Create(nullptr);
  SampleDialog other;
  SendMessageW(window, WM_INITDIALOG, 0, reinterpret_cast<LPARAM>(static_cast<CDialogImpl<SampleDialog>*>(&other)));
  EXPECT_EQ(other.m_hWnd, nullptr);
  EXPECT_TRUE(other.messages.empty());
  EXPECT_EQ(dialog_.m_hWnd, window);
  DestroyWindow(window);
}

TEST_F(DialogTest, ThatCannotBeCreatedReturnsMinusOne) {
  MissingDialog missing;
  EXPECT_EQ(missing.DoModal(nullptr), -1);
  EXPECT_EQ(missing.Create(nullptr), nullptr);
  EXPECT_EQ(missing.m_hWnd, nullptr);
}

TEST_F(DialogTest, OwnerIsDisabledWhileItIsOpen) {
  HWND owner = CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 50, 50, nullptr, nullptr,
                               GetModuleHandleW(nullptr), nullptr);
  bool was_enabled = true;
  dialog_.handler = [&](UINT message, WPARAM, LPARAM, LRESULT&) {
    if (message == close_message) was_enabled = IsWindowEnabled(owner);
    return false;
  };
  dialog_.DoModal(owner);
  EXPECT_FALSE(was_enabled);
  EXPECT_TRUE(IsWindowEnabled(owner));
  DestroyWindow(owner);
}

TEST_F(DialogTest, ExceptionOfAHandlerIsReportedAndTheMessageCountsAsNotHandled) {
  HWND window = dialog_.Create(nullptr);
  for (const auto& thrower : test_support::throwers) {
    recorder_.reset();
    dialog_.handler = [&](UINT message, WPARAM, LPARAM, LRESULT& result) {
      if (message != dialog_message) return false;
      result = 99;
      thrower.raise();
      return true;
    };
    EXPECT_EQ(SendMessageW(window, dialog_message, 0, 0), 0) << thrower.name;
    ASSERT_EQ(traces().size(), 1u) << thrower.name;
    EXPECT_EQ(traces()[0].rfind(thrower.report, 0), 0u) << thrower.name;
  }
  EXPECT_EQ(dialog_.m_hWnd, window) << "the dialog lives on";
  DestroyWindow(window);
}

TEST_F(DialogTest, ExceptionAtTheLastMessageStillUnbinds) {
  HWND window = dialog_.Create(nullptr);
  dialog_.handler = [](UINT message, WPARAM, LPARAM, LRESULT&) -> bool {
    if (message == WM_NCDESTROY) throw 1;
    return false;
  };
  DestroyWindow(window);
  EXPECT_EQ(dialog_.m_hWnd, nullptr);
  EXPECT_EQ(traces().size(), 1u);
}

TEST_F(DialogTest, IsClosedWhenItsInitialisationThrows) {
  for (const auto& thrower : test_support::throwers) {
    recorder_.reset();
    SampleDialog dialog;
    dialog.handler = [&](UINT message, WPARAM, LPARAM, LRESULT&) {
      if (message == WM_INITDIALOG) thrower.raise();
      return false;
    };
    EXPECT_EQ(dialog.DoModal(nullptr), IDCANCEL) << thrower.name;
    EXPECT_EQ(traces().size(), 1u) << thrower.name;
    EXPECT_EQ(dialog.m_hWnd, nullptr);
  }
}

TEST_F(DialogTest, EndingADestroyedDialogIsReported) {
  EXPECT_FALSE(dialog_.EndDialog(1));
  const auto assertions = recorder_.processed(L"ASSERT");
  ASSERT_EQ(assertions.size(), 1u);
  EXPECT_EQ(test_support::field_text(assertions[0], L"Description"), L"::IsWindow(m_hWnd)");
}

TEST_F(DialogTest, UnhandledMessagesGoTheDefaultWay) {
  HWND window = dialog_.Create(nullptr);
  EXPECT_EQ(SendMessageW(window, dialog_message, 0, 0), 0);
  EXPECT_EQ(SendMessageW(window, DM_GETDEFID, 0, 0), MAKELONG(IDOK, DC_HASDEFID));
  DestroyWindow(window);
}

TEST_F(DialogTest, ResultOfAHandledMessageReachesTheSender) {
  HWND window = dialog_.Create(nullptr);
  for (const UINT message :
       {static_cast<UINT>(WM_NOTIFY), static_cast<UINT>(WM_NCHITTEST), dialog_message,
        static_cast<UINT>(WM_COMPAREITEM), static_cast<UINT>(WM_CTLCOLORDLG), static_cast<UINT>(WM_CTLCOLORSTATIC),
        static_cast<UINT>(WM_CTLCOLOREDIT), static_cast<UINT>(WM_CHARTOITEM), static_cast<UINT>(WM_VKEYTOITEM)}) {
    dialog_.handler = [&](UINT arrived, WPARAM, LPARAM, LRESULT& result) {
      result = arrived == message ? 1234 : 0;
      return arrived == message;
    };
    EXPECT_EQ(SendMessageW(window, message, 0, 0), 1234) << "message " << message;
  }
  dialog_.handler = nullptr;
  DestroyWindow(window);
}

TEST_F(DialogTest, InitialisationReturnsWhetherTheSystemSetsTheFocus) {
  for (const bool system_sets_it : {true, false}) {
    SampleDialog dialog;
    int focused = 0;
    dialog.handler = [&](UINT message, WPARAM, LPARAM, LRESULT& result) {
      if (message == WM_INITDIALOG) {
        SetFocus(GetDlgItem(dialog.m_hWnd, IDOK));
        result = system_sets_it;
        return true;
      }
      if (message == close_message) focused = GetDlgCtrlID(GetFocus());
      return false;
    };
    dialog.DoModal(nullptr);
    EXPECT_EQ(focused, system_sets_it ? IDC_SAMPLE_EDIT : IDOK);
  }
}

TEST_F(DialogTest, HandledMessageWithResultZeroIsStillHandled) {
  HWND window = dialog_.Create(nullptr);
  dialog_.handler = [](UINT message, WPARAM, LPARAM, LRESULT& result) {
    result = 0;
    return message == DM_GETDEFID;
  };
  EXPECT_EQ(SendMessageW(window, DM_GETDEFID, 0, 0), 0);
  dialog_.handler = nullptr;
  DestroyWindow(window);
}

}  // namespace
}  // namespace platform
