#include "line_input.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

bool LineInput::Next(std::string_view& line) {
  Drop(m_taken);
  m_taken = 0;
  const char* const begin = m_bytes.data();
  const char* const end = begin + m_end;
  const char* const found = std::find(begin + m_searched, end, '\n');
  m_searched = m_end;
  if (found == end && (!m_ended || m_end == 0)) return false;
  line = {begin, static_cast<size_t>(found - begin)};
  if (found != end && !line.empty() && line.back() == '\r') line.remove_suffix(1);
  m_taken = static_cast<size_t>(found - begin) + (found != end ? 1 : 0);
  ++m_number;
  return true;
}

void LineInput::Read() {
  MakeRoom();
  const ssize_t count = read(m_file, m_bytes.data() + m_end, CHUNK_SIZE);
  if (count < 0 && (errno == EINTR || errno == EAGAIN)) return;
  if (count < 0) m_error = std::strerror(errno);
  m_ended = count <= 0;
  if (count > 0) m_end += static_cast<size_t>(count);
}

void LineInput::Drop(size_t count) {
  if (count == 0) return;
  std::copy(m_bytes.data() + count, m_bytes.data() + m_end, m_bytes.data());
  explicit_bzero(m_bytes.data() + m_end - count, count);
  m_end -= count;
  m_searched = 0;
}

void LineInput::MakeRoom() {
  if (m_end > m_limit) {  // a line that is too long: only its first bytes are needed
    const size_t excess = m_end - m_limit - 1;
    explicit_bzero(m_bytes.data() + m_limit + 1, excess);
    m_end = m_searched = m_limit + 1;
  }
  if (m_bytes.size() - m_end >= CHUNK_SIZE) return;
  std::vector<char> larger(std::max(2 * m_bytes.size(), m_end + CHUNK_SIZE));
  std::copy(m_bytes.data(), m_bytes.data() + m_end, larger.data());
  explicit_bzero(m_bytes.data(), m_bytes.size());
  m_bytes.swap(larger);
}
