#ifndef VARNEL_SRC_STREAM_READER_H
#define VARNEL_SRC_STREAM_READER_H

#include <algorithm>
#include <cstdint>
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

  /// Reads a decimal number. A sign is allowed; of an unsigned number "-" negates in the type's own range. Without a
  /// digit `value` becomes 0, on overflow the end of the type's range, and the read has failed. Where only white space
  /// is left `value` stays as it was.
  template <typename Number, typename = std::enable_if_t<std::is_integral_v<Number>>>
  void Read(Number& value) {
    if (!SkipBlanks()) return;
    const bool negative = m_rest.front() == '-';
    if (negative || m_rest.front() == '+') m_rest.remove_prefix(1);

    constexpr bool SIGNED = std::is_signed_v<Number>;
    const uint64_t largest = uint64_t{std::numeric_limits<Number>::max()} + (SIGNED && negative ? 1 : 0);
    uint64_t number = 0;
    const Digits digits = TakeDigits(number);
    const bool overflow = digits == Digits::TooMany || number > largest;
    m_failed = digits == Digits::None || overflow;
    m_atEnd = m_rest.empty();
    if (overflow) number = largest;
    const bool negate = negative && (SIGNED || !overflow);
    value = static_cast<Number>(negate ? 0 - number : number);
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

  enum class Digits { None, Some, TooMany };

  // As many digits as 64 bits can hold in any case are taken without a look at overflow.
  Digits TakeDigits(uint64_t& number) {
    constexpr size_t SAFE = std::numeric_limits<uint64_t>::digits10;
    const char* const start = m_rest.data();
    const char* const end = start + m_rest.size();
    const char* const safeEnd = start + std::min(m_rest.size(), SAFE);
    const char* next = start;
    for (; next != safeEnd && IsDigit(*next); ++next)
      number = number * 10 + ValueOf(*next);
    bool overflow = false;
    for (; next != end && IsDigit(*next); ++next) {
      overflow |= __builtin_mul_overflow(number, 10U, &number);
      overflow |= __builtin_add_overflow(number, ValueOf(*next), &number);
    }
    m_rest.remove_prefix(static_cast<size_t>(next - start));
    return next == start ? Digits::None : overflow ? Digits::TooMany : Digits::Some;
  }

  static unsigned int ValueOf(char digit) { return static_cast<unsigned char>(digit - '0'); }
  static bool IsDigit(char c) { return ValueOf(c) <= 9; }

  std::string_view m_rest;
  bool m_failed = false;
  bool m_atEnd = false;
};

}  // namespace VARNEL_COMMON

#endif
