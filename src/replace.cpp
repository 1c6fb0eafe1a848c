#include "replace.h"

#include <vector>

#include "find.h"
#include "literal_automaton.h"

namespace VARNEL_COMMON {

namespace {

bool SameChar(char a, char b) {
  return a == b;
}

// An occurrence that a replacement brings about holds a character of `to`, or joins what an empty `to` left.
bool CanBringAboutNew(std::string_view from, std::string_view to) {
  bool inFrom[256] = {};
  for (const char c : from)
    inFrom[static_cast<unsigned char>(c)] = true;
  bool shared = to.empty();
  for (const char c : to)
    shared = shared || inFrom[static_cast<unsigned char>(c)];
  return shared;
}

std::string ReplaceOnce(std::string_view text, std::string_view from, std::string_view to) {
  std::string done;
  size_t position = 0;
  for (size_t hit; (hit = FindLinear(text, from, position)) != std::string_view::npos; position = hit + from.size()) {
    done.append(text.substr(position, hit - position)).append(to);
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
  LiteralAutomaton<SameChar> m_automaton;
  std::vector<std::string_view> m_input;  // what is still to be read, the last one first
  std::string m_done;
  std::vector<size_t> m_matched;
};

}  // namespace

std::string ReplaceRepeatedly(std::string_view text, std::string_view from, std::string_view to) {
  return CanBringAboutNew(from, to) ? CascadingReplacer(text, from, to).Run() : ReplaceOnce(text, from, to);
}

}  // namespace VARNEL_COMMON
