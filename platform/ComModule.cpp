#include "ComModule.h"

namespace platform {

ComModule& ComModule::instance() noexcept {
  // DllMain asks for it first, while the loader keeps every other thread out of this module.
  static ComModule module;
  return module;
}

ComModule::ComModule() noexcept
    : section_(), initialised_(InitializeCriticalSectionAndSpinCount(&section_, 0) != FALSE) {}

ComModule::~ComModule() {
  if (initialised_) DeleteCriticalSection(&section_);
}

}  // namespace platform
