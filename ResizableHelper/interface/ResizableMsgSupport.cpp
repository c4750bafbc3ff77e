#include "ResizableMsgSupport.h"

#include "ComModule.h"
#include "Report.h"
#include "ScopedLock.h"

UINT WMU_RESIZESUPPORT = 0;

std::atomic<UINT> RegisterResizeMessage::uRegisterdWMU_RESIZESUPPORT = 0;

UINT RegisterResizeMessage::GetRegisteredWMU_RESIZESUPPORT() noexcept {
  if (uRegisterdWMU_RESIZESUPPORT == 0) {
    {
      const base::ScopedCriticalSection lock(platform::ComModule::instance().section());
      uRegisterdWMU_RESIZESUPPORT = RegisterWindowMessageW(L"WMU_RESIZESUPPORT");
    }
    SnagtrapUtil::expect(uRegisterdWMU_RESIZESUPPORT != 0, ZD_LOCATION_IN("ResizableMsgSupport.h", 48));
  }
  WMU_RESIZESUPPORT = uRegisterdWMU_RESIZESUPPORT;
  return WMU_RESIZESUPPORT;
}
