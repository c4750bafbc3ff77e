#pragma once

#include "InterfaceSupport.h"

namespace IKV_SnagtrapUtil {

/// A record of the diagnostics library: named fields of typed values. Travels inside another record as VT_DISPATCH.
struct IDebugObject : IDispatch {
  virtual HRESULT STDMETHODCALLTYPE SetField(BSTR name, VARIANT value) = 0;
};

/// The root object that `ST_InitObject` hands out.
struct IDebugRoot : IDispatch {
  /// Called once after "INIT"; `number` is the calling process's id in decimal.
  virtual HRESULT STDMETHODCALLTYPE Configure(BSTR text, BSTR number, long flag) = 0;
  /// "CREATE" takes no record and makes one; every other word takes a record or null and makes none.
  virtual HRESULT STDMETHODCALLTYPE Command(BSTR word, IDebugObject* record, IDebugObject** created) = 0;
};

class SnagtrapLibrary;  ///< names the class under which the library is registered
class SnagtrapEvent;    ///< names the global event that holds clients back while it exists

/// The library's one export.
using ST_InitObjectFunction = HRESULT(STDMETHODCALLTYPE*)(IDebugRoot** root);

}  // namespace IKV_SnagtrapUtil

__CRT_UUID_DECL(IKV_SnagtrapUtil::SnagtrapLibrary, 0x9ca6c1c1, 0x8e31, 0x4f6a, 0x91, 0x1f, 0xc6, 0x80, 0xe7, 0xc4, 0xd9,
                0xc6)
__CRT_UUID_DECL(IKV_SnagtrapUtil::IDebugRoot, 0x817af9df, 0x36a4, 0x4b1c, 0xa4, 0xaa, 0xe6, 0x83, 0x9c, 0xfa, 0x97,
                0x55)
__CRT_UUID_DECL(IKV_SnagtrapUtil::IDebugObject, 0x76af2b9b, 0x59c1, 0x47d2, 0x92, 0xc3, 0xd7, 0x5e, 0x1b, 0x64, 0x70,
                0x49)
__CRT_UUID_DECL(IKV_SnagtrapUtil::SnagtrapEvent, 0xbd4fbd2d, 0x954d, 0x4b0b, 0xab, 0xff, 0x63, 0xac, 0x25, 0x85, 0x5c,
                0xe0)
