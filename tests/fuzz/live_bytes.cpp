#include "live_bytes.h"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

size_t g_live = 0;
size_t g_peak = 0;

}  // namespace

namespace VARNEL_FUZZ {

size_t PeakBytes() {
  return g_peak;
}

size_t ResetPeak() {
  return g_peak = g_live;
}

}  // namespace VARNEL_FUZZ

void* operator new(size_t size, const std::nothrow_t& /*tag*/) noexcept {
  void* block = std::malloc(std::max(size, size_t{1}));
  g_live += block == nullptr ? 0 : malloc_usable_size(block);
  g_peak = std::max(g_peak, g_live);
  return block;
}

void* operator new(size_t size) {
  void* block = operator new(size, std::nothrow);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

void* operator new[](size_t size) {
  return operator new(size);
}

void* operator new[](size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return operator new(size, std::nothrow);
}

void operator delete(void* block) noexcept {
  g_live -= block == nullptr ? 0 : malloc_usable_size(block);
  std::free(block);
}

void operator delete[](void* block) noexcept {
  operator delete(block);
}

void operator delete(void* block, size_t /*size*/) noexcept {
  operator delete(block);
}

void operator delete[](void* block, size_t /*size*/) noexcept {
  operator delete(block);
}

void operator delete(void* block, const std::nothrow_t& /*tag*/) noexcept {
  operator delete(block);
}

void operator delete[](void* block, const std::nothrow_t& /*tag*/) noexcept {
  operator delete(block);
}
