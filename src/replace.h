#ifndef VARNEL_SRC_REPLACE_H
#define VARNEL_SRC_REPLACE_H

#include <string>
#include <string_view>

namespace VARNEL_COMMON {

/// The text that is left when the first occurrence of `from` is replaced by `to` again and again until none is left,
/// in time linear in the text plus all replacement texts.
///
/// @param from  not empty.
/// @param to    does not contain `from`.
std::string ReplaceRepeatedly(std::string_view text, std::string_view from, std::string_view to);

}  // namespace VARNEL_COMMON

#endif
