#pragma once

#include <windows.h>
#include <comdef.h>

#include <new>
#include <stdexcept>

namespace test_support {

/// Everything that a message handler may throw, and the start of the report that it leaves.
struct Thrower {
  const char* name;
  void (*raise)();
  const wchar_t* report;
};

inline const Thrower throwers[] = {
    {"ComError", [] { throw _com_error(E_ACCESSDENIED); }, L"HRESULT - 80070005; FILE - "},
    {"OutOfRange", [] { throw std::out_of_range("row"); }, L"std::out_of_range - row; FILE - "},
    {"BadAlloc", [] { throw std::bad_alloc(); }, L"std::exception - "},
    {"Exception", [] { throw std::runtime_error("odd"); }, L"std::exception - odd; FILE - "},
    {"Number", [] { throw 5; }, L"unknown exception; FILE - "},
};

}  // namespace test_support
