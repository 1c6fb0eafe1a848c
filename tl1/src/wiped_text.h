#ifndef VARNEL_TL1_WIPED_TEXT_H
#define VARNEL_TL1_WIPED_TEXT_H

#include <string.h>

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

namespace VARNEL_TL1 {

/// Bytes whose memory is wiped before it is freed. If memory runs out they are unchanged.
class WipedText {
 public:
  WipedText() = default;
  WipedText(WipedText&& other) noexcept : m_bytes(std::move(other.m_bytes)) {}
  WipedText& operator=(WipedText&& other) noexcept {
    m_bytes.swap(other.m_bytes);
    return *this;
  }
  ~WipedText() { Wipe(0); }

  /// @param bytes  not of this object.
  void Append(std::string_view bytes) {
    if (bytes.size() > m_bytes.capacity() - m_bytes.size()) {
      WipedText larger;
      larger.m_bytes.reserve(m_bytes.size() + std::max(m_bytes.size(), bytes.size()));
      larger.m_bytes = m_bytes;
      m_bytes.swap(larger.m_bytes);
    }
    m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
  }

  void RemoveFront(size_t count) {
    count = std::min(count, m_bytes.size());
    std::copy(m_bytes.begin() + static_cast<std::ptrdiff_t>(count), m_bytes.end(), m_bytes.begin());
    Wipe(m_bytes.size() - count);
    m_bytes.resize(m_bytes.size() - count);
  }

  std::string_view View() const { return {m_bytes.data(), m_bytes.size()}; }

 private:
  void Wipe(size_t begin) {
    if (begin < m_bytes.size()) explicit_bzero(m_bytes.data() + begin, m_bytes.size() - begin);
  }

  std::vector<char> m_bytes;  // a std::string that was moved from may keep a copy
};

}  // namespace VARNEL_TL1

#endif
