#include "RemoteMemory.h"

#include <stdexcept>

namespace tour {

namespace {

HANDLE open_process(HWND window) {
  DWORD id = 0;
  GetWindowThreadProcessId(window, &id);
  return OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE, id);
}

void check(BOOL done) {
  if (!done) throw std::runtime_error("the other process does not lend its memory");
}

}  // namespace

RemoteMemory::RemoteMemory(HWND window, size_t size)
    : process_(open_process(window)),
      memory_(VirtualAllocEx(process_.get(), nullptr, size, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE)) {
  check(memory_ != nullptr);
}

RemoteMemory::~RemoteMemory() { VirtualFreeEx(process_.get(), memory_, 0, MEM_RELEASE); }

void RemoteMemory::write(size_t offset, const void* data, size_t size) const {
  check(WriteProcessMemory(process_.get(), at(offset), data, size, nullptr));
}

void RemoteMemory::read(size_t offset, void* data, size_t size) const {
  check(ReadProcessMemory(process_.get(), at(offset), data, size, nullptr));
}

}  // namespace tour
