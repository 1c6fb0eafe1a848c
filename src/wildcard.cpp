#include "wildcard.h"

#include "no_case_finder.h"

namespace VARNEL_COMMON {

namespace {

constexpr size_t NPOS = std::string_view::npos;

bool IsMeta(char c) {
  return c == '*' || c == '?';
}

class NoCaseMatcher {
 public:
  NoCaseMatcher(std::string_view text, std::string_view pattern) : m_text(text), m_pattern(pattern) {}

  bool Run() {
    Outcome outcome = Outcome::GoOn;
    while (outcome == Outcome::GoOn)
      outcome = Step();
    return outcome == Outcome::Match;
  }

 private:
  enum class Outcome { GoOn, Match, NoMatch };

  Outcome Step() {
    if (PatternAtEnd()) return TextAtEnd() ? Outcome::Match : Outcome::NoMatch;
    if (TextAtEnd()) return m_pattern.find_first_not_of('*', m_p) == NPOS ? Outcome::Match : Outcome::NoMatch;
    switch (m_pattern[m_p]) {
      case '*':
        return StepStar();
      case '?':
        return StepQuestionMark();
      default:
        return StepLiteral();
    }
  }

  // Takes the literal behind the "*" at its first occurrence. The run of "*" and "?" before it consumes nothing.
  Outcome StepStar() {
    if (m_star != m_p) ReadStar();
    if (m_literalEnd == m_literalStart) return Outcome::Match;
    const size_t end = m_literal.FindEnd(m_text, m_t);
    if (end == NPOS) return Outcome::NoMatch;
    m_resume = m_star;
    m_t = end;
    m_p = m_literalEnd;
    return Outcome::GoOn;
  }

  // Literals behind a "?" that do not match send the pattern back, never the text.
  Outcome StepQuestionMark() {
    ++m_t;
    ++m_p;
    while (AtLiteral() && !TextAtEnd()) {
      if (!SameNoCase(m_pattern[m_p], m_text[m_t])) {
        m_p = m_resume;
        return Outcome::GoOn;
      }
      ++m_t;
      ++m_p;
    }
    return Outcome::GoOn;
  }

  Outcome StepLiteral() {
    if (!SameNoCase(m_pattern[m_p], m_text[m_t])) return Outcome::NoMatch;
    ++m_t;
    ++m_p;
    return Outcome::GoOn;
  }

  // What follows a "*" is kept, so that coming back to it costs nothing.
  void ReadStar() {
    m_star = m_p;
    m_literalStart = m_p;
    while (m_literalStart < m_pattern.size() && IsMeta(m_pattern[m_literalStart]))
      ++m_literalStart;
    m_literalEnd = m_literalStart;
    while (m_literalEnd < m_pattern.size() && !IsMeta(m_pattern[m_literalEnd]))
      ++m_literalEnd;
    if (m_literalEnd > m_literalStart) {
      m_literal.Assign(m_pattern.substr(m_literalStart, m_literalEnd - m_literalStart));
    }
  }

  bool TextAtEnd() const { return m_t == m_text.size(); }
  bool PatternAtEnd() const { return m_p == m_pattern.size(); }
  bool AtLiteral() const { return !PatternAtEnd() && !IsMeta(m_pattern[m_p]); }

  std::string_view m_text;
  std::string_view m_pattern;
  size_t m_t = 0;
  size_t m_p = 0;
  size_t m_resume = 0;  // where the pattern goes on after a mismatch behind a "?": at the last "*", else at its start

  size_t m_star = NPOS;  // the "*" that the following three describe
  size_t m_literalStart = 0;
  size_t m_literalEnd = 0;
  NoCaseFinder m_literal;
};

}  // namespace

bool MatchesNoCase(std::string_view text, std::string_view pattern) {
  return !text.empty() && NoCaseMatcher(text, pattern).Run();
}

}  // namespace VARNEL_COMMON
