#include "tl1_strict.h"

#include <tl1nemsgparse.h>

using VARNEL_COMMON::CTL1NEMsgParse;
using VARNEL_TL1::Message;
using VARNEL_TL1::MessageCopy;
using VARNEL_TL1::MessageType;

namespace {

enum ParsedType { PARSED_ACKNOWLEDGEMENT = 2, PARSED_RESPONSE = 3, PARSED_AUTONOMOUS = 4 };

// The parser gives a bare prompt the type of an autonomous message, with no fields.
MessageType TypeOf(const CTL1NEMsgParse& parser) {
  if (parser.m_nMsgType == PARSED_ACKNOWLEDGEMENT) return MessageType::Acknowledgement;
  if (parser.m_nMsgType == PARSED_RESPONSE) return MessageType::Response;
  return parser.m_strRetRspCode.empty() ? MessageType::Prompt : MessageType::Autonomous;
}

std::string_view Field(std::string_view text) {
  constexpr char BLANKS[] = " \t\r\n";
  const size_t begin = text.find_first_not_of(BLANKS);
  return begin == std::string_view::npos ? std::string_view()
                                         : text.substr(begin, text.find_last_not_of(BLANKS) + 1 - begin);
}

std::string_view SidField(std::string_view text) {
  text = Field(text);
  if (text.size() >= 2 && text.front() == '"' && text.back() == '"') text = text.substr(1, text.size() - 2);
  return Field(text);
}

// The missing field of the header line. A field ends at the first blank, the time at a carriage return; `fields` is the
// text after the three blanks.
const char* BadHeaderField(std::string_view fields) {
  for (const char* name : {"SID", "date"}) {
    const size_t blank = fields.find(' ');
    if (blank == 0 || blank == std::string_view::npos) return name;
    fields.remove_prefix(blank + 1);
  }
  return "time";
}

// The members that the parser has set show where it failed.
const char* RefusedAt(const CTL1NEMsgParse& parser, std::string_view message) {
  constexpr std::string_view HEADER = "\r\n\n   ";
  const size_t header = message.find(HEADER);
  if (header == std::string_view::npos) return parser.m_strNEMsg.empty() ? "acknowledgement" : "header line";
  if (parser.m_nMsgType == PARSED_RESPONSE || parser.m_nMsgType == PARSED_AUTONOMOUS) return "text block";
  const bool badField = !parser.m_strNEMsg.empty() && parser.m_strTime.empty();
  return badField ? BadHeaderField(message.substr(header + HEADER.size())) : "identification line";
}

}  // namespace

StrictMessage ReadStrictly(const Message& message) {
  Message read;
  read.bytes = read.text = message.bytes;
  read.offset = message.offset;
  read.length = message.length;
  read.complete = message.complete;
  read.tooLong = message.tooLong;
  read.continues = !message.bytes.empty() && message.bytes.back() == '>';
  CTL1NEMsgParse parser{std::string(message.bytes)};
  if (!message.complete) return {MessageCopy(read), ""};
  if (!parser.NEMsgParse()) return {MessageCopy(read), RefusedAt(parser, message.bytes)};
  read.type = TypeOf(parser);
  read.sid = SidField(parser.m_strSID);
  read.date = Field(parser.m_strDate);
  read.time = Field(parser.m_strTime);
  read.ctag = Field(parser.m_strCtag);
  read.atag = Field(parser.m_strAtag);
  read.code = Field(parser.m_strRetRspCode);
  read.verb = Field(parser.m_strVerb);
  read.text = parser.m_strTextBlock;
  read.continues = read.continues || (read.type == MessageType::Response && read.code == "RTRV");
  return {MessageCopy(read), ""};
}
