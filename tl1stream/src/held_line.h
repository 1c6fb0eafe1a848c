#ifndef VARNEL_TL1_HELD_LINE_H
#define VARNEL_TL1_HELD_LINE_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace VARNEL_TL1 {

/// A few bytes that may become part of a message, with their places in the stream.
class HeldLine {
 public:
  void Add(char byte, uint64_t offset) {
    m_text.push_back(byte);
    m_offsets.push_back(offset);
  }
  void Clear() { DropFront(m_text.size()); }
  void DropFront(size_t count) {
    m_text.erase(0, count);
    m_offsets.erase(m_offsets.begin(), m_offsets.begin() + static_cast<std::ptrdiff_t>(count));
  }

  std::string_view Text() const { return m_text; }
  uint64_t Offset() const { return m_offsets.front(); }

 private:
  std::string m_text;
  std::vector<uint64_t> m_offsets;
};

}  // namespace VARNEL_TL1

#endif
