#include "tl1_strict.h"

#include <tl1nemsgparse.h>

using VARNEL_COMMON::CTL1NEMsgParse;
using VARNEL_TL1::Message;
using VARNEL_TL1::MessageCopy;
using VARNEL_TL1::MessageType;

namespace {

enum ParsedType { PARSED_ACKNOWLEDGEMENT = 2, PARSED_RESPONSE = 3 };

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

}  // namespace

MessageCopy ReadStrictly(const Message& message) {
  Message read;
  read.bytes = read.text = message.bytes;
  read.offset = message.offset;
  read.length = message.length;
  read.complete = message.complete;
  read.tooLong = message.tooLong;
  read.continues = !message.bytes.empty() && message.bytes.back() == '>';
  CTL1NEMsgParse parser{std::string(message.bytes)};
  if (!message.complete || !parser.NEMsgParse()) return MessageCopy(read);
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
  return MessageCopy(read);
}
