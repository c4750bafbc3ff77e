#include "Depth.h"
#include "GuardedBytes.h"
#include "RandomCases.h"
#include "StateFixture.h"

namespace resizable_test {
namespace {

using test_support::Bytes;

constexpr std::size_t record_size = sizeof(WINDOWPLACEMENT);
constexpr std::size_t show_position = 8;

/// Records of a placement as another program may have left them, applied to a window.
class HostilePlacement : public PlacementTest {
 protected:
  /// A record of a window that is shown so.
  static Bytes sound_record(UINT show = SW_SHOWNORMAL) {
    const WINDOWPLACEMENT placement = placement_at({120, 90, 620, 590}, show);
    const auto* start = reinterpret_cast<const std::uint8_t*>(&placement);
    return Bytes(start, start + record_size);
  }

  void apply(const Bytes& record) {
    write(REG_BINARY, record.data(), static_cast<DWORD>(record.size()));
    EXPECT_EQ(record.size() == record_size, restore() != FALSE);
    expect_within_reach(present().rcNormalPosition);
    if (!IsIconic(owned.get())) expect_within_reach(rect());
  }

  /// The window has a size, and at least the smallest window fits between its corner and the ends of the monitor.
  void expect_within_reach(const RECT& window_rect) {
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof monitor;
    GetMonitorInfoW(MonitorFromRect(&window_rect, MONITOR_DEFAULTTONEAREST), &monitor);
    const LONG width = GetSystemMetrics(SM_CXMINTRACK);
    const LONG height = GetSystemMetrics(SM_CYMINTRACK) - caption;
    EXPECT_GE(window_rect.right - window_rect.left, width);
    EXPECT_GE(window_rect.bottom - window_rect.top, height);
    if (IsZoomed(owned.get())) return;
    EXPECT_GE(window_rect.left, monitor.rcWork.left);
    EXPECT_GE(window_rect.top, monitor.rcWork.top);
    EXPECT_LE(window_rect.left + width, monitor.rcWork.right);
    EXPECT_LE(window_rect.top + height, monitor.rcWork.bottom);
  }
};

/// From one tried byte of a record to the next: at least the first of each of its numbers.
const std::size_t step = test_support::deep() ? 1 : sizeof(UINT);

TEST_F(HostilePlacement, MayHaveAnyExtremeInAnyByte) {
  for (const UINT show : {SW_SHOWNORMAL, SW_SHOWMINIMIZED, SW_SHOWMAXIMIZED}) {
    const Bytes sound = sound_record(show);
    for (std::size_t position = 0; position < record_size && !HasFailure(); position += step) {
      for (const int value : {0x00, 0x01, 0x7F, 0x80, 0xFF}) {
        SCOPED_TRACE("shown as " + std::to_string(show) + ", byte " + std::to_string(position) + " is " +
                     std::to_string(value));
        Bytes record = sound;
        record[position] = static_cast<std::uint8_t>(value);
        apply(record);
      }
    }
  }
}

TEST_F(HostilePlacement, MayBeDamagedInManyPlaces) {
  test_support::RandomCases random;
  for (int number = 0; number < test_support::repetitions(1000, 100) && !HasFailure(); ++number) {
    SCOPED_TRACE(random.trace(number));
    Bytes record = sound_record();
    record[show_position] = static_cast<std::uint8_t>(random.below(SW_MAX + 2));
    random.damage(record, random.below(4) ? 4 : record_size);
    apply(record);
  }
}

TEST_F(HostilePlacement, OfAnotherLengthIsRefused) {
  for (std::size_t length = 0; length <= 3 * record_size; ++length) {
    SCOPED_TRACE(length);
    Bytes record = sound_record();
    record.resize(length, 0x7F);
    apply(record);
  }
  apply(Bytes(100'000, 0xFF));
}

}  // namespace
}  // namespace resizable_test
