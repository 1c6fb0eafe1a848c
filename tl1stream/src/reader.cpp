#include "tl1reader.h"

#include <algorithm>
#include <utility>

#include "line_kinds.h"

namespace VARNEL_TL1 {

namespace {

// A blank line ends no text: only the ones in front and behind are dropped.
void DropBlankEnds(std::vector<std::string>& lines) {
  const auto filled = [](const std::string& line) { return !line.empty(); };
  lines.erase(std::find_if(lines.rbegin(), lines.rend(), filled).base(), lines.end());
  lines.erase(lines.begin(), std::find_if(lines.begin(), lines.end(), filled));
}

std::string_view WithoutIndent(std::string_view line) {
  return line.substr(std::min(line.find_first_not_of(" \t"), line.size()));
}

// Takes the next line that is not blank off the front of a text.
std::string_view TakeFilledLine(std::string_view& text) {
  std::string_view line;
  while (!text.empty() && Trimmed(line).empty())
    line = TakeLine(text);
  return line;
}

bool ReadPrompt(std::string_view bytes, Parts& parts) {
  const size_t mark = bytes.find_first_not_of("\r\n");
  if (mark == std::string_view::npos || bytes.substr(mark) != ">") return false;
  parts.type = MessageType::Prompt;
  parts.continues = true;
  return true;
}

bool ReadAcknowledgementParts(std::string_view bytes, Parts& parts) {
  if (bytes.empty() || bytes.back() != '<') return false;
  const auto line = ReadAcknowledgement(TakeFilledLine(bytes));
  if (!line) return false;
  parts.type = MessageType::Acknowledgement;
  parts.code = Field(line->code);
  parts.ctag = Field(line->ctag);
  return true;
}

bool ReadIdentification(std::string_view line, Parts& parts) {
  if (const auto response = ReadResponse(line)) {
    parts.type = MessageType::Response;
    parts.ctag = Field(response->ctag);
    parts.code = Field(response->code);
    return true;
  }
  const auto event = ReadAutonomous(line);
  if (!event) return false;
  parts.type = MessageType::Autonomous;
  parts.code = Field(event->code);
  parts.atag = Field(event->atag);
  parts.verb = Field(event->verb);
  return true;
}

// Reads header and identification line, each where it is there, and gives the text behind them.
std::string_view ReadHead(std::string_view text, Parts& parts) {
  std::string_view rest = text;
  std::string_view line = TakeFilledLine(rest);
  if (const auto header = ReadHeader(line)) {
    parts.sid = SidField(header->sid);
    parts.date = Field(header->date);
    parts.time = Field(header->time);
    text = rest;
    line = TakeFilledLine(rest);
  }
  return ReadIdentification(line, parts) ? rest : text;
}

void TakeOver(const Parts& previous, Parts& parts) {
  parts.type = previous.type;
  parts.sid = previous.sid;
  parts.ctag = previous.ctag;
  parts.atag = previous.atag;
  parts.code = previous.code;
  parts.verb = previous.verb;
}

}  // namespace

const char* TypeName(MessageType type) {
  switch (type) {
    case MessageType::Acknowledgement:
      return "acknowledgement";
    case MessageType::Response:
      return "response";
    case MessageType::Autonomous:
      return "autonomous";
    case MessageType::Prompt:
      return "prompt";
    default:
      return "unrecognised";
  }
}

bool Continues(std::string_view bytes, const Parts& parts) {
  return (!bytes.empty() && bytes.back() == '>') || (parts.type == MessageType::Response && parts.code == "RTRV");
}

std::vector<std::string> TextLines(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty())
    lines.emplace_back(WithoutIndent(TakeLine(text)));
  DropBlankEnds(lines);
  return lines;
}

std::optional<std::string> Field(std::string_view text) {
  const size_t begin = std::min(text.find_first_not_of("\r\n"), text.size());
  const std::string_view field = Trimmed(text.substr(begin, text.find_last_not_of("\r\n") + 1 - begin));
  return field.empty() ? std::nullopt : std::optional<std::string>(field);
}

std::optional<std::string> SidField(std::string_view text) {
  text = Trimmed(text);
  if (text.size() >= 2 && text.front() == '"' && text.back() == '"') text = text.substr(1, text.size() - 2);
  return Field(text);
}

Parts Reader::Read(const Message& message) {
  Parts parts;
  parts.offset = message.offset;
  parts.length = message.length;
  std::string_view text = message.bytes;
  if (ReadPrompt(text, parts) || ReadAcknowledgementParts(text, parts)) return parts;
  if (message.complete && !text.empty()) text.remove_suffix(1);
  if (message.bareText) {
    TakeOver(m_previous, parts);
  } else {
    text = ReadHead(text, parts);
  }
  parts.lines = TextLines(text);
  parts.continues = Continues(message.bytes, parts);
  if (parts.continues) {
    Parts previous;
    TakeOver(parts, previous);
    m_previous = std::move(previous);  // at once: memory that runs out leaves all of it or nothing
  }
  return parts;
}

}  // namespace VARNEL_TL1
