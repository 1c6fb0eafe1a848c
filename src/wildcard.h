#ifndef VARNEL_SRC_WILDCARD_H
#define VARNEL_SRC_WILDCARD_H

#include <string_view>

namespace VARNEL_COMMON {

/// The matcher behind strmcmpnocase(), in time linear in text and pattern.
bool MatchesNoCase(std::string_view text, std::string_view pattern);

}  // namespace VARNEL_COMMON

#endif
