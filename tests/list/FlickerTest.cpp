// What a change of the size repaints.

#include <array>
#include <map>

#include "DeviceContext.h"
#include "ListDialogTest.h"
#include "MessagePump.h"
#include "Owned.h"
#include "OwnedWindow.h"

namespace list_test {
namespace {

constexpr int grip_id = 0;
constexpr int step_count = 50;

/// How often a control painted and erased itself.
struct Repaints {
  int paints = 0;
  int erases = 0;
};
using RepaintsById = std::map<int, Repaints>;

SIZE size_of_step(SIZE first, int step) { return {first.cx + 90 + step * 37 % 80, first.cy + 60 + step * 23 % 50}; }

SIZE window_size(HWND window) {
  const RECT rect = window_rect(window);
  return {rect.right - rect.left, rect.bottom - rect.top};
}

void update_all(HWND dialog) { RedrawWindow(dialog, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN); }

/// Gives the dialog many sizes, each painted at once, and counts what its children do.
RepaintsById repaints_of(HWND dialog, SIZE first) {
  SetWindowPos(dialog, nullptr, 50, 50, first.cx, first.cy, SWP_NOZORDER | SWP_NOACTIVATE);
  update_all(dialog);
  RepaintsById counted;
  const SentMessages watch([&](const CWPSTRUCT& message) {
    if (GetParent(message.hwnd) != dialog) return;
    Repaints& repaints = counted[GetDlgCtrlID(message.hwnd)];
    if (message.message == WM_PAINT) ++repaints.paints;
    if (message.message == WM_ERASEBKGND) ++repaints.erases;
  });
  for (int step = 1; step <= step_count; ++step) {
    const SIZE size = size_of_step(first, step);
    SetWindowPos(dialog, nullptr, 0, 0, size.cx, size.cy, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    update_all(dialog);
  }
  return counted;
}

/// The same controls, moved by a batch that is written by hand.
class HandWrittenDialog {
 public:
  explicit HandWrittenDialog(const Names& names)
      : window_(CreateDialogParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDD_EXPIRATION_RULES_LIST), nullptr,
                                   procedure, 0)),
        grip_(CreateWindowExW(0, L"SCROLLBAR", nullptr, WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | SBS_SIZEGRIP, 0, 0,
                              GetSystemMetrics(SM_CXVSCROLL), GetSystemMetrics(SM_CYHSCROLL), window_, nullptr, nullptr,
                              nullptr)) {
    HWND view = GetDlgItem(window_, IDC_RULES_LIST);
    SendMessageW(view, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_FULLROWSELECT);
    std::wstring text = L"name";
    LVCOLUMNW column = {};
    column.mask = LVCF_TEXT | LVCF_WIDTH;
    column.pszText = text.data();
    SendMessageW(view, LVM_INSERTCOLUMNW, 0, reinterpret_cast<LPARAM>(&column));
    for (std::wstring name : names) {
      LVITEMW item = {};
      item.mask = LVIF_TEXT;
      item.pszText = name.data();
      SendMessageW(view, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
    }
    GetClientRect(window_, &client_);
    for (Moved& moved : moved_) moved.rect = test_support::rect_of(GetDlgItem(window_, moved.id));
    SetWindowLongPtrW(window_, DWLP_USER, reinterpret_cast<LONG_PTR>(this));
    ShowWindow(window_, SW_SHOW);
  }
  ~HandWrittenDialog() { DestroyWindow(window_); }
  HandWrittenDialog(const HandWrittenDialog&) = delete;
  HandWrittenDialog& operator=(const HandWrittenDialog&) = delete;

  HWND window() const { return window_; }

 private:
  struct Moved {
    int id;
    LONG across;  ///< 1 when the left side follows the dialog's right side
    LONG down;    ///< 1 when the top follows the dialog's bottom
    bool grows;
    RECT rect;
  };

  static INT_PTR CALLBACK procedure(HWND window, UINT message, WPARAM, LPARAM) {
    auto* dialog = reinterpret_cast<HandWrittenDialog*>(GetWindowLongPtrW(window, DWLP_USER));
    if (message == WM_SIZE && dialog) dialog->arrange();
    return FALSE;
  }

  void arrange() const {
    RECT client = {};
    GetClientRect(window_, &client);
    const LONG dx = client.right - client_.right;
    const LONG dy = client.bottom - client_.bottom;
    SetWindowPos(grip_, HWND_BOTTOM, client.right - GetSystemMetrics(SM_CXVSCROLL),
                 client.bottom - GetSystemMetrics(SM_CYHSCROLL), 0, 0, SWP_NOSIZE | SWP_NOACTIVATE | SWP_NOOWNERZORDER);
    HDWP batch = BeginDeferWindowPos(static_cast<int>(moved_.size()));
    for (const Moved& moved : moved_) {
      const RECT& rect = moved.rect;
      const UINT kept = moved.grows ? SWP_NOMOVE : SWP_NOSIZE;
      batch = DeferWindowPos(batch, GetDlgItem(window_, moved.id), nullptr, rect.left + moved.across * dx,
                             rect.top + moved.down * dy, rect.right - rect.left + dx, rect.bottom - rect.top + dy,
                             SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOOWNERZORDER | kept);
    }
    EndDeferWindowPos(batch);
    HWND view = GetDlgItem(window_, IDC_RULES_LIST);
    RECT inner = {};
    GetClientRect(view, &inner);
    SendMessageW(view, LVM_SETCOLUMNWIDTH, 0, MAKELPARAM(inner.right - GetSystemMetrics(SM_CXVSCROLL), 0));
  }

  HWND window_;
  HWND grip_;
  RECT client_ = {};
  std::array<Moved, 6> moved_{{{IDC_RULES_GROUP, 0, 0, true, {}},
                               {IDC_RULES_LIST, 0, 0, true, {}},
                               {IDC_ADD_RULE, 1, 0, false, {}},
                               {IDC_EDIT_RULE, 1, 0, false, {}},
                               {IDC_DELETE_RULE, 1, 0, false, {}},
                               {IDCANCEL, 1, 1, false, {}}}};
};

const Names names = {L"AU", L"CU", L"IF", L"RB", L"TF", L"ZN"};

/// What the client area shows, as 32-bit pixels, with black in this rectangle.
std::vector<DWORD> picture(HWND window, const RECT& black = {}) {
  RECT client = {};
  GetClientRect(window, &client);
  const base::ScopedClientDc screen(window);
  base::MemoryDc memory(CreateCompatibleDC(screen.get()));
  const base::Bitmap bitmap(CreateCompatibleBitmap(screen.get(), client.right, client.bottom));
  {
    const base::ScopedSelectObject selected(memory.get(), bitmap.get());
    BitBlt(memory.get(), 0, 0, client.right, client.bottom, screen.get(), 0, 0, SRCCOPY);
    PatBlt(memory.get(), black.left, black.top, black.right - black.left, black.bottom - black.top, BLACKNESS);
  }
  BITMAPINFO info = {};
  info.bmiHeader = {sizeof info.bmiHeader, client.right, -client.bottom, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  std::vector<DWORD> pixels(static_cast<std::size_t>(client.right) * static_cast<std::size_t>(client.bottom));
  GetDIBits(memory.get(), bitmap.get(), 0, static_cast<UINT>(client.bottom), pixels.data(), &info, DIB_RGB_COLORS);
  return pixels;
}

/// The same of the list's dialog without its list view: that one paints itself as in any dialog.
std::vector<DWORD> picture_around_the_list(HWND dialog) {
  return picture(dialog, test_support::rect_of(GetDlgItem(dialog, IDC_RULES_LIST)));
}

/// The rectangle around the pixels that differ; empty when none does.
RECT difference(const std::vector<DWORD>& left, const std::vector<DWORD>& right, LONG width) {
  RECT around = {};
  for (std::size_t i = 0; i < left.size(); ++i) {
    const auto x = static_cast<LONG>(i) % width;
    const auto y = static_cast<LONG>(i) / width;
    const RECT pixel = {x, y, x + 1, y + 1};
    if (left[i] != right[i]) UnionRect(&around, &around, &pixel);
  }
  return around;
}

/// Whether a dialog whose controls are moved by hand keeps its picture where it was, seen at its top left corner, where
/// no control is. One platform moves it by the width of the frame, so that no dialog shows what it painted.
bool grown_dialog_keeps_its_picture() {
  const HandWrittenDialog dialog(names);
  update_all(dialog.window());
  test_support::pump_messages();
  const std::vector<DWORD> before = picture(dialog.window());
  const SIZE size = window_size(dialog.window());
  SetWindowPos(dialog.window(), nullptr, 0, 0, size.cx + 90, size.cy + 60, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  update_all(dialog.window());
  const std::vector<DWORD> after = picture(dialog.window());
  constexpr int corner_width = 100;
  return std::equal(before.begin(), before.begin() + corner_width, after.begin());
}

class ListFlickerOnScreen : public ListDialogTest {};

TEST_F(ListFlickerOnScreen, OnlyTheGroupBoxAndTheMovedButtonsArePaintedMoreThanByABatchWrittenByHand) {
  RepaintsById other;
  SIZE first = {};
  {
    const HandWrittenDialog by_hand(names);
    first = window_size(by_hand.window());
    other = repaints_of(by_hand.window(), first);
  }
  store_rules(names);
  open([&](RuleList& list) {
    RepaintsById own = repaints_of(list.window(), first);
    EXPECT_GT(other[IDC_RULES_LIST].paints, 0);
    EXPECT_EQ(other[IDC_RULES_LIST].paints, own[IDC_RULES_LIST].paints);
    EXPECT_EQ(other[IDC_RULES_LIST].erases, own[IDC_RULES_LIST].erases);
    for (const int id : {IDC_RULES_GROUP, IDC_ADD_RULE, IDC_EDIT_RULE, IDC_DELETE_RULE, IDCANCEL}) {
      EXPECT_LE(own[id].paints, step_count) << id << " by hand " << other[id].paints;
      EXPECT_LE(own[id].erases, step_count) << id << " by hand " << other[id].erases;
    }
    // The grip moves as the buttons do; the system may erase it once when it moves and once when it is painted.
    EXPECT_LE(own[grip_id].paints, step_count) << "by hand " << other[grip_id].paints;
    EXPECT_LE(own[grip_id].erases, 2 * step_count) << "by hand " << other[grip_id].erases;
  });
}

TEST_F(ListFlickerOnScreen, EverySizeShowsWhatAFullRepaintShowsAroundTheList) {
  if (!grown_dialog_keeps_its_picture()) GTEST_SKIP() << "the system moves what windows keep of their pictures here";
  store_rules(names);
  open([](RuleList& list) {
    const SIZE first = window_size(list.window());
    for (int step = 0; step < step_count; step += 5) {
      const SIZE size = size_of_step(first, step);
      SetWindowPos(list.window(), nullptr, 0, 0, size.cx, size.cy, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
      update_all(list.window());
      const std::vector<DWORD> shown = picture_around_the_list(list.window());
      RedrawWindow(list.window(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW | RDW_ALLCHILDREN);
      RECT client = {};
      GetClientRect(list.window(), &client);
      const RECT differs = difference(shown, picture_around_the_list(list.window()), client.right);
      EXPECT_TRUE(IsRectEmpty(&differs)) << "step " << step << ": " << differs.left << ' ' << differs.top << ' '
                                         << differs.right << ' ' << differs.bottom;
    }
  });
}

/// Whether the dialog or a child of it waits to be painted.
bool waits_for_paint(HWND dialog) {
  bool waits = GetUpdateRect(dialog, nullptr, FALSE) != FALSE;
  for (HWND child = GetWindow(dialog, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
    waits = waits || GetUpdateRect(child, nullptr, FALSE);
  }
  return waits;
}

TEST_F(ListFlickerOnScreen, SizeThatDidNotChangeRepaintsNothing) {
  store_rules(names);
  open([](RuleList& list) {
    RECT client = {};
    GetClientRect(list.window(), &client);
    bool waits = true;
    // The screen may ask for a picture of its own at any time, but hardly so at every attempt.
    for (int attempt = 0; attempt < 10 && waits; ++attempt) {
      update_all(list.window());
      SendMessageW(list.window(), WM_SIZE, SIZE_RESTORED, MAKELPARAM(client.right, client.bottom));
      waits = waits_for_paint(list.window());
    }
    EXPECT_FALSE(waits);
  });
}

}  // namespace
}  // namespace list_test
