#include "allocations.h"

#include <new>

namespace {

thread_local size_t t_allocations = 0;

void* Allocate(size_t size) {
  ++t_allocations;
  void* block = std::malloc(size == 0 ? 1 : size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

}  // namespace

// The forms that are not replaced come to these in the end, but for the aligned ones, which nothing here uses.
void* operator new(size_t size) {
  return Allocate(size);
}
void* operator new[](size_t size) {
  return Allocate(size);
}
void operator delete(void* block) noexcept {
  std::free(block);
}
void operator delete[](void* block) noexcept {
  std::free(block);
}
void operator delete(void* block, size_t /*size*/) noexcept {
  std::free(block);
}
void operator delete[](void* block, size_t /*size*/) noexcept {
  std::free(block);
}

namespace VARNEL_BENCH {

size_t Allocations() {
  return t_allocations;
}

}  // namespace VARNEL_BENCH
