#ifndef VARNEL_SRC_FIND_H
#define VARNEL_SRC_FIND_H

#include <cstring>
#include <string_view>

namespace VARNEL_COMMON {

/// Position of the first occurrence of `piece` at or behind `from`, or std::string_view::npos. Unlike
/// std::string_view::find it takes linear time whatever the two texts are.
inline size_t FindLinear(std::string_view text, std::string_view piece, size_t from = 0) {
  const void* found = memmem(text.data() + from, text.size() - from, piece.data(), piece.size());
  if (found == nullptr) return std::string_view::npos;
  return static_cast<size_t>(static_cast<const char*>(found) - text.data());
}

}  // namespace VARNEL_COMMON

#endif
