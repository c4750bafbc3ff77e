#include "CallCounter.h"

#include <array>
#include <cstring>
#include <new>

namespace bench {

namespace {

constexpr SIZE_T page_size = 65'536;

std::uint64_t call_count = 0;
std::uint64_t message_count = 0;

LRESULT CALLBACK count_message(int code, WPARAM wParam, LPARAM lParam) {
  if (code == HC_ACTION) ++message_count;
  return CallNextHookEx(nullptr, code, wParam, lParam);
}

/// Libraries export variables too.
bool is_code(const void* address) {
  MEMORY_BASIC_INFORMATION memory = {};
  constexpr DWORD executable = PAGE_EXECUTE | PAGE_EXECUTE_READ | PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
  return VirtualQuery(address, &memory, sizeof memory) != 0 && (memory.Protect & executable) != 0;
}

void* executable_page() {
  void* page = VirtualAlloc(nullptr, page_size, MEM_COMMIT | MEM_RESERVE, PAGE_EXECUTE_READWRITE);
  if (!page) throw std::bad_alloc();
  return page;
}

void free_page(void* page) { VirtualFree(page, 0, MEM_RELEASE); }

}  // namespace

CallCounter::CallCounter() : hook_(SetWindowsHookExW(WH_CALLWNDPROC, count_message, nullptr, GetCurrentThreadId())) {
  patch_module(GetModuleHandleW(nullptr));
  if (HMODULE module = GetModuleHandleW(L"zdExpirationRules.dll")) patch_module(module);
}

CallCounter::~CallCounter() {
  // The pages that the patches lead to are freed after this.
  patches_.clear();
  UnhookWindowsHookEx(hook_);
}

Counts CallCounter::counts() noexcept { return {call_count, message_count}; }

void CallCounter::patch_module(HMODULE module) {
  test_support::for_each_import(module, [&](const std::string&, void** entry) {
    if (is_code(*entry)) patches_.emplace_back(entry, counting_entry(*entry));
  });
}

void* CallCounter::counting_entry(void* function) {
  constexpr std::size_t counter_at = 10;
  constexpr std::size_t function_at = 30;
  // push rax; pushfq; mov rax, &call_count; inc qword [rax]; popfq; pop rax; jmp [rip]; function
  std::array<unsigned char, 40> code = {0x50, 0x9C, 0x90, 0x90, 0x90, 0x90, 0x90, 0x90, 0x48, 0xB8, 0,    0, 0, 0, 0,
                                        0,    0,    0,    0x48, 0xFF, 0x00, 0x9D, 0x58, 0x90, 0xFF, 0x25, 0, 0, 0, 0};
  std::uint64_t* counter = &call_count;
  std::memcpy(code.data() + counter_at, &counter, sizeof counter);
  std::memcpy(code.data() + function_at, &function, sizeof function);
  if (pages_.empty() || used_ + code.size() > page_size) {
    pages_.emplace_back(executable_page(), &free_page);
    used_ = 0;
  }
  void* entry = static_cast<unsigned char*>(pages_.back().get()) + used_;
  std::memcpy(entry, code.data(), code.size());
  used_ += code.size();
  return entry;
}

}  // namespace bench
