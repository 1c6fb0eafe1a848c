#ifndef VARNEL_SRC_PIECE_H
#define VARNEL_SRC_PIECE_H

#include <string>
#include <string_view>
#include <vector>

namespace VARNEL_COMMON {

/// What a string holds without memory of its own. So short a piece of a text is copied together with what follows it,
/// and then cut: a copy of known size is cheaper than a call.
constexpr size_t SHORT_PIECE = 15;

/// Appends the piece of a text that begins at `start`.
inline void AppendPiece(std::vector<std::string>& pieces, std::string_view text, size_t start, size_t size) {
  const char* piece = text.data() + start;
  if (size <= SHORT_PIECE && text.size() - start >= SHORT_PIECE) {
    pieces.emplace_back(piece, SHORT_PIECE).erase(size);
  } else {
    pieces.emplace_back(piece, size);
  }
}

inline std::string CopyOfShortPiece(const char* piece, size_t size) {
  std::string copy(piece, SHORT_PIECE);
  copy.erase(size);
  return copy;
}

/// Copies a piece at whose start SHORT_PIECE bytes can be read whatever its size is.
inline std::string CopyOf(std::string_view piece) {
  return piece.size() <= SHORT_PIECE ? CopyOfShortPiece(piece.data(), piece.size()) : std::string(piece);
}

}  // namespace VARNEL_COMMON

#endif
