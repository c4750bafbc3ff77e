#include "FailingMemory.h"

#include <cstdlib>
#include <stdexcept>
#include <string_view>

namespace module_test {
namespace {

using Malloc = void* (*)(std::size_t);

Malloc original = nullptr;
long countdown = 0;
bool failed = false;

void* failing_malloc(std::size_t size) {
  if (countdown > 0 && --countdown == 0) {
    failed = true;
    return nullptr;
  }
  return original(size);
}

template <class Type>
Type* at(HMODULE module, ULONGLONG offset) {
  return reinterpret_cast<Type*>(reinterpret_cast<ULONG_PTR>(module) + offset);
}

/// The place in the module's import table that holds the address of a function; null when it imports none.
void** import_entry(HMODULE module, std::string_view function) {
  const auto* headers = at<IMAGE_NT_HEADERS>(module, static_cast<ULONGLONG>(at<IMAGE_DOS_HEADER>(module, 0)->e_lfanew));
  const auto& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  for (auto* library = at<IMAGE_IMPORT_DESCRIPTOR>(module, directory.VirtualAddress); library->Name; ++library) {
    auto* name = at<IMAGE_THUNK_DATA>(module, library->OriginalFirstThunk);
    auto* entry = at<void*>(module, library->FirstThunk);
    for (; name->u1.AddressOfData; ++name, ++entry) {
      if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)) continue;
      if (at<IMAGE_IMPORT_BY_NAME>(module, name->u1.AddressOfData)->Name == function) return entry;
    }
  }
  return nullptr;
}

void write_entry(void** entry, Malloc function) {
  DWORD protection = 0;
  VirtualProtect(entry, sizeof *entry, PAGE_READWRITE, &protection);
  *entry = reinterpret_cast<void*>(function);
  VirtualProtect(entry, sizeof *entry, protection, &protection);
}

}  // namespace

FailingMemory::FailingMemory(HMODULE module, long number) : entry_(import_entry(module, "malloc")) {
  if (!entry_) throw std::runtime_error("the module does not import malloc");
  original = reinterpret_cast<Malloc>(*entry_);
  failed = false;
  countdown = number;
  write_entry(entry_, &failing_malloc);
}

FailingMemory::~FailingMemory() {
  heal();
  write_entry(entry_, original);
}

void FailingMemory::heal() { countdown = 0; }

bool FailingMemory::has_failed() const { return failed; }

}  // namespace module_test
