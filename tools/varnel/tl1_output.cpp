#include "tl1_output.h"

#include <varnel_tl1/text.h>

#include <iostream>

using VARNEL_TL1::Message;
using VARNEL_TL1::MessageType;

namespace {

// Absent fields are null.
Json FieldToJson(std::string_view field) {
  return field.empty() ? Json() : Json(std::string(field));
}

// Only codes that ask for attention, or say that all is well, have a colour.
std::string ColouredCode(const Message& message) {
  const std::string code(message.code);
  const std::string shown = Escaped(code);
  if (message.type == MessageType::Autonomous) {
    if (code == "*C" || code == "**") return Coloured(Colour::Bad, shown);
    if (code.front() == '*') return Coloured(Colour::Warning, shown);
    return code == "A" ? Coloured(Colour::Good, shown) : shown;
  }
  if (code == "COMPLD") return Coloured(Colour::Good, shown);
  const bool refused = code == "DENY" || code == "NA" || code == "NG" || code == "RL";
  return refused ? Coloured(Colour::Bad, shown) : shown;
}

void PrintField(const char* name, std::string_view value) {
  if (!value.empty()) std::cout << "  " << name << Escaped(std::string(value));
}

}  // namespace

Json MessageToJson(const Message& message) {
  Json lines = Json::array();
  VARNEL_TL1::LineReader reader(message.text);
  for (std::string_view line; reader.Next(line);)
    lines.push_back(std::string(line));
  return {{"type", VARNEL_TL1::TypeName(message.type)},
          {"offset", message.offset},
          {"length", message.length},
          {"sid", FieldToJson(message.sid)},
          {"date", FieldToJson(message.date)},
          {"time", FieldToJson(message.time)},
          {"ctag", FieldToJson(message.ctag)},
          {"atag", FieldToJson(message.atag)},
          {"code", FieldToJson(message.code)},
          {"verb", FieldToJson(message.verb)},
          {"lines", std::move(lines)},
          {"continues", message.continues}};
}

void PrintBlock(const Message& message) {
  const bool unread = message.type == MessageType::Unrecognised;
  const std::string type = VARNEL_TL1::TypeName(message.type);
  std::cout << (unread ? Coloured(Colour::Warning, type) : type);
  if (!message.code.empty()) std::cout << "  " << ColouredCode(message);
  PrintField("", message.verb);
  PrintField("ctag ", message.ctag);
  PrintField("atag ", message.atag);
  std::cout << (message.continues ? "  (continues)\n" : "\n");
  if (!message.sid.empty() || !message.date.empty() || !message.time.empty()) {
    std::cout << "  from";
    PrintField("", message.sid);
    PrintField("", message.date);
    PrintField("", message.time);
    std::cout << '\n';
  }
  std::cout << "  at    " << message.offset << ", " << message.length << " bytes\n";
  VARNEL_TL1::LineReader lines(message.text);
  for (std::string_view line; lines.Next(line);)
    std::cout << "    " << Escaped(std::string(line)) << '\n';
  std::cout << '\n';
}
