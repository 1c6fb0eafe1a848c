#ifndef VARNEL_TESTS_UNPRIVILEGED_H
#define VARNEL_TESTS_UNPRIVILEGED_H

#include <functional>

namespace VARNEL_TEST {

/// Runs a check in a child process that has given up root's rights, and gives its answer. The child shares no memory
/// with the test: what it finds out must be in the answer.
bool HoldsUnprivileged(const std::function<bool()>& check);

}  // namespace VARNEL_TEST

#endif
