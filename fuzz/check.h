#ifndef VARNEL_FUZZ_CHECK_H
#define VARNEL_FUZZ_CHECK_H

#include <cstdio>
#include <cstdlib>

namespace VARNEL_FUZZ {

[[noreturn]] inline void Fail(const char* condition, const char* file, int line) {
  std::fprintf(stderr, "%s:%d: does not hold: %s\n", file, line, condition);
  std::abort();
}

}  // namespace VARNEL_FUZZ

/// Ends the process where a property does not hold, in every kind of build.
#define FUZZ_CHECK(condition) ((condition) ? void() : ::VARNEL_FUZZ::Fail(#condition, __FILE__, __LINE__))

#endif
