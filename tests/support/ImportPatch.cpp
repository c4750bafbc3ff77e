#include "ImportPatch.h"

#include <stdexcept>
#include <string>
#include <string_view>

namespace test_support {
namespace {

template <class Type>
Type* at(HMODULE module, ULONGLONG offset) {
  return reinterpret_cast<Type*>(reinterpret_cast<ULONG_PTR>(module) + offset);
}

/// The location in the module's import table that holds the address of a function, whose name is as in "#17" when it is
/// imported by a number; null when the module imports none.
void** import_entry(HMODULE module, std::string_view function) {
  const auto* headers = at<IMAGE_NT_HEADERS>(module, static_cast<ULONGLONG>(at<IMAGE_DOS_HEADER>(module, 0)->e_lfanew));
  const auto& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  for (auto* library = at<IMAGE_IMPORT_DESCRIPTOR>(module, directory.VirtualAddress); library->Name; ++library) {
    auto* name = at<IMAGE_THUNK_DATA>(module, library->OriginalFirstThunk);
    auto* entry = at<void*>(module, library->FirstThunk);
    for (; name->u1.AddressOfData; ++name, ++entry) {
      const bool is_found = IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)
                                ? function == '#' + std::to_string(IMAGE_ORDINAL(name->u1.Ordinal))
                                : function == at<IMAGE_IMPORT_BY_NAME>(module, name->u1.AddressOfData)->Name;
      if (is_found) return entry;
    }
  }
  return nullptr;
}

void write_entry(void** entry, void* function) {
  DWORD protection = 0;
  VirtualProtect(entry, sizeof *entry, PAGE_READWRITE, &protection);
  *entry = function;
  VirtualProtect(entry, sizeof *entry, protection, &protection);
}

}  // namespace

bool imports(HMODULE module, const char* name) { return import_entry(module, name) != nullptr; }

ImportPatch::ImportPatch(HMODULE module, const char* name, void* function)
    : entry_(import_entry(module, name)), original_(entry_ ? *entry_ : nullptr) {
  if (!entry_) throw std::runtime_error(std::string("the module does not import ") + name);
  write_entry(entry_, function);
}

ImportPatch::~ImportPatch() { write_entry(entry_, original_); }

}  // namespace test_support
