#include "tl1_filter.h"

#include <text.h>

#include <algorithm>

#include "util/chars.h"

using VARNEL_TL1::Message;
using VARNEL_TL1::MessageType;

namespace {

constexpr MessageType TYPES[] = {MessageType::Acknowledgement, MessageType::Response, MessageType::Autonomous,
                                 MessageType::Prompt, MessageType::Unrecognised};

bool SameText(std::string_view one, std::string_view other) {
  return std::equal(one.begin(), one.end(), other.begin(), other.end(), VARNEL_UTIL::SameNoCase);
}

// "*", "**", "*C": in a list of codes these are alarm codes, not patterns.
bool MatchesCode(const std::string& pattern, std::string_view code) {
  const bool alarmCode = pattern.size() <= 2 && pattern.front() == '*';
  return alarmCode ? SameText(pattern, code) : MatchesPattern(pattern, code);
}

template <typename Matches>
bool PassesList(const std::vector<std::string>& list, std::string_view value, Matches matches) {
  if (list.empty()) return true;
  return !value.empty() &&
         std::any_of(list.begin(), list.end(), [&](const std::string& pattern) { return matches(pattern, value); });
}

std::vector<std::string> TypeNames() {
  std::vector<std::string> names;
  for (const MessageType type : TYPES)
    names.emplace_back(VARNEL_TL1::TypeName(type));
  return names;
}

// As OneOf(), but a pattern that matches one is enough.
CLI::Validator OneType() {
  const std::vector<std::string> names = TypeNames();
  const auto check = [names](const std::string& pattern) {
    const bool known =
        std::any_of(names.begin(), names.end(), [&](const std::string& name) { return MatchesPattern(pattern, name); });
    return known ? "" : pattern + " is not one of " + CLI::detail::join(names, ", ");
  };
  return CLI::Validator(check, '{' + CLI::detail::join(names) + '}').non_modifying();
}

std::string CheckPattern(const std::string& pattern) {
  return pattern.empty() ? "has an empty item" : "";
}

}  // namespace

// After a mismatch the last "*" matches one more character: "*ab" at "aab" -> first "", then "a".
bool MatchesPattern(std::string_view pattern, std::string_view text) {
  size_t at = 0, inText = 0;
  size_t afterStar = std::string_view::npos, runEnd = 0;
  while (inText < text.size()) {
    if (at < pattern.size() && pattern[at] == '*') {
      afterStar = ++at;
      runEnd = inText;
    } else if (at < pattern.size() && (pattern[at] == '?' || VARNEL_UTIL::SameNoCase(pattern[at], text[inText]))) {
      ++at;
      ++inText;
    } else if (afterStar != std::string_view::npos) {
      at = afterStar;
      inText = ++runEnd;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*', at) == std::string_view::npos;
}

void Tl1Filter::AddOptions(CLI::App& command) {
  const auto add = [&command](const char* name, List& list) {
    return command.add_option(name, list)->delimiter(',')->allow_extra_args(false)->check(CheckPattern);
  };
  add("--type", m_types)->check(OneType());
  add("--sid", m_sids);
  add("--verb", m_verbs);
  add("--ctag", m_ctags);
  add("--code", m_codes);
  add("--severity", m_severities);
}

bool Tl1Filter::Passes(const Message& message) const {
  return PassesList(m_types, VARNEL_TL1::TypeName(message.type), MatchesPattern) &&
         PassesList(m_sids, message.sid, MatchesPattern) && PassesList(m_verbs, message.verb, MatchesPattern) &&
         PassesList(m_ctags, message.ctag, MatchesPattern) && PassesList(m_codes, message.code, MatchesCode) &&
         (m_severities.empty() || PassesList(m_severities, VARNEL_TL1::Severity(message), MatchesPattern));
}
