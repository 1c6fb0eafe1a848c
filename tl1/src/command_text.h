#ifndef VARNEL_TL1_COMMAND_TEXT_H
#define VARNEL_TL1_COMMAND_TEXT_H

#include <algorithm>
#include <string_view>

#include "util/chars.h"
#include "wiped_text.h"

namespace VARNEL_TL1 {

inline bool IsSameIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), VARNEL_UTIL::SameNoCase);
}

/// Whether a byte is a control character or begins a telnet command.
constexpr bool IsUnsendable(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte < 0x20 || byte == 0x7F || byte == 0xFF;
}

/// Appends a value in quotes; inside them `"` becomes `\"` and `\` becomes `\\`.
void AppendQuoted(std::string_view value, WipedText& text);

/// Whether the block after the fifth colon of a command with this verb contains a password.
bool HasPassword(std::string_view verb);

}  // namespace VARNEL_TL1

#endif
