#ifndef VARNEL_TOOLS_UTF8_H
#define VARNEL_TOOLS_UTF8_H

#include <cstddef>
#include <string_view>

/// True for a byte that continues a character of UTF-8.
bool IsContinuation(char c);

/// Length of the UTF-8 character at the start of a text that is not empty. 0 if it is invalid: a stray or missing
/// continuation byte, an overlong form, a surrogate, or a number above U+10FFFF.
size_t CharacterLength(std::string_view text);

/// True if all of a text is valid UTF-8.
bool IsUtf8(std::string_view text);

/// The number of a valid UTF-8 character.
char32_t CodePoint(std::string_view character);

/// False for a control character (C0, DEL, C1) and for one that changes the direction of writing, which can make a name
/// look like another.
bool IsHarmless(char32_t point);

#endif
