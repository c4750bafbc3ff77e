#include "FailingMemory.h"

#include <objbase.h>
#include <oleauto.h>

#include <cstdlib>
#include <stdexcept>

namespace test_support {
namespace {

FaultCounter allocations;

bool must_fail() { return allocations.next_call_fails(); }

void* failing_malloc(std::size_t size) { return must_fail() ? nullptr : std::malloc(size); }

BSTR WINAPI failing_alloc_string(const OLECHAR* text) { return must_fail() ? nullptr : SysAllocString(text); }
BSTR WINAPI failing_alloc_string_len(const OLECHAR* text, UINT length) {
  return must_fail() ? nullptr : SysAllocStringLen(text, length);
}
BSTR WINAPI failing_alloc_string_byte_len(const char* bytes, UINT length) {
  return must_fail() ? nullptr : SysAllocStringByteLen(bytes, length);
}
INT WINAPI failing_realloc_string(BSTR* string, const OLECHAR* text) {
  return must_fail() ? FALSE : SysReAllocString(string, text);
}
INT WINAPI failing_realloc_string_len(BSTR* string, const OLECHAR* text, UINT length) {
  return must_fail() ? FALSE : SysReAllocStringLen(string, text, length);
}
HRESULT WINAPI failing_string_of_number(LONG number, LCID locale, ULONG flags, BSTR* string) {
  return must_fail() ? E_OUTOFMEMORY : VarBstrFromI4(number, locale, flags, string);
}
void* WINAPI failing_task_alloc(SIZE_T size) { return must_fail() ? nullptr : CoTaskMemAlloc(size); }
void* WINAPI failing_task_realloc(void* block, SIZE_T size) {
  return must_fail() ? nullptr : CoTaskMemRealloc(block, size);
}

struct Function {
  Memory kind;
  const char* name;
  void* failing;
};

const Function allocators[] = {
    {Memory::blocks, "malloc", reinterpret_cast<void*>(failing_malloc)},
    {Memory::com, "SysAllocString", reinterpret_cast<void*>(failing_alloc_string)},
    {Memory::com, "SysAllocStringLen", reinterpret_cast<void*>(failing_alloc_string_len)},
    {Memory::com, "SysAllocStringByteLen", reinterpret_cast<void*>(failing_alloc_string_byte_len)},
    {Memory::com, "SysReAllocString", reinterpret_cast<void*>(failing_realloc_string)},
    {Memory::com, "SysReAllocStringLen", reinterpret_cast<void*>(failing_realloc_string_len)},
    {Memory::com, "VarBstrFromI4", reinterpret_cast<void*>(failing_string_of_number)},
    {Memory::com, "CoTaskMemAlloc", reinterpret_cast<void*>(failing_task_alloc)},
    {Memory::com, "CoTaskMemRealloc", reinterpret_cast<void*>(failing_task_realloc)},
};

}  // namespace

FailingMemory::FailingMemory(HMODULE module, std::size_t number, Memory kind, FaultDuration duration) {
  for (const Function& function : allocators) {
    const bool is_meant = kind == Memory::any || kind == function.kind;
    if (is_meant && imports(module, function.name)) patches_.emplace_back(module, function.name, function.failing);
  }
  if (patches_.empty()) throw std::runtime_error("the module imports no function that allocates so");
  allocations.arm(number, duration);
}

FailingMemory::~FailingMemory() { clear_faults(); }

void FailingMemory::clear_faults() { allocations.clear_faults(); }

bool FailingMemory::has_failed() const { return allocations.has_failed(); }

std::set<std::string> FailingMemory::functions() {
  std::set<std::string> names;
  for (const Function& function : allocators) names.insert(function.name);
  return names;
}

}  // namespace test_support
