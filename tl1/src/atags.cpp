#include "atags.h"

#include "chars.h"

namespace VARNEL_TL1 {

namespace {

std::optional<uint64_t> NumberOf(std::string_view atag) {
  constexpr size_t MAX_DIGITS = 18;
  const std::string_view digits = atag.substr(0, atag.find('.'));
  if (digits.size() > MAX_DIGITS || !AllOf(digits, IsDigit)) return std::nullopt;
  uint64_t number = 0;
  for (const char digit : digits)
    number = number * 10 + static_cast<uint64_t>(digit - '0');
  return number;
}

}  // namespace

std::optional<uint64_t> Atags::Missed(const Message& message) {
  if (message.type != MessageType::Autonomous || message.bare) return std::nullopt;
  const auto number = NumberOf(message.atag);
  if (!number) return std::nullopt;
  const auto last = m_last.find(message.sid);
  if (last == m_last.end()) {
    if (m_last.size() < MAX_SIDS) m_last.emplace(message.sid, *number);
    return std::nullopt;
  }
  const uint64_t before = last->second;
  last->second = *number;
  if (*number < before) return std::nullopt;
  return *number == before ? 0 : *number - before - 1;
}

}  // namespace VARNEL_TL1
