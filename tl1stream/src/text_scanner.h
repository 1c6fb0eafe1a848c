#ifndef VARNEL_TL1_TEXT_SCANNER_H
#define VARNEL_TL1_TEXT_SCANNER_H

#include <cstddef>
#include <string_view>

namespace VARNEL_TL1 {

/// Knows whether a place in the text of a message lies inside quotes or a comment.
class TextScanner {
 public:
  void Take(char c);
  void Take(std::string_view text) {
    for (const char c : text)
      Take(c);
  }

  /// Same as taking every byte of a text without quote, backslash, "/", "*" and bytes from 80 on.
  void TakeOrdinary() {
    m_last = ' ';
    m_highBytes = 0;
  }

  bool Plain() const { return m_place == Place::Plain; }

 private:
  enum class Place { Plain, Quoted, Comment };

  void TakeInPlace(char c);
  void CountHighBytes(unsigned char byte);
  bool InsideCharacter() const;

  Place m_place = Place::Plain;
  char m_last = ' ';          // the character before, a blank where its meaning is used up
  size_t m_highBytes = 0;     // bytes from 80 on directly before
  size_t m_continuation = 0;  // how many of UTF-8 are to follow
  bool m_utf8 = true;
};

}  // namespace VARNEL_TL1

#endif
