#include <cstring>
#include <string_view>

#include "find.h"
#include "platform/ns_util.h"

namespace {

// Moves `text` behind the first occurrence of each piece of `pieces`, a pattern that ends in "*".
bool SkipPieces(std::string_view& text, std::string_view pieces) {
  while (!pieces.empty()) {
    const size_t star = pieces.find('*');
    const size_t found = VARNEL_INTERNAL::FindLinear(text, pieces.substr(0, star));
    if (found == std::string_view::npos) return false;
    text.remove_prefix(found + star);
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

  std::string_view rest = text + head;
  std::string_view tail = star + 1;
  const std::string_view pieces = tail.substr(0, tail.rfind('*') + 1);
  tail.remove_prefix(pieces.size());
  return SkipPieces(rest, pieces) && rest.size() >= tail.size() &&
         rest.compare(rest.size() - tail.size(), tail.size(), tail) == 0;
}

}  // namespace

namespace NS_UTIL {

int RepalaceSensInfo::strmcmp(const char* text, const char* pattern) {
  return text != nullptr && pattern != nullptr && Matches(text, pattern) ? 1 : 0;
}

}  // namespace NS_UTIL
