#include "FailingNew.h"

#include <cstdlib>
#include <new>

#include "FaultLoop.h"

namespace {

test_support::FaultCounter counter;

void* allocate(std::size_t size) {
  if (counter.next_call_fails()) throw std::bad_alloc();
  if (void* block = std::malloc(size != 0 ? size : 1)) return block;
  throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void operator delete(void* block) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t) noexcept { std::free(block); }

namespace test_support {

FailingNew::FailingNew(std::size_t number) { counter.arm(number); }

FailingNew::~FailingNew() { counter.clear_faults(); }

void FailingNew::fail_next() { counter.arm(1); }

bool FailingNew::has_failed() const { return counter.has_failed(); }

}  // namespace test_support
