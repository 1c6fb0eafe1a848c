#include "tl1_output.h"

#include <iostream>

using VARNEL_TL1::MessageType;
using VARNEL_TL1::Parts;

namespace {

using Text = std::optional<std::string>;

// Only codes that ask for attention, or say that all is well, have a colour.
std::string ColouredCode(const Parts& parts) {
  const std::string& code = *parts.code;
  const std::string shown = Escaped(code);
  if (parts.type == MessageType::Autonomous) {
    if (code == "*C" || code == "**") return Coloured(Colour::Bad, shown);
    if (code.front() == '*') return Coloured(Colour::Warning, shown);
    return code == "A" ? Coloured(Colour::Good, shown) : shown;
  }
  if (code == "COMPLD") return Coloured(Colour::Good, shown);
  const bool refused = code == "DENY" || code == "NA" || code == "NG" || code == "RL";
  return refused ? Coloured(Colour::Bad, shown) : shown;
}

void PrintField(const char* name, const Text& value) {
  if (value) std::cout << "  " << name << Escaped(*value);
}

}  // namespace

Json PartsToJson(const Parts& parts) {
  return {{"type", VARNEL_TL1::TypeName(parts.type)},
          {"offset", parts.offset},
          {"length", parts.length},
          {"sid", OrNull(parts.sid)},
          {"date", OrNull(parts.date)},
          {"time", OrNull(parts.time)},
          {"ctag", OrNull(parts.ctag)},
          {"atag", OrNull(parts.atag)},
          {"code", OrNull(parts.code)},
          {"verb", OrNull(parts.verb)},
          {"lines", parts.lines},
          {"continues", parts.continues}};
}

void PrintBlock(const Parts& parts) {
  const bool unread = parts.type == MessageType::Unrecognised;
  const std::string type = VARNEL_TL1::TypeName(parts.type);
  std::cout << (unread ? Coloured(Colour::Warning, type) : type);
  if (parts.code) std::cout << "  " << ColouredCode(parts);
  PrintField("", parts.verb);
  PrintField("ctag ", parts.ctag);
  PrintField("atag ", parts.atag);
  std::cout << (parts.continues ? "  (continues)\n" : "\n");
  if (parts.sid || parts.date || parts.time) {
    std::cout << "  from" << (parts.sid ? "  " + Escaped(*parts.sid) : "");
    PrintField("", parts.date);
    PrintField("", parts.time);
    std::cout << '\n';
  }
  std::cout << "  at    " << parts.offset << ", " << parts.length << " bytes\n";
  for (const std::string& line : parts.lines)
    std::cout << "    " << Escaped(line) << '\n';
  std::cout << '\n';
}
