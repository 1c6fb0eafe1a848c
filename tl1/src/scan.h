#ifndef VARNEL_TL1_SCAN_H
#define VARNEL_TL1_SCAN_H

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "chars.h"

namespace VARNEL_TL1 {

// Searches in a text that grows at its end and loses bytes at its front. Each object remembers its last answer, and for
// increasing positions searches no byte twice, even if bytes arrive one at a time.

/// Whether something was found; Unknown while it depends on bytes that have not arrived.
enum class Answer { No, Yes, Unknown };

/// The bytes so far.
struct Text {
  std::string_view bytes;
  bool finished = false;  ///< no more bytes will arrive

  size_t Size() const { return bytes.size(); }
  char operator[](size_t position) const { return bytes[position]; }
  std::string_view Between(size_t begin, size_t end) const { return bytes.substr(begin, end - begin); }
};

/// Finds positions of one kind. Search has `static size_t First(bytes, begin)`, which returns the first such position
/// from `begin` on or npos, and OVERLAP, the number of bytes before the end that may belong to an incomplete match.
template <typename Search>
class Finder {
 public:
  /// @return the first position from `begin` on, or npos.
  size_t Find(std::string_view bytes, size_t begin) {
    if (begin < m_from && !FindBefore(bytes, begin, m_from)) m_from = begin;
    if (begin < m_from || begin > m_at) Set(begin, begin, false);
    if (m_hit) return m_at;
    const size_t found = Search::First(bytes, m_at);
    m_hit = found != std::string_view::npos;
    m_at = m_hit ? found : std::max(m_at, bytes.size() - std::min(bytes.size(), Search::OVERLAP));
    return found;
  }

  void Shift(size_t dropped) {
    if (m_at < dropped) Set(0, 0, false);
    m_from -= std::min(m_from, dropped);
    m_at -= std::min(m_at, dropped);
  }

 private:
  static bool FindBefore(std::string_view bytes, size_t begin, size_t end) {
    return Search::First(bytes.substr(0, end + Search::OVERLAP), begin) != std::string_view::npos;
  }
  void Set(size_t from, size_t at, bool hit) {
    m_from = from;
    m_at = at;
    m_hit = hit;
  }

  // There is no such position from m_from to before m_at.
  size_t m_from = 0;
  size_t m_at = 0;
  bool m_hit = false;  // m_at is one
};

struct LineEndSearch {
  static constexpr size_t OVERLAP = 0;
  static size_t First(std::string_view bytes, size_t begin) {
    const size_t found = FindLineEnd(bytes, begin);
    return found < bytes.size() ? found : std::string_view::npos;
  }
};

struct QuoteSearch {
  static constexpr size_t OVERLAP = 0;
  static size_t First(std::string_view bytes, size_t begin) {
    const size_t found = FindQuote(bytes, begin);
    return found < bytes.size() ? found : std::string_view::npos;
  }
};

struct CommentEndSearch {
  static constexpr size_t OVERLAP = 1;
  static size_t First(std::string_view bytes, size_t begin) { return bytes.find("*/", begin); }
};

/// A line: its content without the line end, and where the next one begins.
struct Line {
  size_t begin = 0;
  size_t end = 0;
  size_t next = 0;
  bool whole = false;  ///< the line end has arrived; else content may follow, and `next` is the size of the text
};

/// Finds lines that end in CR, LF or CR LF.
class LineFinder {
 public:
  /// @param begin  where the line begins; at most the size of the text.
  Line Find(const Text& text, size_t begin) {
    const size_t size = text.Size();
    const size_t end = m_ends.Find(text.bytes, begin);
    if (end == std::string_view::npos) return {begin, size, size, text.finished};
    const size_t next = AfterLineEnd(text.bytes, end);
    return {begin, end, next, next < size || text[next - 1] == '\n' || text.finished};
  }

  void Shift(size_t dropped) { m_ends.Shift(dropped); }

 private:
  Finder<LineEndSearch> m_ends;
};

/// Finds headers in the strict form that an identification line follows.
class StrictHeaderFinder {
 public:
  /// @param from      where to begin, inside a line.
  /// @param to        where to end.
  /// @param position  receives where the header line begins, if the answer is Yes.
  Answer Find(const Text& text, size_t from, size_t to, size_t& position);

  void Shift(size_t dropped);

 private:
  LineFinder m_lines;
  size_t m_from = 0;   // no header begins from here
  size_t m_next = 0;   // to before this line
  bool m_hit = false;  // which is one
};

/// The first line after the one at `from` that contains only ";" or ">"; npos if none begins before `to`.
size_t FindLoneTerminator(LineFinder& lines, const Text& text, size_t from, size_t to);

}  // namespace VARNEL_TL1

#endif
