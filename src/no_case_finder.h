#ifndef VARNEL_SRC_NO_CASE_FINDER_H
#define VARNEL_SRC_NO_CASE_FINDER_H

#include <algorithm>
#include <string_view>

#include "chars.h"
#include "find.h"
#include "literal_automaton.h"

namespace VARNEL_COMMON {

/// Searches texts for a literal in whatever case: as VARNEL_INTERNAL::Finder does, by the literal's rarest byte first,
/// and where that stands too often by an automaton.
class NoCaseFinder {
 public:
  /// @param literal  not empty; must outlive the finder's use.
  void Assign(std::string_view literal) {
    m_literal = literal;
    m_rare = VARNEL_INTERNAL::RarestByte(literal);
    m_useAutomaton = false;
    m_budget = {};
    m_scanned = 0;
  }

  /// Position behind the first occurrence at or behind `from`, or std::string_view::npos.
  size_t FindEnd(std::string_view text, size_t from) {
    for (size_t at = from; !m_useAutomaton; ++at) {
      const size_t place = FindRare(text, at + m_rare);
      if (place == std::string_view::npos || text.size() - (place - m_rare) < m_literal.size()) {
        return std::string_view::npos;
      }
      m_scanned += place - m_rare - at;
      at = place - m_rare;
      if (OccursAt(text, at)) return at + m_literal.size();
      if (!m_budget.IsSpentBy(m_scanned, m_literal.size())) continue;
      m_automaton.Assign(m_literal);
      m_useAutomaton = true;
      from = at;
    }
    return m_automaton.FindEnd(text, from);
  }

 private:
  // The windows grow, so that the case that is missing costs no more than finding the other one.
  size_t FindRare(std::string_view text, size_t from) const {
    const char lower = ToLower(m_literal[m_rare]);
    const char upper = ToUpper(lower);
    for (size_t window = 256; from < text.size(); from += window, window *= 2) {
      std::string_view part = text.substr(from, window);
      size_t found = part.find(lower);
      if (lower != upper) found = std::min(found, part.substr(0, found).find(upper));
      if (found != std::string_view::npos) return from + found;
    }
    return std::string_view::npos;
  }

  bool OccursAt(std::string_view text, size_t at) const {
    return std::equal(m_literal.begin(), m_literal.end(), text.begin() + static_cast<std::ptrdiff_t>(at), SameNoCase);
  }

  std::string_view m_literal;
  size_t m_rare = 0;
  VARNEL_INTERNAL::SearchBudget m_budget;  // kept between searches for the same literal
  size_t m_scanned = 0;
  bool m_useAutomaton = false;
  LiteralAutomaton<SameNoCase> m_automaton;
};

}  // namespace VARNEL_COMMON

#endif
