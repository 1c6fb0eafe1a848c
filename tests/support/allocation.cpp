#include "allocation.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

thread_local bool t_counting = false;
thread_local size_t t_count = 0;
thread_local size_t t_failAt = 0;
thread_local const char* t_watchedText = nullptr;
thread_local size_t t_found = 0;
std::atomic<size_t> g_live{0};

// Each block is preceded by its size: when it is freed, exactly the requested bytes are searched.
constexpr size_t HEADER = alignof(std::max_align_t);

void* Allocate(size_t size) {
  if (t_counting && ++t_count == t_failAt) throw std::bad_alloc();
  auto* block = static_cast<char*>(size > SIZE_MAX - HEADER ? nullptr : std::malloc(HEADER + size));
  if (block == nullptr) throw std::bad_alloc();
  std::memcpy(block, &size, sizeof size);
  ++g_live;
  return block + HEADER;
}

void Release(void* memory) {
  if (memory == nullptr) return;
  auto* block = static_cast<char*>(memory) - HEADER;
  size_t size;
  std::memcpy(&size, block, sizeof size);
  if (t_watchedText != nullptr && memmem(memory, size, t_watchedText, std::strlen(t_watchedText)) != nullptr) {
    ++t_found;
  }
  --g_live;
  std::free(block);
}

void* AllocateOrNull(size_t size) noexcept {
  try {
    return Allocate(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

}  // namespace

void* operator new(size_t size) {
  return Allocate(size);
}
void* operator new[](size_t size) {
  return Allocate(size);
}
// The nothrow form of the sanitizers does not call this one, but its blocks are deleted here.
void* operator new(size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return AllocateOrNull(size);
}
void* operator new[](size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return AllocateOrNull(size);
}
void operator delete(void* memory) noexcept {
  Release(memory);
}
void operator delete[](void* memory) noexcept {
  Release(memory);
}
void operator delete(void* memory, size_t /*size*/) noexcept {
  Release(memory);
}
void operator delete[](void* memory, size_t /*size*/) noexcept {
  Release(memory);
}
void operator delete(void* memory, const std::nothrow_t& /*tag*/) noexcept {
  Release(memory);
}
void operator delete[](void* memory, const std::nothrow_t& /*tag*/) noexcept {
  Release(memory);
}

namespace VARNEL_TEST {

AllocationGuard::AllocationGuard(size_t failAt) {
  t_count = 0;
  t_failAt = failAt;
  t_counting = true;
}

AllocationGuard::~AllocationGuard() {
  t_counting = false;
}

size_t AllocationGuard::Count() const {
  return t_count;
}

size_t LiveAllocations() {
  return g_live;
}

FreedTextWatch::FreedTextWatch(const char* text) {
  t_found = 0;
  t_watchedText = text;
}

FreedTextWatch::~FreedTextWatch() {
  t_watchedText = nullptr;
}

size_t FreedTextWatch::Found() const {
  return t_found;
}

}  // namespace VARNEL_TEST
