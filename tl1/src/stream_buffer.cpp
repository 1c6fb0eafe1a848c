#include "stream_buffer.h"

#include <algorithm>
#include <iterator>

#include "chars.h"
#include "lines.h"

namespace VARNEL_TL1 {

namespace {

constexpr unsigned char END_SUBNEGOTIATION = 0xF0;  // and the smallest command
constexpr unsigned char SUBNEGOTIATION = 0xFA;
constexpr unsigned char WILL = 0xFB;  // WONT, DO and DONT follow
constexpr unsigned char DONT = 0xFE;
constexpr unsigned char ESCAPE = 0xFF;
constexpr std::string_view ESCAPE_TEXT = "\xFF";

// A header that begins within a subnegotiation ends soon after it.
constexpr size_t MAX_HELD = StreamBuffer::MAX_SUBNEGOTIATION + 128;

unsigned char Byte(char c) {
  return static_cast<unsigned char>(c);
}

}  // namespace

// Moving costs time, therefore nothing is dropped while more than half of the buffer is needed.
size_t StreamBuffer::DropFront(size_t count) {
  if (count <= m_bytes.size() / 2) return 0;
  m_bytes.erase(0, count);
  m_dropped += count;
  auto kept = m_removals.begin();
  for (; kept != m_removals.end() && kept->position <= count; ++kept)
    m_removedFront = kept->total;
  m_removals.erase(m_removals.begin(), kept);
  for (Removal& removal : m_removals)
    removal.position -= count;
  return count;
}

void StreamBuffer::Append(std::string_view bytes) {
  while (!bytes.empty()) {
    if (!m_held.empty()) {
      TakeHeld(bytes.front());
      bytes.remove_prefix(1);
      continue;
    }
    const size_t data = std::min(bytes.find(ESCAPE_TEXT), bytes.size());
    m_bytes.append(bytes.substr(0, data));
    if (data < bytes.size()) m_held = ESCAPE_TEXT;
    bytes.remove_prefix(std::min(data + 1, bytes.size()));
  }
}

void StreamBuffer::TakeHeld(char byte) {
  if (m_held.size() == 1) {
    TakeCommand(byte);
  } else if (Byte(m_held[1]) == SUBNEGOTIATION) {
    TakeSubnegotiation(byte);
  } else {
    TakeOption(byte);
  }
}

void StreamBuffer::TakeCommand(char byte) {
  const unsigned char command = Byte(byte);
  if (command == SUBNEGOTIATION || (command >= WILL && command <= DONT)) {
    m_held += byte;
    return;
  }
  m_held.clear();
  if (command < END_SUBNEGOTIATION || command == ESCAPE) m_bytes += ESCAPE_TEXT;
  if (command < END_SUBNEGOTIATION) {
    m_bytes += byte;
  } else if (command == ESCAPE) {
    Remove(1);
  } else {
    ++m_sequences;
    Remove(2);
  }
}

// No element negotiates the options 10 and 13: the sequence was cut off, and a line end follows it.
void StreamBuffer::TakeOption(char option) {
  const unsigned char command = Byte(m_held[1]);
  m_held.clear();
  ++m_sequences;
  if (IsLineEnd(option)) {
    Remove(2);
    m_bytes += option;
    return;
  }
  Remove(3);
  if (onNegotiation) onNegotiation(command, Byte(option));
}

void StreamBuffer::TakeSubnegotiation(char byte) {
  if (IsLineEnd(byte)) {
    const size_t begin = m_held.find_last_of("\r\n") + 1;  // 0 without a line end
    const std::string_view before = std::string_view(m_held).substr(0, begin);
    if (IsStrictHeader(before, std::string_view(m_held).substr(begin))) {
      const size_t end = std::min(begin - HeaderLead(before), MAX_SUBNEGOTIATION);
      m_held += byte;
      EndSubnegotiation(end);
      return;
    }
  }
  m_held += byte;
  if (m_held.size() <= MAX_SUBNEGOTIATION && EndsSubnegotiation()) {
    EndSubnegotiation(m_held.size());
  } else if (m_held.size() == MAX_HELD) {
    EndSubnegotiation(MAX_SUBNEGOTIATION);
  }
}

// FF F0, of which the FF is not the second one of FF FF.
bool StreamBuffer::EndsSubnegotiation() const {
  if (Byte(m_held.back()) != END_SUBNEGOTIATION) return false;
  const size_t other = m_held.find_last_not_of(ESCAPE_TEXT, m_held.size() - 2);
  return (m_held.size() - 2 - other) % 2 == 1;
}

void StreamBuffer::EndSubnegotiation(size_t length) {
  const std::string after = m_held.substr(length);
  m_held.clear();
  ++m_sequences;
  Remove(length);
  Append(after);
}

void StreamBuffer::Remove(size_t length) {
  const uint64_t before = m_removals.empty() ? m_removedFront : m_removals.back().total;
  if (m_removals.empty() || m_removals.back().position != m_bytes.size())
    m_removals.push_back({m_bytes.size(), before});
  m_removals.back().total = before + length;
}

void StreamBuffer::Finish() {
  while (!m_held.empty()) {
    if (m_held.size() == 1) {
      m_held.clear();
      m_bytes += ESCAPE_TEXT;
    } else {
      EndSubnegotiation(std::min(m_held.size(), MAX_SUBNEGOTIATION));
    }
  }
}

uint64_t StreamBuffer::Offset(size_t position) const {
  const auto after = std::upper_bound(m_removals.begin(), m_removals.end(), position,
                                      [](size_t pos, const Removal& removal) { return pos < removal.position; });
  return m_dropped + position + (after == m_removals.begin() ? m_removedFront : std::prev(after)->total);
}

}  // namespace VARNEL_TL1
