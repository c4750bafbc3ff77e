#include "ComModule.h"

namespace platform {

ComModule& ComModule::instance() noexcept {
  static ComModule module;
  return module;
}

ComModule::ComModule() noexcept
    : section_(), initialised_(InitializeCriticalSectionAndSpinCount(&section_, 0) != FALSE) {}

ComModule::~ComModule() {
  if (initialised_) DeleteCriticalSection(&section_);
}

}  // namespace platform
