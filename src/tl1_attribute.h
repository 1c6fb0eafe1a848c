#ifndef VARNEL_SRC_TL1_ATTRIBUTE_H
#define VARNEL_SRC_TL1_ATTRIBUTE_H

#include <algorithm>
#include <optional>
#include <string_view>

namespace VARNEL_COMMON {

/// The value of a TL1 attribute: what stands behind its name, up to the first ",", or where there is none up to the
/// first double quote, or where there is neither up to the end of the text. Nothing when the text ends behind the name.
///
/// @param found  where the name, which is `nameSize` long, stands in the text. A "," or quote in the name itself makes
///               the value empty.
inline std::optional<std::string_view> AttributeValue(std::string_view text, size_t found, size_t nameSize) {
  size_t end = text.find(',', found);
  if (end == std::string_view::npos) end = text.find('"', found);
  const size_t start = found + nameSize;
  if (end == std::string_view::npos && start == text.size()) return std::nullopt;
  return text.substr(start, std::max(end, start) - start);
}

}  // namespace VARNEL_COMMON

#endif
