#include <windows.h>

#include <algorithm>
#include <array>
#include <cstddef>

// The thread library that is linked in takes thread-local indexes and keeps them when the module is unloaded. A process
// has about a thousand; without one more, the next module that is loaded ends the host. So the linker leads its calls
// here, and the indexes go with the module.

// The linker and the runtime choose these names.
// NOLINTBEGIN(bugprone-reserved-identifier)

// The C++ runtime keeps 70 KB for exceptions without memory; only this function of it gives them back.
namespace __gnu_cxx {
void __freeres();
}

extern "C" decltype(&TlsAlloc) __real___imp_TlsAlloc;

namespace {

struct RuntimeRemains {
  ~RuntimeRemains() {
    __gnu_cxx::__freeres();
    std::for_each(taken.begin(), taken.begin() + static_cast<std::ptrdiff_t>(count), TlsFree);
  }
  std::array<DWORD, 8> taken = {};
  std::size_t count = 0;
};

/// Made before everything else of the module and therefore the last to go.
[[gnu::init_priority(101)]] constinit RuntimeRemains remains;

DWORD WINAPI take_index() {
  const DWORD index = __real___imp_TlsAlloc();
  if (index != TLS_OUT_OF_INDEXES && remains.count < remains.taken.size()) remains.taken[remains.count++] = index;
  return index;
}

}  // namespace

extern "C" decltype(&TlsAlloc) __wrap___imp_TlsAlloc;
decltype(&TlsAlloc) __wrap___imp_TlsAlloc = take_index;
// NOLINTEND(bugprone-reserved-identifier)
