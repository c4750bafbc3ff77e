#include "FailingMemory.h"

#include <oleauto.h>

#include <cstdlib>

namespace module_test {
namespace {

long countdown = 0;
bool failed = false;

/// Whether the allocation that comes now is the one that fails.
bool strikes() {
  const bool now = countdown > 0 && --countdown == 0;
  failed = failed || now;
  return now;
}

void* allocate(std::size_t size) { return strikes() ? nullptr : std::malloc(size); }

BSTR WINAPI allocate_text(const OLECHAR* text) { return strikes() ? nullptr : SysAllocString(text); }

BSTR WINAPI allocate_text_of_length(const OLECHAR* text, UINT length) {
  return strikes() ? nullptr : SysAllocStringLen(text, length);
}

BSTR WINAPI allocate_text_of_bytes(LPCSTR bytes, UINT size) {
  return strikes() ? nullptr : SysAllocStringByteLen(bytes, size);
}

HRESULT WINAPI allocate_text_of_number(LONG number, LCID locale, ULONG flags, BSTR* text) {
  return strikes() ? E_OUTOFMEMORY : VarBstrFromI4(number, locale, flags, text);
}

}  // namespace

FailingMemory::FailingMemory(HMODULE module, long number)
    : memory_(module, "malloc", &allocate),
      text_(module, "SysAllocString", &allocate_text),
      text_of_length_(module, "SysAllocStringLen", &allocate_text_of_length),
      text_of_bytes_(module, "SysAllocStringByteLen", &allocate_text_of_bytes),
      text_of_number_(module, "VarBstrFromI4", &allocate_text_of_number) {
  failed = false;
  countdown = number;
}

FailingMemory::~FailingMemory() { heal(); }

void FailingMemory::heal() { countdown = 0; }

bool FailingMemory::has_failed() const { return failed; }

}  // namespace module_test
