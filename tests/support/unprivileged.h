#ifndef VARNEL_TESTS_UNPRIVILEGED_H
#define VARNEL_TESTS_UNPRIVILEGED_H

#include <functional>

namespace VARNEL_TEST {

/// Runs a check in a child process without root's rights and returns its result. The child shares no memory with the
/// test: only the result is passed back.
bool HoldsUnprivileged(const std::function<bool()>& check);

}  // namespace VARNEL_TEST

#endif
