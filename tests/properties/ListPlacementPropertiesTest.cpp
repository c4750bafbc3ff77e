#include <cstring>

#include "Depth.h"
#include "GuardedBytes.h"
#include "HostileDialogs.h"

namespace properties_test {
namespace {

using test_support::Bytes;
using testing::IsEmpty;

// Company and product of this test program, which carries the module's resources.
constexpr wchar_t key_name[] = L"SOFTWARE\\zdExpirationRules\\zdExpirationRules\\Windows Placement";
constexpr wchar_t value_name[] = L"ZDExpirationRulesDialog";

class HostileListPlacement : public HostileDialogs {
 protected:
  /// A record of which nothing is certain but that it was sound once.
  Bytes any_record() {
    const WINDOWPLACEMENT sound = {44, 0, random.below(12), {-1, -1}, {-1, -1}, {120, 90, 620, 590}};
    Bytes record(sizeof sound);
    std::memcpy(record.data(), &sound, sizeof sound);
    random.damage(record, 6);
    if (random.below(5) == 0) record.resize(random.below(100));
    return record;
  }

  static void store(const Bytes& record) {
    ASSERT_EQ(ERROR_SUCCESS, RegSetKeyValueW(HKEY_CURRENT_USER, key_name, value_name, REG_BINARY, record.data(),
                                             static_cast<DWORD>(record.size())));
  }

  static bool is_sound_record_stored() {
    WINDOWPLACEMENT stored = {};
    DWORD size = sizeof stored;
    return RegGetValueW(HKEY_CURRENT_USER, key_name, value_name, RRF_RT_REG_BINARY, nullptr, &stored, &size) ==
               ERROR_SUCCESS &&
           size == sizeof stored && stored.length == sizeof stored;
  }

  /// The dialog is not smaller than it may be, and so much of it lies on the monitor.
  static void expect_within_reach(HWND window) {
    WINDOWPLACEMENT placement = {};
    placement.length = sizeof placement;
    GetWindowPlacement(window, &placement);
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof monitor;
    GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor);
    MINMAXINFO limits = {};
    SendMessageW(window, WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&limits));
    const LONG width = limits.ptMinTrackSize.x;
    const LONG height = limits.ptMinTrackSize.y - GetSystemMetrics(SM_CYCAPTION);
    ASSERT_GT(width, 0);
    const RECT& rect = placement.rcNormalPosition;
    EXPECT_GE(rect.right - rect.left, width);
    EXPECT_GE(rect.bottom - rect.top, height);
    EXPECT_GE(rect.left, monitor.rcWork.left);
    EXPECT_GE(rect.top, monitor.rcWork.top);
    EXPECT_LE(rect.left + width, monitor.rcWork.right);
    EXPECT_LE(rect.top + height, monitor.rcWork.bottom);
  }
};

TEST_F(HostileListPlacement, OpensTheDialogWithinReachAndIsReplacedByASoundOne) {
  for (int round = 0; round < test_support::repetitions(100, 10) && !HasFailure(); ++round) {
    SCOPED_TRACE(random.trace(round));
    store(any_record());
    list(expect_within_reach);
    EXPECT_TRUE(is_sound_record_stored());
  }
  EXPECT_THAT(reports(), IsEmpty());
}

}  // namespace
}  // namespace properties_test
