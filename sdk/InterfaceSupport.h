#pragma once

#include <oaidl.h>

/// Declares a slot that the host or the diagnostics library owns and this system never calls. It keeps the slots after
/// it at their places.
#define KV_RESERVED_SLOT(slot) virtual HRESULT STDMETHODCALLTYPE Reserved##slot() = 0
