#include "ResizableMsgSupport.h"

#include "ComModule.h"
#include "Report.h"
#include "SectionLock.h"

UINT WMU_RESIZESUPPORT = 0;

namespace {

constexpr int registration_line = 48;
std::atomic<UINT> uRegisterdWMU_RESIZESUPPORT = 0;

}  // namespace

namespace resizable {

UINT registered_message(std::atomic<UINT>& cached, const wchar_t* name) noexcept {
  if (cached == 0) {
    const SnagtrapUtil::SectionLock lock(platform::ComModule::instance().section());
    cached = RegisterWindowMessageW(name);
  }
  return cached;
}

}  // namespace resizable

UINT RegisterResizeMessage::GetRegisteredWMU_RESIZESUPPORT() noexcept {
  WMU_RESIZESUPPORT = resizable::registered_message(uRegisterdWMU_RESIZESUPPORT, L"WMU_RESIZESUPPORT");
  SnagtrapUtil::expect(WMU_RESIZESUPPORT != 0, L"uRegisterdWMU_RESIZESUPPORT != 0",
                       ZD_PLACE_IN("ResizableMsgSupport.h", registration_line));
  return WMU_RESIZESUPPORT;
}
