#include "replace.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "find.h"
#include "literal_automaton.h"

namespace VARNEL_COMMON {

using VARNEL_INTERNAL::Finder;
using VARNEL_INTERNAL::FindLinear;

namespace {

bool SameChar(char a, char b) {
  return a == b;
}

using Automaton = LiteralAutomaton<SameChar>;

// Tells whether the end of `text` may be the start of `literal`; both are not empty, and `text` does not hold
// `literal`.
bool EndsInStartOf(std::string_view literal, std::string_view text) {
  if (literal.find(text.back()) == std::string_view::npos) return false;
  const Automaton automaton(literal);
  size_t matched = 0;
  for (const char c : text.substr(text.size() - std::min(text.size(), literal.size())))
    matched = automaton.Advance(matched, c);
  return matched > 0;
}

// An occurrence that a replacement brings about lies around the whole of `to`, or begins or ends inside it. `to` does
// not hold `from`, which is not empty.
bool CanBringAboutNew(std::string_view from, std::string_view to) {
  return FindLinear(from, to) != std::string_view::npos || EndsInStartOf(from, to) || EndsInStartOf(to, from);
}

// Does without a copy of the text. `from` may be the text itself, which is then replaced as a whole.
void Overwrite(std::string& text, const Finder& from, std::string_view to, size_t firstHit) {
  for (size_t hit = firstHit; hit != std::string_view::npos; hit = from.Find(text, hit + to.size()))
    to.copy(text.data() + hit, to.size());
}

std::string ReplaceOnce(std::string_view text, const Finder& from, std::string_view to, size_t firstHit) {
  std::string done;
  done.reserve(text.size());
  size_t position = 0;
  for (size_t hit = firstHit; hit != std::string_view::npos; hit = from.Find(text, position)) {
    done.append(text.substr(position, hit - position)).append(to);
    position = hit + from.Piece().size();
  }
  return done.append(text.substr(position));
}

// Reads the text character by character; a replacement is put back in front of what is still to be read. Each
// character done remembers how much of `from` ended there, so that taking characters back loses nothing.
class CascadingReplacer {
 public:
  CascadingReplacer(std::string_view text, std::string_view from, std::string_view to)
      : m_fromSize(from.size()), m_to(to), m_automaton(from), m_input{text} {}

  std::string Run() {
    while (!m_input.empty()) {
      if (m_input.back().empty()) {
        m_input.pop_back();
      } else {
        const char next = m_input.back().front();
        m_input.back().remove_prefix(1);
        Take(next);
      }
    }
    return std::move(m_done);
  }

 private:
  void Take(char next) {
    const size_t matched = m_automaton.Advance(m_matched.empty() ? 0 : m_matched.back(), next);
    if (matched < m_fromSize) {
      m_done.push_back(next);
      m_matched.push_back(matched);
      return;
    }
    m_done.resize(m_done.size() - (m_fromSize - 1));
    m_matched.resize(m_done.size());
    m_input.push_back(m_to);
  }

  size_t m_fromSize;
  std::string_view m_to;
  Automaton m_automaton;
  std::vector<std::string_view> m_input;  // what is still to be read, the last one first
  std::string m_done;
  std::vector<size_t> m_matched;
};

}  // namespace

void ReplaceRepeatedly(std::string& text, const Finder& from, std::string_view to, size_t firstHit) {
  if (CanBringAboutNew(from.Piece(), to)) {
    text = CascadingReplacer(text, from.Piece(), to).Run();
  } else if (to.size() == from.Piece().size()) {
    Overwrite(text, from, to, firstHit);
  } else {
    text = ReplaceOnce(text, from, to, firstHit);
  }
}

}  // namespace VARNEL_COMMON
