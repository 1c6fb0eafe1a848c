#include <cstring>
#include <string_view>

#include "platform/ns_util.h"

namespace {

// Cuts the piece up to the next "*" off the front of the pattern, and the "*" with it.
std::string_view TakePiece(std::string_view& pattern) {
  const size_t star = pattern.find('*');
  const std::string_view piece = pattern.substr(0, star);
  pattern.remove_prefix(star + 1);
  return piece;
}

// Moves `text` behind the first occurrence of `piece`. memmem is linear where std::string_view::find is not.
bool SkipPast(std::string_view& text, std::string_view piece) {
  if (piece.empty()) return true;
  const void* found = memmem(text.data(), text.size(), piece.data(), piece.size());
  if (found == nullptr) return false;
  text.remove_prefix(static_cast<size_t>(static_cast<const char*>(found) - text.data()) + piece.size());
  return true;
}

// The pieces between two "*" may each be taken at their first occurrence: a later one leaves less text for the rest.
bool Matches(std::string_view text, std::string_view pattern) {
  const size_t lastStar = pattern.rfind('*');
  if (lastStar == std::string_view::npos) return text == pattern;
  const std::string_view tail = pattern.substr(lastStar + 1);
  pattern.remove_suffix(tail.size());

  const std::string_view head = TakePiece(pattern);
  if (text.substr(0, head.size()) != head) return false;
  text.remove_prefix(head.size());
  while (!pattern.empty()) {
    if (!SkipPast(text, TakePiece(pattern))) return false;
  }
  return text.size() >= tail.size() && text.substr(text.size() - tail.size()) == tail;
}

}  // namespace

namespace NS_UTIL {

int RepalaceSensInfo::strmcmp(const char* text, const char* pattern) {
  return text != nullptr && pattern != nullptr && Matches(text, pattern) ? 1 : 0;
}

}  // namespace NS_UTIL
