#ifndef VARNEL_UTIL_CHECKED_MATH_H
#define VARNEL_UTIL_CHECKED_MATH_H

#include <cstdlib>

namespace VARNEL_UTIL {

/// The sum of two numbers. An overflow ends the process: a wrong slot or date must not be used.
inline int CheckedAdd(int a, int b) {
  int sum;
  if (__builtin_add_overflow(a, b, &sum)) std::abort();
  return sum;
}

}  // namespace VARNEL_UTIL

#endif
