#pragma once

#include "SampleInterfaces.h"

namespace test_support {

/// The controlling object of an aggregate, on the stack. It has the interface `IOther` of its own.
class OuterObject final : public IOther {
 public:
  STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override {
    ++queries;
    *object = nullptr;
    if (iid != IID_IUnknown && iid != __uuidof(IOther)) {
      return inner ? inner->QueryInterface(iid, object) : E_NOINTERFACE;
    }
    *object = this;
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++references; }
  STDMETHODIMP_(ULONG) Release() noexcept override { return --references; }

  ULONG references = 1;
  int queries = 0;
  IUnknown* inner = nullptr;
};

}  // namespace test_support
