#include "FailingNew.h"

#include <cstdlib>
#include <new>

namespace {

long countdown = 0;
bool failed = false;

void* allocate(std::size_t size) {
  if (countdown > 0 && --countdown == 0) {
    failed = true;
    throw std::bad_alloc();
  }
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

FailingNew::FailingNew(long number) {
  failed = false;
  countdown = number;
}

FailingNew::~FailingNew() { countdown = 0; }

void FailingNew::fail_next() { countdown = 1; }

bool FailingNew::has_failed() const { return failed; }

}  // namespace test_support
