#include "ScratchRoot.h"

#include <stdexcept>

namespace test_support {
namespace {

std::wstring scratch_path(HKEY root) {
  return L"Software\\zdExpirationRules tests\\" + std::to_wstring(GetCurrentProcessId()) + L"-" +
         std::to_wstring(reinterpret_cast<ULONG_PTR>(root) & 0xF);
}

}  // namespace

ScratchRoot::ScratchRoot(HKEY root) : root_(root), path_(scratch_path(root)) {
  RegDeleteTreeW(HKEY_CURRENT_USER, path_.c_str());
  if (RegCreateKeyExW(HKEY_CURRENT_USER, path_.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, key_.put(), nullptr) !=
          ERROR_SUCCESS ||
      RegOverridePredefKey(root_, key_.get()) != ERROR_SUCCESS) {
    throw std::runtime_error("the scratch area in the registry cannot be created");
  }
}

ScratchRoot::~ScratchRoot() {
  RegOverridePredefKey(root_, nullptr);
  RegDeleteTreeW(key_.get(), nullptr);
  key_.reset();
  RegDeleteKeyW(HKEY_CURRENT_USER, path_.c_str());
}

}  // namespace test_support
