#ifndef VARNEL_SRC_LITERAL_AUTOMATON_H
#define VARNEL_SRC_LITERAL_AUTOMATON_H

#include <array>
#include <string_view>
#include <vector>

namespace VARNEL_COMMON {

/// Recognises a literal in a text that is fed to it one character at a time (Knuth, Morris and Pratt): linear time,
/// however often the literal nearly occurs. Literals of usual length need no allocation.
///
/// @tparam Same  tells whether two characters count as equal.
template <bool (*Same)(char, char)>
class LiteralAutomaton {
 public:
  LiteralAutomaton() = default;
  explicit LiteralAutomaton(std::string_view literal) { Assign(literal); }
  LiteralAutomaton(const LiteralAutomaton&) = delete;
  LiteralAutomaton& operator=(const LiteralAutomaton&) = delete;

  /// @param literal  not empty; must outlive the automaton's use.
  void Assign(std::string_view literal) {
    m_literal = literal;
    if (literal.size() > m_smallTable.size()) m_largeTable.resize(literal.size());
    m_table = literal.size() > m_smallTable.size() ? m_largeTable.data() : m_smallTable.data();
    m_table[0] = 0;
    for (size_t i = 1; i < literal.size(); ++i)
      m_table[i] = Advance(m_table[i - 1], literal[i]);
  }

  /// With `matched` characters of the literal in hand (fewer than all), how many are after one more character.
  size_t Advance(size_t matched, char next) const {
    while (matched > 0 && !Same(m_literal[matched], next))
      matched = m_table[matched - 1];
    return Same(m_literal[matched], next) ? matched + 1 : matched;
  }

  /// Position behind the first occurrence at or behind `from`, or std::string_view::npos.
  size_t FindEnd(std::string_view text, size_t from) const {
    size_t matched = 0;
    for (size_t i = from; i < text.size(); ++i) {
      matched = Advance(matched, text[i]);
      if (matched == m_literal.size()) return i + 1;
    }
    return std::string_view::npos;
  }

 private:
  std::string_view m_literal;
  std::array<size_t, 64> m_smallTable;
  std::vector<size_t> m_largeTable;
  size_t* m_table = nullptr;
};

}  // namespace VARNEL_COMMON

#endif
