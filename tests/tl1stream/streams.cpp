#include "streams.h"

#include <tl1_output.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <tuple>

namespace VARNEL_TEST {

using VARNEL_TL1::Framer;
using VARNEL_TL1::Message;
using VARNEL_TL1::MessageType;
using VARNEL_TL1::Parts;

namespace {

void TakeAll(Framer& framer, Messages& messages) {
  for (Message message; framer.Next(message);)
    messages.push_back(message);
}

std::string FileBytes(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> SplitLines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);)
    lines.push_back(line);
  return lines;
}

std::vector<Capture> LoadCaptures() {
  std::vector<Capture> captures;
  for (const auto& file : std::filesystem::directory_iterator(VARNEL_CAPTURES)) {
    std::filesystem::path path = file.path();
    if (path.extension() != ".tl1") continue;
    const std::string bytes = FileBytes(path);
    captures.push_back({path.stem(), bytes, SplitLines(FileBytes(path.replace_extension(".json")))});
  }
  std::sort(captures.begin(), captures.end(), [](const Capture& a, const Capture& b) { return a.name < b.name; });
  return captures;
}

}  // namespace

Messages Cut(std::string_view stream, size_t pieceSize) {
  Framer framer;
  Messages messages;
  for (; !stream.empty(); stream.remove_prefix(std::min(pieceSize, stream.size()))) {
    framer.Feed(stream.substr(0, pieceSize));
    TakeAll(framer, messages);
  }
  framer.Finish();
  TakeAll(framer, messages);
  return messages;
}

Messages CutWhole(std::string_view stream, VARNEL_TL1::Skipped* skipped) {
  Framer framer;
  framer.Feed(stream);
  framer.Finish();
  Messages messages;
  TakeAll(framer, messages);
  if (skipped != nullptr) *skipped = framer.GetSkipped();
  return messages;
}

Messages CutAt(std::string_view stream, size_t position) {
  Framer framer;
  framer.Feed(stream.substr(0, position));
  framer.Feed(stream.substr(position));
  framer.Finish();
  Messages messages;
  TakeAll(framer, messages);
  return messages;
}

std::string Shown(const Message& message) {
  return std::to_string(message.offset) + "+" + std::to_string(message.length) +
         (message.complete ? " complete" : " incomplete") + (message.bareText ? " text " : " ") + message.bytes;
}

std::vector<std::string> Shown(const Messages& messages) {
  std::vector<std::string> shown;
  for (const Message& message : messages)
    shown.push_back(Shown(message));
  return shown;
}

std::string Shown(const Parts& parts) {
  return PartsToJson(parts).dump(-1, ' ', false, Json::error_handler_t::replace);
}

bool Same(const Parts& a, const Parts& b) {
  const auto tied = [](const Parts& parts) {
    return std::tie(parts.type, parts.offset, parts.length, parts.sid, parts.date, parts.time, parts.ctag, parts.atag,
                    parts.code, parts.verb, parts.lines, parts.continues);
  };
  return tied(a) == tied(b);
}

std::vector<std::string> ReadAll(std::string_view stream) {
  VARNEL_TL1::Reader reader;
  std::vector<std::string> shown;
  for (const Message& message : CutWhole(stream))
    shown.push_back(Shown(reader.Read(message)));
  return shown;
}

const std::vector<Capture>& Captures() {
  static const std::vector<Capture> captures = LoadCaptures();
  return captures;
}

std::string StrictMessages::Words(std::string_view characters, size_t most) {
  std::string words;
  for (size_t count = 1 + Random(most); count > 0; --count)
    words.push_back(characters[Random(characters.size())]);
  return words;
}

std::string StrictMessages::Tag() {
  return Words("0123456789", 6);
}

StrictMessages::Made StrictMessages::Make() {
  const size_t kind = Random(8);
  Made made = kind == 0 ? MakeAcknowledgement() : kind < 4 ? MakeResponse() : MakeAutonomous();
  made.parts.length = made.bytes.size();
  return made;
}

StrictMessages::Made StrictMessages::MakeAcknowledgement() {
  constexpr const char* CODES[] = {"IP", "PF", "OK", "NA", "NG", "RL"};
  Made made;
  made.parts.type = MessageType::Acknowledgement;
  made.parts.code = CODES[Random(std::size(CODES))];
  made.parts.ctag = Tag();
  made.bytes = *made.parts.code + " " + *made.parts.ctag + "\r\n<";
  return made;
}

StrictMessages::Made StrictMessages::MakeResponse() {
  constexpr const char* CODES[] = {"COMPLD", "DENY", "PRTL", "DELAY"};
  Made made;
  AddHeader(made);
  made.parts.type = MessageType::Response;
  made.parts.ctag = Tag();
  made.parts.code = CODES[Random(std::size(CODES))];
  made.bytes += "M  " + *made.parts.ctag + " " + *made.parts.code + "\r\n";
  AddText(made, false);
  return made;
}

StrictMessages::Made StrictMessages::MakeAutonomous() {
  constexpr const char* CODES[] = {"*C", "**", "* ", "A ", "AA", "WN", "I "};
  constexpr const char* VERBS[] = {"REPT ALM EQPT", "REPT EVT COM", "REPT DBCHG", "REPT ALM", "CANC", "REPT PM T1"};
  Made made;
  AddHeader(made);
  const std::string code = CODES[Random(std::size(CODES))];
  made.parts.type = MessageType::Autonomous;
  made.parts.code = VARNEL_TL1::Field(code);
  made.parts.atag = Random(4) == 0 ? Tag() + "." + Tag() : Tag();
  made.parts.verb = VERBS[Random(std::size(VERBS))];
  made.bytes += code + " " + *made.parts.atag + " " + *made.parts.verb + "\r\n";
  AddText(made, true);
  return made;
}

void StrictMessages::AddHeader(Made& made) {
  const auto twoDigits = [this](size_t end) { return std::to_string(10 + Random(end - 10)); };
  made.parts.sid = "N" + Words("ABCXYZ0189-_", 12);
  made.parts.date = twoDigits(100) + "-" + twoDigits(13) + "-" + twoDigits(32);
  made.parts.time = twoDigits(24) + ":" + twoDigits(60) + ":" + twoDigits(60);
  made.bytes = "\r\n\n   " + *made.parts.sid + " " + *made.parts.date + " " + *made.parts.time + "\r\n";
}

// A line of text is quoted, a comment, or neither; one that holds an "M" makes an event readable for a strict parser.
void StrictMessages::AddText(Made& made, bool sureM) {
  const char end = Random(5) == 0 ? '>' : ';';
  const std::string_view inQuotes = end == ';' ? "abM;><=,:/*'5 \x95\xE6" : "abM=,:/*'5 \x95\xE6";
  for (size_t count = sureM ? 1 + Random(4) : Random(5); count > 0; --count) {
    const size_t kind = Random(4);
    std::string line = kind == 0   ? Words("abM=,:-5", 30)
                       : kind == 1 ? "/* " + Words("abM=,: 5", 30) + " */"
                                   : "\"" + Words(inQuotes, 20) + "-\\\"" + Words(inQuotes, 20) + "-\\\",M\"";
    if (sureM && count == 1) line += ",M";
    made.bytes += "   " + line + "\r\n";
    made.parts.lines.push_back(line);
  }
  made.bytes += end;
  made.parts.continues = end == '>';
}

}  // namespace VARNEL_TEST
