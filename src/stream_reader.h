#ifndef VARNEL_SRC_STREAM_READER_H
#define VARNEL_SRC_STREAM_READER_H

#include <limits>
#include <string_view>
#include <type_traits>

#include "chars.h"

namespace VARNEL_COMMON {

/// Reads values from a text exactly as a default std::istream in the "C" locale would, without building one.
///
/// After a failed read nothing more is read, as with a stream. AtEnd() tells whether a read ran into the end of the
/// text, the state that eof() gives.
class StreamReader {
 public:
  explicit StreamReader(std::string_view text) : m_rest(text) {}

  bool Failed() const { return m_failed; }
  bool AtEnd() const { return m_atEnd; }

  /// Reads an unsigned decimal number. A sign is allowed, "-" negates in the type's own range. Without a digit `value`
  /// becomes 0, on overflow the type's largest value, and the read has failed. Where only white space is left `value`
  /// stays as it was.
  template <typename Number, typename = std::enable_if_t<std::is_unsigned_v<Number>>>
  void Read(Number& value) {
    if (!SkipBlanks()) return;
    const bool negative = m_rest.front() == '-';
    if (negative || m_rest.front() == '+') m_rest.remove_prefix(1);

    constexpr Number LARGEST = std::numeric_limits<Number>::max();
    Number number = 0;
    bool overflow = false;
    const std::string_view digits = TakeDigits();
    for (const char digit : digits) {
      const auto unit = static_cast<Number>(digit - '0');
      overflow = overflow || number > LARGEST / 10 || static_cast<Number>(number * 10U) > LARGEST - unit;
      number = static_cast<Number>(number * 10U + unit);
    }
    m_failed = digits.empty() || overflow;
    m_atEnd = m_rest.empty();
    value = digits.empty() ? Number{0} : overflow ? LARGEST : static_cast<Number>(negative ? 0U - number : number);
  }

  /// Reads the next character that is not white space; `value` stays as it was where there is none.
  void Read(char& value) {
    if (!SkipBlanks()) return;
    value = m_rest.front();
    m_rest.remove_prefix(1);
  }

 private:
  // False when nothing is left to read from, which fails the read.
  bool SkipBlanks() {
    if (m_failed || m_atEnd) {
      m_failed = true;
      return false;
    }
    m_rest.remove_prefix(LeadingBlanks(m_rest));
    m_failed = m_atEnd = m_rest.empty();
    return !m_failed;
  }

  std::string_view TakeDigits() {
    size_t count = 0;
    while (count < m_rest.size() && m_rest[count] >= '0' && m_rest[count] <= '9')
      ++count;
    const std::string_view digits = m_rest.substr(0, count);
    m_rest.remove_prefix(count);
    return digits;
  }

  std::string_view m_rest;
  bool m_failed = false;
  bool m_atEnd = false;
};

}  // namespace VARNEL_COMMON

#endif
