#pragma once

#include "DispatchObject.h"

namespace workbench {

/// What a plug-in gets for its menu item or hot key: an object that returns the id of the command.
template <class Interface>
class CommandObject final : public DispatchObject<Interface> {
 public:
  explicit CommandObject(long id) noexcept : id_(id) {}

  HRESULT STDMETHODCALLTYPE get_CommandID(long* id) noexcept override {
    if (!id) return E_POINTER;
    *id = id_;
    return S_OK;
  }

 private:
  long id_;
};

}  // namespace workbench
