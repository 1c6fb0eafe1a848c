#ifndef VARNEL_TOOLS_OUTPUT_H
#define VARNEL_TOOLS_OUTPUT_H

#include <cstdint>
#include <string>
#include <string_view>

/// Text that is safe on a terminal: control characters, those that change the direction of writing, and bytes that are
/// not UTF-8 become "\xNN".
std::string Escaped(std::string_view text);

/// Appends the result of Escaped().
void AppendEscaped(std::string& escaped, std::string_view text);

/// "0x" and four digits.
std::string Hex16(uint16_t number);

/// "0x" and eight digits.
std::string Hex32(uint32_t number);

/// Reports an error of an input on standard error: "varnel: <subject>: <what>".
void Complain(std::string_view subject, std::string_view what);

enum class Colour { Good, Warning, Bad };

/// Colours a word if standard output is a terminal, NO_COLOR is unset or empty and TERM is not "dumb".
std::string Coloured(Colour colour, const std::string& word);

/// Pads a text with blanks to a width, counted in characters.
std::string Padded(const std::string& text, size_t width);

/// Width of a UTF-8 text in characters.
size_t Width(std::string_view text);

/// True when standard output is a terminal.
bool OnTerminal();

#endif
