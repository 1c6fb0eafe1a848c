#ifndef VARNEL_FUZZ_KEPT_LOG_H
#define VARNEL_FUZZ_KEPT_LOG_H

#include <string>
#include <vector>

/// Replaces the platform's log service: lines are kept instead of written. The rest of the platform is unchanged.
namespace VARNEL_FUZZ {

struct KeptLine {
  std::string function;
  std::string text;
};

/// The lines of the current input; a target that examines them clears them first.
std::vector<KeptLine>& KeptLog();

}  // namespace VARNEL_FUZZ

#endif
