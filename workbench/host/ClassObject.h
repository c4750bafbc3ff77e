#pragma once

#include <objbase.h>

#include <functional>

namespace workbench {

/// Creates objects of one class. `make` returns a new object with one reference and may throw; objects cannot be
/// aggregated.
class ClassObject final : public IClassFactory {
 public:
  explicit ClassObject(std::function<IUnknown*()> make) : make_(std::move(make)) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept override;
  ULONG STDMETHODCALLTYPE AddRef() noexcept override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() noexcept override;
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) noexcept override;
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) noexcept override { return S_OK; }

 private:
  ~ClassObject() = default;

  std::function<IUnknown*()> make_;
  ULONG references_ = 1;
};

}  // namespace workbench
