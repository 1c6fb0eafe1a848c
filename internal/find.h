#ifndef VARNEL_INTERNAL_FIND_H
#define VARNEL_INTERNAL_FIND_H

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

namespace VARNEL_INTERNAL {

/// How common each byte is in reports and commands, 0 for the rarest. A guess, on which only the speed rests.
constexpr std::array<unsigned char, 256> Commonness() {
  constexpr std::string_view RARE_TO_COMMON =
      "ZzQqXxJjKk_;\"'/()#*[]VvWwYyBbHhGgFfPpMmUuCcDd:LlRrSsIiNnOoAaTtEe98765432=,.-\t\n\r10 ";
  std::array<unsigned char, 256> common{};
  for (size_t i = 0; i < RARE_TO_COMMON.size(); ++i)
    common[static_cast<unsigned char>(RARE_TO_COMMON[i])] = static_cast<unsigned char>(i + 1);
  return common;
}

inline constexpr std::array<unsigned char, 256> COMMONNESS = Commonness();

/// Position of the rarest among the first and the last few bytes of a text that is not empty.
constexpr size_t RarestByte(std::string_view text) {
  constexpr size_t LOOKED_AT = 4;  // on each side: looking at more costs more than it saves
  size_t rarest = 0;
  unsigned int commonness = ~0U;
  const auto look = [&](size_t from, size_t to) {
    for (size_t i = from; i < to; ++i) {
      const unsigned int own = COMMONNESS[static_cast<unsigned char>(text[i])];
      rarest = own < commonness ? i : rarest;
      commonness = own < commonness ? own : commonness;
    }
  };
  look(0, std::min(text.size(), LOOKED_AT));
  look(std::max(text.size(), 2 * LOOKED_AT) - LOOKED_AT, text.size());
  return rarest;
}

/// What a search for a rare byte may waste on places that turn out wrong, before it is to give up for a search that is
/// linear in any case.
class SearchBudget {
 public:
  /// @param scanned  bytes behind which the search is. @param compared  bytes that a comparison may have looked at.
  bool IsSpentBy(size_t scanned, size_t compared) {
    m_wasted += CALL + compared;
    return m_wasted > START + scanned;
  }

 private:
  static constexpr size_t CALL = 64;  // bytes that pass in the time of one further call
  static constexpr size_t START = 512;
  size_t m_wasted = 0;
};

/// Searches texts for a piece. Takes linear time whatever the two are, and of usual texts looks only at the places
/// where the piece's rarest byte stands, which memchr() finds many bytes at a time.
class Finder {
 public:
  /// @param piece  must outlive the finder's use.
  constexpr explicit Finder(std::string_view piece) : m_piece(piece), m_rare(piece.empty() ? 0 : RarestByte(piece)) {}

  /// Position of the first occurrence at or behind `from`, which is not behind the end, or std::string_view::npos.
  size_t Find(std::string_view text, size_t from = 0) const {
    if (m_piece.empty()) return from;
    SearchBudget budget;
    for (size_t at = from; text.size() - at >= m_piece.size();) {
      const size_t places = text.size() - at - m_piece.size() + 1;
      const void* found = std::memchr(text.data() + at + m_rare, m_piece[m_rare], places);
      if (found == nullptr) break;
      at = Offset(text, found) - m_rare;
      if (std::memcmp(text.data() + at, m_piece.data(), m_piece.size()) == 0) return at;
      ++at;
      if (budget.IsSpentBy(at - from, m_piece.size())) return FindAnyhow(text, at);
    }
    return std::string_view::npos;
  }

  std::string_view Piece() const { return m_piece; }

 private:
  static size_t Offset(std::string_view text, const void* found) {
    return static_cast<size_t>(static_cast<const char*>(found) - text.data());
  }

  // memmem is linear where std::string_view::find is not.
  size_t FindAnyhow(std::string_view text, size_t from) const {
    const void* found = memmem(text.data() + from, text.size() - from, m_piece.data(), m_piece.size());
    return found == nullptr ? std::string_view::npos : Offset(text, found);
  }

  std::string_view m_piece;
  size_t m_rare;
};

/// Position of the first occurrence of `piece` at or behind `from`, which is not behind the end, or
/// std::string_view::npos.
inline size_t FindLinear(std::string_view text, std::string_view piece, size_t from = 0) {
  return Finder(piece).Find(text, from);
}

/// The longest piece for which strstr() takes linear time: its comparisons then cost no more than a constant.
constexpr size_t STRSTR_LIMIT = 32;

/// strstr() in linear time.
inline const char* FindInString(const char* text, const char* piece) {
  const size_t size = std::strlen(piece);
  if (size <= STRSTR_LIMIT) return std::strstr(text, piece);
  const size_t found = FindLinear(text, {piece, size});
  return found == std::string_view::npos ? nullptr : text + found;
}

}  // namespace VARNEL_INTERNAL

#endif
