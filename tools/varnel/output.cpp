#include "output.h"

#include <unistd.h>

#include <cstdlib>
#include <iomanip>
#include <iostream>
#include <sstream>

namespace {

bool IsContinuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

// Length of the UTF-8 character at the start of a text, 0 if it is invalid: a stray or missing continuation byte,
// an overlong form, a surrogate, or a number above U+10FFFF.
size_t CharacterLength(std::string_view text) {
  const auto first = static_cast<unsigned char>(text[0]);
  const size_t length = first < 0x80   ? 1
                        : first < 0xC2 ? 0
                        : first < 0xE0 ? 2
                        : first < 0xF0 ? 3
                        : first < 0xF5 ? 4
                                       : 0;
  if (length > text.size()) return 0;
  for (size_t i = 1; i < length; ++i) {
    if (!IsContinuation(text[i])) return 0;
  }
  if (length < 3) return length;
  const auto second = static_cast<unsigned char>(text[1]);
  const bool valid = (first != 0xE0 || second >= 0xA0) && (first != 0xED || second < 0xA0) &&
                     (first != 0xF0 || second >= 0x90) && (first != 0xF4 || second < 0x90);
  return valid ? length : 0;
}

// Of a valid UTF-8 character.
char32_t CodePoint(std::string_view character) {
  const auto first = static_cast<unsigned char>(character[0]);
  char32_t point = character.size() == 1 ? first : first & (0x7FU >> character.size());
  for (const char c : character.substr(1))
    point = point << 6 | (static_cast<unsigned char>(c) & 0x3FU);
  return point;
}

// C0, DEL and C1.
bool IsControl(char32_t point) {
  return point < 0x20 || (point >= 0x7F && point < 0xA0);
}

// What changes the direction of writing, and so can make a name look like another.
bool TurnsDirection(char32_t point) {
  return point == 0x61C || point == 0x200E || point == 0x200F || (point >= 0x202A && point <= 0x202E) ||
         (point >= 0x2066 && point <= 0x2069);
}

bool IsHarmless(std::string_view character) {
  const char32_t point = CodePoint(character);
  return !IsControl(point) && !TurnsDirection(point);
}

void AppendEscape(std::string& escaped, char c) {
  constexpr char DIGITS[] = "0123456789abcdef";
  const auto byte = static_cast<unsigned char>(c);
  escaped.append("\\x").append(1, DIGITS[byte >> 4]).append(1, DIGITS[byte & 0xF]);
}

std::string_view Environment(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

bool UseColour() {
  static const bool use = OnTerminal() && Environment("NO_COLOR").empty() && Environment("TERM") != "dumb";
  return use;
}

}  // namespace

bool OnTerminal() {
  static const bool onTerminal = isatty(STDOUT_FILENO) != 0;
  return onTerminal;
}

void PrintJson(const Json& object) {
  // On a terminal as ASCII, so that no control character of a text gets through.
  std::cout << object.dump(-1, ' ', OnTerminal(), Json::error_handler_t::replace) << '\n';
}

std::string Escaped(std::string_view text) {
  std::string escaped;
  while (!text.empty()) {
    const size_t length = CharacterLength(text);
    const std::string_view character = text.substr(0, length == 0 ? 1 : length);
    if (length > 0 && IsHarmless(character)) {
      escaped.append(character);
    } else {
      for (const char c : character)
        AppendEscape(escaped, c);
    }
    text.remove_prefix(character.size());
  }
  return escaped;
}

std::string Hex32(uint32_t number) {
  std::ostringstream text;
  text << "0x" << std::hex << std::setfill('0') << std::setw(8) << number;
  return text.str();
}

std::string Hex16(uint16_t number) {
  return "0x" + Hex32(number).substr(6);
}

void Complain(std::string_view subject, std::string_view what) {
  std::cout.flush();
  std::cerr << "varnel: " << Escaped(subject) << ": " << Escaped(what) << '\n';
}

std::string Coloured(Colour colour, const std::string& word) {
  if (!UseColour()) return word;
  const char* begin = colour == Colour::Good ? "\033[32m" : colour == Colour::Warning ? "\033[33m" : "\033[1;31m";
  return begin + word + "\033[0m";
}

size_t Width(std::string_view text) {
  size_t width = 0;
  for (const char c : text)
    width += IsContinuation(c) ? 0U : 1U;
  return width;
}

std::string Padded(const std::string& text, size_t width) {
  const size_t used = Width(text);
  return used < width ? text + std::string(width - used, ' ') : text;
}
