#ifndef VARNEL_BENCH_ALLOCATIONS_H
#define VARNEL_BENCH_ALLOCATIONS_H

#include <cstddef>
#include <cstdio>
#include <cstdlib>

namespace VARNEL_BENCH {

/// Calls of operator new on this thread since the program began.
size_t Allocations();

/// Ends the program when an operation allocates.
template <typename Run>
void MustNotAllocate(const char* what, Run run) {
  const size_t before = Allocations();
  run();
  const size_t count = Allocations() - before;
  if (count == 0) return;
  std::fprintf(stderr, "%s: %zu allocations where there must be none\n", what, count);
  std::exit(EXIT_FAILURE);
}

}  // namespace VARNEL_BENCH

#endif
