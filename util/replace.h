#ifndef VARNEL_UTIL_REPLACE_H
#define VARNEL_UTIL_REPLACE_H

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "util/find.h"

namespace VARNEL_UTIL {

/// Whether replacing `from` by `to` may create a new occurrence of `from`: around all of `to`, or over one of its ends.
/// Assumed for long texts.
inline bool MayCascade(std::string_view from, std::string_view to) {
  const size_t shorter = std::min(from.size(), to.size());
  if (shorter > PLAIN_SEARCH_LIMIT || from.find(to) != std::string_view::npos) return true;
  for (size_t size = 1; size < shorter; ++size) {
    const size_t tail = to.size() - size, fromTail = from.size() - size;
    if (to[tail] == from[0] && to.substr(tail) == from.substr(0, size)) return true;
    if (from[fromTail] == to[0] && from.substr(fromTail) == to.substr(0, size)) return true;
  }
  return false;
}

/// Replaces all occurrences in one pass.
inline std::string ReplaceOnce(std::string_view text, std::string_view from, std::string_view to, size_t firstHit) {
  std::string done;
  done.reserve(text.size());
  size_t position = 0;
  for (size_t hit = firstHit; hit != std::string_view::npos; hit = FindLinear(text, from, position)) {
    done.append(text, position, hit - position).append(to);
    position = hit + from.size();
  }
  return done.append(text, position);
}

/// Replaces the first occurrence of a text until no occurrence is left, in time linear in the text plus all replacement
/// texts. The finished text contains no occurrence; the pending text is a stack of texts. Only occurrences that cross
/// the boundary between the two are searched for. "ab" by "" in "xaabb":
///
///     done "xa"  pending "b"  "ab" crosses the boundary: replaced
///     done "x"   pending ""   the end
class CascadingReplacer {
 public:
  /// @param from  not empty. @param to  does not contain `from`.
  CascadingReplacer(std::string_view text, std::string_view from, std::string_view to) : m_from(from), m_to(to) {
    Push(text);
  }

  std::string Run() {
    while (!m_pending.empty()) {
      if (ReplaceAtBoundary()) continue;
      const std::string_view next = m_pending.back();
      m_pending.pop_back();
      const size_t hit = FindLinear(next, m_from);
      m_done.append(next.substr(0, hit));
      if (hit == std::string_view::npos) continue;
      Push(next.substr(hit + m_from.size()));
      Push(m_to);
    }
    return std::move(m_done);
  }

 private:
  void Push(std::string_view text) {
    if (!text.empty()) m_pending.push_back(text);
  }

  bool ReplaceAtBoundary() {
    const size_t before = std::min(m_done.size(), m_from.size() - 1);
    const size_t size = before + m_from.size() - 1;
    m_boundary.assign(m_done, m_done.size() - before);
    for (size_t i = m_pending.size(); i-- > 0 && m_boundary.size() < size;)
      m_boundary.append(m_pending[i].substr(0, size - m_boundary.size()));
    const size_t found = FindLinear(m_boundary, m_from);
    if (found == std::string::npos) return false;
    m_done.resize(m_done.size() - (before - found));
    Drop(found + m_from.size() - before);
    Push(m_to);
    return true;
  }

  // Removes characters from the pending text.
  void Drop(size_t count) {
    while (count > 0) {
      std::string_view& next = m_pending.back();
      const size_t dropped = std::min(count, next.size());
      next.remove_prefix(dropped);
      if (next.empty()) m_pending.pop_back();
      count -= dropped;
    }
  }

  std::vector<std::string_view> m_pending;
  std::string_view m_from;
  std::string_view m_to;
  std::string m_done;
  std::string m_boundary;
};

}  // namespace VARNEL_UTIL

#endif
