#include "chars.h"

namespace VARNEL_TL1 {

namespace {

bool IsHigh(char c) {
  return static_cast<unsigned char>(c) >= 0x80;
}
bool IsContinuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) == 0x80;
}

// Bytes of 80 and above that could be whole characters of UTF-8.
bool IsUtf8(std::string_view bytes) {
  while (!bytes.empty()) {
    const auto first = static_cast<unsigned char>(bytes.front());
    const size_t length = first < 0xC0 ? 0 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    if (length == 0 || bytes.size() < length || !AllOf(bytes.substr(1, length - 1), IsContinuation)) return false;
    bytes.remove_prefix(length);
  }
  return true;
}

}  // namespace

bool EndsInsideCharacter(std::string_view text) {
  if (text.empty() || !IsHigh(text.back())) return false;
  size_t begin = text.size();
  while (begin > 0 && IsHigh(text[begin - 1]))
    --begin;
  const std::string_view run = text.substr(begin);
  return run.size() % 2 == 1 && !IsUtf8(run);
}

size_t BackslashesBefore(std::string_view text, size_t pos) {
  size_t first = pos;
  while (first > 0 && text[first - 1] == '\\')
    --first;
  if (first == pos) return 0;
  return pos - first - (EndsInsideCharacter(text.substr(0, first)) ? 1U : 0U);
}

size_t FindQuote(std::string_view text, size_t begin) {
  size_t quote = text.find('"', begin);
  while (quote != std::string_view::npos && quote > 0 && text[quote - 1] == '\\' &&
         BackslashesBefore(text, quote) % 2 == 1)
    quote = text.find('"', quote + 1);
  return std::min(quote, text.size());
}

}  // namespace VARNEL_TL1
