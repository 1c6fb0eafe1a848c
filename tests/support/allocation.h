#ifndef VARNEL_TESTS_ALLOCATION_H
#define VARNEL_TESTS_ALLOCATION_H

#include <cstddef>
#include <new>
#include <utility>

/// Observes operator new and delete of the whole test program, on the calling thread only.
namespace VARNEL_TEST {

/// While it exists, the N-th allocation fails, and allocations are counted.
class AllocationGuard {
 public:
  /// @param failAt  which allocation throws std::bad_alloc; 0 for none.
  explicit AllocationGuard(size_t failAt = 0);
  ~AllocationGuard();
  AllocationGuard(const AllocationGuard&) = delete;
  AllocationGuard& operator=(const AllocationGuard&) = delete;
  size_t Count() const;
};

/// Allocations that are live on any thread; equal before and after means that nothing leaked.
size_t LiveAllocations();

/// While it exists, counts freed blocks that still contain a text.
class FreedTextWatch {
 public:
  explicit FreedTextWatch(const char* text);
  ~FreedTextWatch();
  FreedTextWatch(const FreedTextWatch&) = delete;
  FreedTextWatch& operator=(const FreedTextWatch&) = delete;
  size_t Found() const;
};

/// Runs `operation` with its first, second, third … allocation failing until a run sees no failure. Each failing run
/// must end in std::bad_alloc; `afterFailure` then checks the state.
///
/// @return the number of failing runs.
template <typename Operation, typename Check>
size_t FailEachAllocation(Operation operation, Check afterFailure) {
  for (size_t n = 1;; ++n) {
    bool failed = false;
    try {
      const AllocationGuard guard(n);
      operation();
    } catch (const std::bad_alloc&) {
      failed = true;
    }
    if (!failed) return n - 1;
    afterFailure();
  }
}

}  // namespace VARNEL_TEST

#endif
