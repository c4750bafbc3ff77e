#pragma once

#include <oaidl.h>

/// Declares a slot that the host or the diagnostics library owns and this system never calls. It keeps the slots after
/// it in their positions.
#define KV_RESERVED_SLOT(slot) virtual HRESULT STDMETHODCALLTYPE Reserved##slot() = 0

/// Declares `kind name;` (a struct or class of the global namespace) and attaches an identifier to it, so that
/// `__uuidof(name)` gives it. `id` is text: "01234567-89AB-CDEF-0123-456789ABCDEF". KV_UUID_IN does so in a namespace.
#ifdef _MSC_VER
#define KV_UUID(kind, name, id) kind __declspec(uuid(id)) name;
#define KV_UUID_IN(space, kind, name, id) \
  namespace space {                       \
  KV_UUID(kind, name, id)                 \
  }
#else
#define KV_UUID(kind, name, id) \
  kind name;                    \
  KV_ATTACH_UUID(name, id)
#define KV_UUID_IN(space, kind, name, id) \
  namespace space {                       \
  kind name;                              \
  }                                       \
  KV_ATTACH_UUID(space::name, id)
#define KV_ATTACH_UUID(type, id)                                                                                      \
  __CRT_UUID_DECL(type, kv_uuid::hex(id, 0, 8), kv_uuid::hex(id, 9, 4), kv_uuid::hex(id, 14, 4),                      \
                  kv_uuid::hex(id, 19, 2), kv_uuid::hex(id, 21, 2), kv_uuid::hex(id, 24, 2), kv_uuid::hex(id, 26, 2), \
                  kv_uuid::hex(id, 28, 2), kv_uuid::hex(id, 30, 2), kv_uuid::hex(id, 32, 2), kv_uuid::hex(id, 34, 2))

namespace kv_uuid {

constexpr unsigned digit(char letter) {
  return static_cast<unsigned>(letter <= '9' ? letter - '0' : (letter | 0x20) - 'a' + 10);
}

/// The number of `count` hexadecimal digits of an identifier's text.
constexpr unsigned hex(const char (&id)[37], int first, int count) {
  return count == 0 ? 0 : hex(id, first, count - 1) << 4 | digit(id[first + count - 1]);
}

}  // namespace kv_uuid
#endif
