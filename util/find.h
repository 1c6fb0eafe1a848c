#ifndef VARNEL_UTIL_FIND_H
#define VARNEL_UTIL_FIND_H

#include <cstring>
#include <string_view>

namespace VARNEL_UTIL {

/// The longest piece for a plain search: each comparison costs at most a constant, so the search is linear.
constexpr size_t PLAIN_SEARCH_LIMIT = 32;

/// std::string_view::find() in linear time, also if a long piece almost matches everywhere.
inline size_t FindLinear(std::string_view text, std::string_view piece, size_t from = 0) {
  if (piece.size() <= PLAIN_SEARCH_LIMIT || from > text.size()) return text.find(piece, from);
  const void* found = memmem(text.data() + from, text.size() - from, piece.data(), piece.size());
  return found == nullptr ? std::string_view::npos : static_cast<size_t>(static_cast<const char*>(found) - text.data());
}

/// strstr() in linear time.
inline const char* FindInString(const char* text, const char* piece) {
  const std::string_view wanted = piece;
  if (wanted.size() <= PLAIN_SEARCH_LIMIT) return std::strstr(text, piece);
  const size_t found = FindLinear(text, wanted);
  return found == std::string_view::npos ? nullptr : text + found;
}

}  // namespace VARNEL_UTIL

#endif
