#pragma once

#include <objbase.h>
#include <windows.h>
#include <comdef.h>

namespace workbench {

template <class Interface>
inline const IID& interface_id() noexcept {
  return __uuidof(Interface);
}

/// The system's reference-counted pointer for one interface.
template <class Interface>
using ComPtr = _com_ptr_t<_com_IIID_getter<Interface, &interface_id<Interface>>>;

/// Takes over the reference that a function answered.
template <class Interface>
ComPtr<Interface> own(Interface* object) noexcept {
  return ComPtr<Interface>(object, false);
}

}  // namespace workbench
