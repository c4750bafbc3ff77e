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
  /// "CREATE" takes no record and creates one; every other word takes a record or null and creates none.
  virtual HRESULT STDMETHODCALLTYPE Command(BSTR word, IDebugObject* record, IDebugObject** created) = 0;
};

class SnagtrapLibrary;  ///< names the class under which the library is registered
class SnagtrapEvent;    ///< names the global event that holds clients back while it exists

/// The library's one export.
using ST_InitObjectFunction = HRESULT(STDMETHODCALLTYPE*)(IDebugRoot** root);

}  // namespace IKV_SnagtrapUtil

KV_UUID_IN(IKV_SnagtrapUtil, class, SnagtrapLibrary, "9CA6C1C1-8E31-4F6A-911F-C680E7C4D9C6")
KV_UUID_IN(IKV_SnagtrapUtil, struct, IDebugRoot, "817AF9DF-36A4-4B1C-A4AA-E6839CFA9755")
KV_UUID_IN(IKV_SnagtrapUtil, struct, IDebugObject, "76AF2B9B-59C1-47D2-92C3-D75E1B647049")
KV_UUID_IN(IKV_SnagtrapUtil, class, SnagtrapEvent, "BD4FBD2D-954D-4B0B-ABFF-63AC25855CE0")
