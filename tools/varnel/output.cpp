#include "output.h"

#include <unistd.h>

#include <cstdlib>
#include <iomanip>
#include <iostream>
#include <sstream>

#include "utf8.h"

namespace {

// The number of ASCII characters at the start of a text that need no escape.
size_t PrintableLength(std::string_view text) {
  size_t length = 0;
  while (length < text.size() && text[length] >= ' ' && text[length] < '\x7F')
    ++length;
  return length;
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

std::string Escaped(std::string_view text) {
  std::string escaped;
  AppendEscaped(escaped, text);
  return escaped;
}

void AppendEscaped(std::string& escaped, std::string_view text) {
  while (!text.empty()) {
    const size_t printable = PrintableLength(text);
    escaped.append(text.data(), printable);
    text.remove_prefix(printable);
    if (text.empty()) return;
    const size_t length = CharacterLength(text);
    const std::string_view character = text.substr(0, length == 0 ? 1 : length);
    if (length > 0 && IsHarmless(CodePoint(character))) {
      escaped.append(character);
    } else {
      for (const char c : character)
        AppendEscape(escaped, c);
    }
    text.remove_prefix(character.size());
  }
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
