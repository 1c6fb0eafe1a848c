#ifndef VARNEL_SRC_REPLACE_H
#define VARNEL_SRC_REPLACE_H

#include <string>
#include <string_view>

#include "find.h"

namespace VARNEL_COMMON {

/// Replaces the first occurrence of `from` by `to` again and again until none is left, in time linear in the text plus
/// all replacement texts.
///
/// @param from      finder of a text that is not empty, which may be `text` itself.
/// @param to        does not contain `from`.
/// @param firstHit  where `from` first occurs.
void ReplaceRepeatedly(std::string& text, const VARNEL_INTERNAL::Finder& from, std::string_view to, size_t firstHit);

}  // namespace VARNEL_COMMON

#endif
