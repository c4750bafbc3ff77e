#include <cxxabi.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <exception>

// The memory of exceptions: the heap's and, when the heap has none, a few blocks of the module's own. The compiler's
// runtime reserves 70 KB of the heap for that when the module is loaded, does not free them when it is unloaded, and
// guards them with a lock whose first use needs memory itself: an exception without memory would end in another one,
// and that in the next, until the stack is used up. Here nothing is reserved and no lock is needed.

namespace {

/// At least the size of what the runtime keeps in front of a thrown object, and a multiple of its alignment.
constexpr std::size_t header_size = 256;
constexpr std::size_t alignment = 16;

constexpr std::size_t block_count = 16;
using Block = std::array<char, 2 * header_size>;

alignas(alignment) std::array<Block, block_count> blocks;
std::array<std::atomic<bool>, block_count> in_use;

/// Returns memory whose first `header_size` bytes are zero. Ends the process when there is none anywhere.
void* allocate(std::size_t size) noexcept {
  void* memory = std::malloc(size);  // NOLINT(cppcoreguidelines-no-malloc): the runtime owns it
  for (std::size_t index = 0; !memory && size <= sizeof(Block) && index < block_count; ++index) {
    if (!in_use[index].exchange(true, std::memory_order_acquire)) memory = blocks[index].data();
  }
  if (!memory) std::terminate();
  return std::memset(memory, 0, header_size);
}

void release(void* memory) noexcept {
  const std::uintptr_t offset = reinterpret_cast<std::uintptr_t>(memory) - reinterpret_cast<std::uintptr_t>(&blocks);
  if (offset < sizeof blocks) {
    in_use[offset / sizeof(Block)].store(false, std::memory_order_release);
  } else {
    std::free(memory);  // NOLINT(cppcoreguidelines-no-malloc): the runtime owns it
  }
}

}  // namespace

// The compiler and the runtime choose these names.
// NOLINTBEGIN(bugprone-reserved-identifier)
namespace __cxxabiv1 {

/// Returns the address of a thrown object of this size, which follows the header.
extern "C" void* __cxa_allocate_exception(std::size_t size) noexcept {
  return static_cast<char*>(allocate(header_size + size)) + header_size;
}

extern "C" void __cxa_free_exception(void* object) noexcept { release(static_cast<char*>(object) - header_size); }

/// Returns the header of an exception whose object another one holds, as `std::rethrow_exception` throws it.
extern "C" __cxa_dependent_exception* __cxa_allocate_dependent_exception() noexcept {
  return static_cast<__cxa_dependent_exception*>(allocate(header_size));
}

extern "C" void __cxa_free_dependent_exception(__cxa_dependent_exception* header) noexcept { release(header); }

}  // namespace __cxxabiv1
// NOLINTEND(bugprone-reserved-identifier)
