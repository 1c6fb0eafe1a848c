#include "text_scanner.h"

namespace VARNEL_TL1 {

void TextScanner::Take(char c) {
  const auto byte = static_cast<unsigned char>(c);
  if (byte >= 0x80) {
    CountHighBytes(byte);
    m_last = ' ';
    return;
  }
  if (c == '\\' && InsideCharacter()) c = ' ';
  m_highBytes = 0;
  TakeInPlace(c);
}

void TextScanner::TakeInPlace(char c) {
  if (m_place == Place::Comment) {
    if (m_last == '*' && c == '/') {
      m_place = Place::Plain;
      c = ' ';
    }
  } else if (m_last == '\\') {
    c = ' ';
  } else if (c == '"') {
    m_place = m_place == Place::Plain ? Place::Quoted : Place::Plain;
  } else if (m_place == Place::Plain && m_last == '/' && c == '*') {
    m_place = Place::Comment;
    c = ' ';
  }
  m_last = c;
}

void TextScanner::CountHighBytes(unsigned char byte) {
  if (m_highBytes++ == 0) {
    m_utf8 = true;
    m_continuation = 0;
  }
  const bool continuation = byte < 0xC0;
  if (continuation != (m_continuation > 0)) m_utf8 = false;
  if (continuation) {
    m_continuation -= m_continuation > 0 ? 1U : 0U;
  } else {
    m_continuation = byte < 0xE0 ? 1 : byte < 0xF0 ? 2 : 3;
  }
}

// In East Asian encodings a backslash can be the second byte of a character.
bool TextScanner::InsideCharacter() const {
  return m_highBytes % 2 == 1 && (!m_utf8 || m_continuation > 0);
}

}  // namespace VARNEL_TL1
