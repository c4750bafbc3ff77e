#pragma once

#include <windows.h>
#include <unknwn.h>

#include <new>

#include "ComModule.h"

namespace platform {

/// A COM object of class `T`, stand-alone or aggregated. `T` implements its interfaces but not `IUnknown`, and offers
///   IUnknown* find_interface(REFIID iid) noexcept;  // without a reference of its own, null when there is none
///   HRESULT FinalConstruct() noexcept;              // runs before the first interface is asked for
///   void FinalRelease() noexcept;                   // runs after the last release, while the object is still whole
/// The object is created with one reference and deletes itself. Keeps the module locked until FinalRelease has released
/// its references; those releases can re-enter this DLL.
template <class T>
class ComObject final : public T {
 public:
  /// `outer` is the controlling object of an aggregate or null; it is not referenced.
  explicit ComObject(IUnknown* outer) : inner_(*this), outer_(outer ? outer : &inner_) { ComModule::instance().lock(); }
  ~ComObject() override { ComModule::instance().unlock(); }
  ComObject(const ComObject&) = delete;
  ComObject& operator=(const ComObject&) = delete;

  /// The object's own IUnknown, which the creator and an outer object hold.
  IUnknown* inner() noexcept { return &inner_; }

  STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override {
    return outer_->QueryInterface(iid, object);
  }
  STDMETHODIMP_(ULONG) AddRef() noexcept override { return outer_->AddRef(); }
  STDMETHODIMP_(ULONG) Release() noexcept override { return outer_->Release(); }

 private:
  class Inner final : public IUnknown {
   public:
    explicit Inner(ComObject& owner) noexcept : owner_(owner) {}

    STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override {
      if (!object) return E_POINTER;
      IUnknown* found = iid == IID_IUnknown ? this : owner_.find_interface(iid);
      *object = found;
      if (!found) return E_NOINTERFACE;
      found->AddRef();
      return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() noexcept override { return static_cast<ULONG>(InterlockedIncrement(&references_)); }
    STDMETHODIMP_(ULONG) Release() noexcept override {
      const LONG left = InterlockedDecrement(&references_);
      if (left == 0) {
        references_ = destruction_references;
        owner_.FinalRelease();
        delete &owner_;
      }
      return left > 0 ? static_cast<ULONG>(left) : 0;
    }

   private:
    // References taken and dropped during FinalRelease must not delete the object a second time.
    static constexpr LONG destruction_references = 0x40000000;

    ComObject& owner_;
    volatile LONG references_ = 1;
  };

  Inner inner_;
  IUnknown* outer_;
};

/// Creates an object for a class factory. An outer object may only ask for `IUnknown` (else CLASS_E_NOAGGREGATION).
template <class T>
HRESULT create_com_object(IUnknown* outer, REFIID iid, void** object) noexcept {
  if (!object) return E_POINTER;
  *object = nullptr;
  if (outer && iid != IID_IUnknown) return CLASS_E_NOAGGREGATION;
  auto* created = new (std::nothrow) ComObject<T>(outer);
  if (!created) return E_OUTOFMEMORY;
  HRESULT hr = created->FinalConstruct();
  if (SUCCEEDED(hr)) hr = created->inner()->QueryInterface(iid, object);
  created->inner()->Release();
  return hr;
}

}  // namespace platform
