#include "ImportPatch.h"

#include <stdexcept>

namespace test_support {
namespace {

template <class Type>
Type* at(HMODULE module, ULONGLONG offset) {
  return reinterpret_cast<Type*>(reinterpret_cast<ULONG_PTR>(module) + offset);
}

/// Null when the module imports no function of this name.
void** import_entry(HMODULE module, const std::string& function) {
  void** found = nullptr;
  for_each_import(module, [&](const std::string& name, void** entry) {
    if (!found && name == function) found = entry;
  });
  return found;
}

void** require_import(HMODULE module, const char* name) {
  void** entry = import_entry(module, name);
  if (!entry) throw std::runtime_error(std::string("the module does not import ") + name);
  return entry;
}

void write_entry(void** entry, void* function) {
  DWORD protection = 0;
  VirtualProtect(entry, sizeof *entry, PAGE_READWRITE, &protection);
  *entry = function;
  VirtualProtect(entry, sizeof *entry, protection, &protection);
}

}  // namespace

void for_each_import(HMODULE module, const std::function<void(const std::string& name, void** entry)>& visit) {
  const auto* headers = at<IMAGE_NT_HEADERS>(module, static_cast<ULONGLONG>(at<IMAGE_DOS_HEADER>(module, 0)->e_lfanew));
  const auto& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  for (auto* library = at<IMAGE_IMPORT_DESCRIPTOR>(module, directory.VirtualAddress); library->Name; ++library) {
    auto* name = at<IMAGE_THUNK_DATA>(module, library->OriginalFirstThunk);
    auto* entry = at<void*>(module, library->FirstThunk);
    for (; name->u1.AddressOfData; ++name, ++entry) {
      visit(IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)
                ? '#' + std::to_string(IMAGE_ORDINAL(name->u1.Ordinal))
                : std::string(at<IMAGE_IMPORT_BY_NAME>(module, name->u1.AddressOfData)->Name),
            entry);
    }
  }
}

bool imports(HMODULE module, const char* name) { return import_entry(module, name) != nullptr; }

ImportPatch::ImportPatch(HMODULE module, const char* name, void* function)
    : ImportPatch(require_import(module, name), function) {}

ImportPatch::ImportPatch(void** entry, void* function) : entry_(entry), original_(*entry) {
  write_entry(entry_, function);
}

ImportPatch::~ImportPatch() { write_entry(entry_, original_); }

}  // namespace test_support
