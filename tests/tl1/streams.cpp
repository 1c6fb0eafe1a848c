#include "streams.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace VARNEL_TEST {

using VARNEL_TL1::Framer;
using VARNEL_TL1::Message;
using VARNEL_TL1::MessageCopy;

namespace {

void TakeAll(Framer& framer, Cut& cut) {
  for (Message message; framer.Next(message);)
    cut.messages.emplace_back(message);
}

std::string Place(const Message& message) {
  return std::to_string(message.offset) + "+" + std::to_string(message.length);
}

}  // namespace

Cut CutStream(std::string_view stream, size_t pieceSize, size_t limit) {
  Framer framer(limit);
  Cut cut;
  while (!stream.empty()) {
    const size_t length = pieceSize == 0 ? stream.size() : std::min(pieceSize, stream.size());
    framer.Append(stream.substr(0, length));
    TakeAll(framer, cut);
    stream.remove_prefix(length);
  }
  framer.Finish();
  TakeAll(framer, cut);
  cut.skipped = framer.GetSkipped();
  return cut;
}

std::string ShownText(std::string_view text) {
  std::string shown;
  VARNEL_TL1::LineReader lines(text);
  for (std::string_view line; lines.Next(line);)
    shown.append(" | ").append(line);
  return shown;
}

std::string Shown(const Message& message) {
  std::string shown = TypeName(message.type);
  for (const std::string_view field : {message.sid, message.ctag, message.atag, message.code, message.verb})
    if (!field.empty()) shown.append(" ").append(field);
  if (message.bare) shown += " bare";
  if (message.continues) shown += " continues";
  if (!message.complete) shown += " incomplete";
  if (message.tooLong) shown += " tooLong";
  return shown + ShownText(message.text);
}

Texts Shown(const Messages& messages) {
  Texts shown;
  for (const MessageCopy& message : messages)
    shown.push_back(Shown(message.View()));
  return shown;
}

Texts ShownWithPlaces(const Messages& messages) {
  Texts shown;
  for (const MessageCopy& copy : messages) {
    const Message& message = copy.View();
    std::string header;
    if (!message.date.empty()) header.append(" ").append(message.date).append(" ").append(message.time);
    shown.push_back(Place(message) + header + " " + Shown(message));
  }
  return shown;
}

Texts Read(std::string_view stream) {
  const Cut cut = CutStream(stream);
  EXPECT_EQ(ShownWithPlaces(CutStream(stream, 1).messages), ShownWithPlaces(cut.messages));
  return Shown(cut.messages);
}

std::string MessageMaker::Words(std::string_view characters, size_t most) {
  std::string words;
  for (size_t count = 1 + Random(most); count > 0; --count)
    words += OneOf(characters);
  return words;
}

MessageMaker::Made MessageMaker::Make() {
  return Random(8) == 0 ? MakeAcknowledgement() : MakeWithHeader();
}

MessageMaker::Made MessageMaker::MakeAcknowledgement() {
  constexpr const char* CODES[] = {"IP", "PF", "OK", "NA", "NG", "RL"};
  const std::string code = OneOf(CODES), ctag = Words("0123456789", 6);
  return {code + " " + ctag + "\r\n<", "acknowledgement " + ctag + " " + code};
}

// Quoted, a comment, or neither; the latter contains no special character.
std::string MessageMaker::Line() {
  constexpr std::string_view IN_QUOTES = "abM;><=,:/*'5 \x95\xE6";
  const size_t kind = Random(4);
  if (kind == 0) return Words("abM=,:-5", 30);
  if (kind == 1) return "/* " + Words("abM=,: 5\";", 30) + " */";
  return "\"" + Words(IN_QUOTES, 20) + "-\\\"" + Words(IN_QUOTES, 20) + "-\\\",M\"";
}

// An event has a line with an "M", which the strict parser requires.
MessageMaker::Made MessageMaker::MakeWithHeader() {
  constexpr const char* RESPONSES[] = {"COMPLD", "DENY", "PRTL", "DELAY"};
  constexpr const char* ALARMS[] = {"*C", "**", "* ", "A ", "AA", "WN", "I "};
  constexpr const char* VERBS[] = {"REPT ALM EQPT", "REPT EVT COM", "REPT DBCHG", "REPT ALM", "CANC", "REPT PM T1"};
  const bool autonomous = Random(2) == 0;
  const std::string sid = "N" + Words("ABCXYZ0189-_", 12), tag = Words("0123456789", 6);
  std::string bytes = "\r\n\n   " + sid + " " + TwoDigits(100) + "-" + TwoDigits(13) + "-" + TwoDigits(32) + " " +
                      TwoDigits(24) + ":" + TwoDigits(60) + ":" + TwoDigits(60) + "\r\n";
  std::string shown = std::string(autonomous ? "autonomous " : "response ") + sid + " ";
  if (autonomous) {
    const std::string code = OneOf(ALARMS), verb = OneOf(VERBS);
    const std::string atag = Random(4) == 0 ? tag + "." + tag : tag;
    bytes += code + " " + atag + " " + verb + "\r\n";
    shown += atag + " " + code.substr(0, code.find(' ')) + " " + verb;
  } else {
    const std::string code = OneOf(RESPONSES);
    bytes += "M  " + tag + " " + code + "\r\n";
    shown += tag + " " + code;
  }
  const char end = Random(5) == 0 ? '>' : ';';
  if (end == '>') shown += " continues";
  for (size_t count = Random(4) + (autonomous ? 1 : 0); count > 0; --count) {
    const std::string line = Line() + (autonomous && count == 1 ? ",M" : "");
    bytes += "   " + line + "\r\n";
    shown += " | " + line;
  }
  return {bytes + end, shown};
}

}  // namespace VARNEL_TEST
