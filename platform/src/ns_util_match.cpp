#include <cstring>
#include <string_view>

#include "find.h"
#include "platform/ns_util.h"

namespace {

using VARNEL_INTERNAL::STRSTR_LIMIT;

// What is left of a text while it is matched.
class Rest {
 public:
  explicit Rest(const char* text) : m_text(text) {}

  // Moves behind the first occurrence of a piece; false where there is none.
  bool SkipPast(std::string_view piece) {
    if (piece.empty()) return true;
    const char* found = piece.size() <= STRSTR_LIMIT ? FindShort(piece) : FindLong(piece);
    if (found == nullptr) return false;
    m_text = found + piece.size();
    return true;
  }

  bool EndsWith(std::string_view tail) {
    return Left() >= tail.size() && std::string_view(End() - tail.size(), tail.size()) == tail;
  }

 private:
  const char* FindShort(std::string_view piece) const {
    char copy[STRSTR_LIMIT + 1];
    copy[piece.copy(copy, STRSTR_LIMIT)] = '\0';
    return std::strstr(m_text, copy);
  }

  const char* FindLong(std::string_view piece) {
    const size_t found = VARNEL_INTERNAL::FindLinear({m_text, Left()}, piece);
    return found == std::string_view::npos ? nullptr : m_text + found;
  }

  // Looked for when it is needed first, as many matches never need it, and once, as there may be many pieces.
  const char* End() {
    if (m_end == nullptr) m_end = m_text + std::strlen(m_text);
    return m_end;
  }

  size_t Left() { return static_cast<size_t>(End() - m_text); }

  const char* m_text;
  const char* m_end = nullptr;
};

// Skips each piece of `pieces`, a pattern that ends in "*".
bool SkipPieces(Rest& rest, std::string_view pieces) {
  while (!pieces.empty()) {
    const size_t star = pieces.find('*');
    if (!rest.SkipPast(pieces.substr(0, star))) return false;
    pieces.remove_prefix(star + 1);
  }
  return true;
}

// The pieces between two "*" may each be taken at their first occurrence: a later one leaves less text for the rest.
bool Matches(const char* text, const char* pattern) {
  const char* star = std::strchr(pattern, '*');
  if (star == nullptr) return std::strcmp(text, pattern) == 0;
  const auto head = static_cast<size_t>(star - pattern);
  if (std::strncmp(text, pattern, head) != 0) return false;

  std::string_view tail = star + 1;
  const std::string_view pieces = tail.substr(0, tail.rfind('*') + 1);
  tail.remove_prefix(pieces.size());
  Rest rest(text + head);
  return SkipPieces(rest, pieces) && (tail.empty() || rest.EndsWith(tail));
}

}  // namespace

namespace NS_UTIL {

int RepalaceSensInfo::strmcmp(const char* text, const char* pattern) {
  return text != nullptr && pattern != nullptr && Matches(text, pattern) ? 1 : 0;
}

}  // namespace NS_UTIL
