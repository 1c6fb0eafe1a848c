#ifndef VARNEL_TESTS_UNIT_OPERATIONS_H
#define VARNEL_TESTS_UNIT_OPERATIONS_H

#include <functional>
#include <string>
#include <vector>

namespace VARNEL_TEST {

/// The state of an object or the outputs of a function, part by part.
using State = std::vector<std::string>;

/// An object or the outputs of a function, ready for one operation.
struct Trial {
  std::function<void()> run;
  std::function<State()> state;
};

/// The state after an operation that throws.
enum class Promise {
  Whole,     ///< all as before or all as after
  EachPart,  ///< each part as before or as after
  Usable,    ///< nothing but that the object can be used
  Entries,   ///< entries read so far stay: parts as after, and some at the end may be missing
};

/// An operation on the library's interface. Each prepare() returns the same trial.
struct Operation {
  std::string name;  ///< as in the list of exported names, without arguments
  std::function<Trial()> prepare;
  Promise promise = Promise::Whole;
};

/// Every exported operation, most of them more than once.
///
/// @param folder  the files that operations read are written to it.
std::vector<Operation> EveryOperation(const std::string& folder);

}  // namespace VARNEL_TEST

#endif
