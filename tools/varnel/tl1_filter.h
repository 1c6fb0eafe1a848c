#ifndef VARNEL_TOOLS_TL1_FILTER_H
#define VARNEL_TOOLS_TL1_FILTER_H

#include <message.h>

#include <CLI/CLI.hpp>
#include <string>
#include <string_view>
#include <vector>

/// True if a pattern matches all of a text, with "*" for any run of characters and "?" for one. Ignores the case of
/// ASCII letters.
bool MatchesPattern(std::string_view pattern, std::string_view text);

/// Selects messages by lists of patterns for their fields.
class Tl1Filter {
 public:
  /// Adds --type, --sid, --verb, --ctag, --code and --severity.
  void AddOptions(CLI::App& command);

  /// True if each list that is set contains a pattern that matches the message. A missing field matches no pattern.
  bool Passes(const VARNEL_TL1::Message& message) const;

 private:
  using List = std::vector<std::string>;

  List m_types, m_sids, m_verbs, m_ctags, m_codes, m_severities;
};

#endif
