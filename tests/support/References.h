#pragma once

#include <unknwn.h>

namespace test_support {

/// How many references an object has.
inline ULONG references(IUnknown* object) {
  object->AddRef();
  return object->Release();
}

}  // namespace test_support
