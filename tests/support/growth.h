#ifndef VARNEL_TESTS_GROWTH_H
#define VARNEL_TESTS_GROWTH_H

#include <malloc.h>

#include <ctime>

#include <algorithm>
#include <cstddef>
#include <limits>

namespace VARNEL_TEST {

/// Processor seconds of the fastest of three runs.
template <typename Operation>
double Cost(Operation operation) {
  double best = std::numeric_limits<double>::max();
  for (int run = 0; run < 3; ++run) {
    timespec start, end;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &start);
    operation();
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &end);
    best = std::min(
        best, static_cast<double>(end.tv_sec - start.tv_sec) + static_cast<double>(end.tv_nsec - start.tv_nsec) * 1e-9);
  }
  return best;
}

constexpr double LINEAR_GROWTH = 64;

/// Keeps large blocks on the heap: requesting new pages from the system for each of them costs more than using them.
inline void KeepPages() {
  constexpr int LARGEST_THRESHOLD = 32 << 20;
  mallopt(M_MMAP_THRESHOLD, LARGEST_THRESHOLD);
  mallopt(M_TRIM_THRESHOLD, 8 * LARGEST_THRESHOLD);
}

/// The cost of 16 times the input divided by the cost of the input: about 16 for a linear operation, about 256 for a
/// quadratic one. Compare with LINEAR_GROWTH. Other load on the machine only makes it worse, so the best of some
/// attempts is returned.
///
/// @param prepare  creates the input of a size; @param operation receives a copy of it.
template <typename Prepare, typename Operation>
double Growth(size_t size, Prepare prepare, Operation operation) {
  KeepPages();
  const auto small = prepare(size);
  const auto large = prepare(size * 16);
  double growth = std::numeric_limits<double>::max();
  for (int attempt = 0; attempt < 5 && growth > LINEAR_GROWTH / 2; ++attempt) {
    const double smallCost = Cost([&] { operation(small); });
    growth = std::min(growth, Cost([&] { operation(large); }) / std::max(smallCost, 1e-7));
  }
  return growth;
}

/// Input size for searches with a hit at nearly every character. The address sanitizer examines the whole rest of the
/// text at each memmem(), which is quadratic for larger texts.
#ifdef __SANITIZE_ADDRESS__
constexpr size_t MANY_HITS = 1000;
#else
constexpr size_t MANY_HITS = 10000;
#endif

}  // namespace VARNEL_TEST

#endif
