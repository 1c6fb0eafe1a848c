#ifndef VARNEL_FUZZ_INPUT_H
#define VARNEL_FUZZ_INPUT_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace VARNEL_FUZZ {

/// Reads the bytes of an input in order.
class Input {
 public:
  Input(const uint8_t* data, size_t size) : m_rest(reinterpret_cast<const char*>(data), size) {}

  bool IsEmpty() const { return m_rest.empty(); }

  /// The next byte, 0 after the last one.
  unsigned char Byte() {
    if (m_rest.empty()) return 0;
    const auto byte = static_cast<unsigned char>(m_rest.front());
    m_rest.remove_prefix(1);
    return byte;
  }

  /// A number of two bytes, big end first.
  unsigned int Number() {
    const unsigned int high = Byte();
    return high << 8 | Byte();
  }

  /// A number of four bytes, big end first.
  unsigned int Word() {
    const unsigned int high = Number();
    return high << 16 | Number();
  }

  /// The next `length` bytes, fewer at the end.
  std::string Bytes(size_t length) {
    const std::string bytes(m_rest.substr(0, length));
    m_rest.remove_prefix(bytes.size());
    return bytes;
  }

  /// The bytes up to the next record separator or the end; the separator is consumed too.
  std::string Field() {
    const std::string field = Bytes(std::min(m_rest.find('\x1E'), m_rest.size()));
    Byte();
    return field;
  }

  std::string Rest() { return Bytes(m_rest.size()); }

 private:
  std::string_view m_rest;
};

}  // namespace VARNEL_FUZZ

#endif
