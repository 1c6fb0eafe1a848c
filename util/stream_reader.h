#ifndef VARNEL_UTIL_STREAM_READER_H
#define VARNEL_UTIL_STREAM_READER_H

#include <cstdint>
#include <limits>
#include <string_view>
#include <type_traits>

#include "util/chars.h"

namespace VARNEL_UTIL {

/// Reads values from a text exactly as a default std::istream in the "C" locale would, without building one: 2 to 7 ns
/// for a number instead of 230.
///
/// After a failed read nothing more is read, as with a stream. AtEnd() returns whether a read reached the end of the
/// text, as eof() does.
class StreamReader {
 public:
  explicit StreamReader(std::string_view text) : m_next(text.data()), m_end(text.data() + text.size()) {}

  /// Reads up to a NUL. Text after the values is not examined.
  explicit StreamReader(const char* text) : m_next(text), m_end(nullptr) {}

  bool Failed() const { return m_failed; }
  bool AtEnd() const { return m_atEnd; }

  /// Reads a decimal number. A sign is allowed; a "-" negates an unsigned number in the type's own range. Without a
  /// digit `value` becomes 0, on overflow the end of the type's range, and the read has failed. If only white space is
  /// left, `value` is unchanged.
  template <typename Number, typename = std::enable_if_t<std::is_integral_v<Number>>>
  void Read(Number& value) {
    if (!SkipBlanks()) return;
    const bool negative = *m_next == '-';
    if (negative || *m_next == '+') ++m_next;

    constexpr bool SIGNED = std::is_signed_v<Number>;
    const uint64_t largest = uint64_t{std::numeric_limits<Number>::max()} + (SIGNED && negative ? 1 : 0);
    const char* const start = m_next;
    uint64_t number = 0;
    const bool overflow = !TakeDigits(number) || number > largest;
    m_failed = m_next == start || overflow;
    m_atEnd = NothingLeft();
    if (overflow) number = largest;
    const bool negate = negative && (SIGNED || !overflow);
    value = static_cast<Number>(negate ? 0 - number : number);
  }

  /// Reads the next character that is not white space; without one, `value` is unchanged.
  void Read(char& value) {
    if (!SkipBlanks()) return;
    value = *m_next++;
  }

 private:
  bool NothingLeft() const { return m_next == m_end || (m_end == nullptr && *m_next == '\0'); }

  // False when nothing is left to read from, which fails the read.
  bool SkipBlanks() {
    if (!m_failed && !m_atEnd) {
      while (m_next != m_end && IsBlank(*m_next))
        ++m_next;
      m_atEnd = NothingLeft();
    }
    m_failed = m_failed || m_atEnd;
    return !m_failed;
  }

  // False when the digits are too many for 64 bits.
  bool TakeDigits(uint64_t& number) {
    constexpr int SAFE = std::numeric_limits<uint64_t>::digits10;
    for (int i = 0; i < SAFE && m_next != m_end && IsDigit(*m_next); ++i)
      number = number * 10 + static_cast<unsigned char>(*m_next++ - '0');
    bool overflow = false;
    for (; m_next != m_end && IsDigit(*m_next); ++m_next) {
      overflow |= __builtin_mul_overflow(number, 10U, &number);
      overflow |= __builtin_add_overflow(number, static_cast<unsigned char>(*m_next - '0'), &number);
    }
    return !overflow;
  }

  const char* m_next;
  const char* m_end;  // null for a text that ends in a NUL
  bool m_failed = false;
  bool m_atEnd = false;
};

/// Reads "second", or "first-second" if the text contains a "-" anywhere; any character may separate the two.
template <typename Number>
void ReadDashed(std::string_view text, Number& first, Number& second) {
  StreamReader reader(text);
  if (text.find('-') != std::string_view::npos) {
    char separator;
    reader.Read(first);
    reader.Read(separator);
  }
  reader.Read(second);
}

}  // namespace VARNEL_UTIL

#endif
