#include "tl1_strict.h"

#include <tl1nemsgparse.h>

using VARNEL_COMMON::CTL1NEMsgParse;
using VARNEL_TL1::Field;
using VARNEL_TL1::MessageType;
using VARNEL_TL1::Parts;

namespace {

enum ParsedType { PARSED_ACKNOWLEDGEMENT = 2, PARSED_RESPONSE = 3 };

// The parser gives a bare prompt the type of an autonomous message, with no fields.
MessageType TypeOf(const CTL1NEMsgParse& parser) {
  if (parser.m_nMsgType == PARSED_ACKNOWLEDGEMENT) return MessageType::Acknowledgement;
  if (parser.m_nMsgType == PARSED_RESPONSE) return MessageType::Response;
  return parser.m_strRetRspCode.empty() ? MessageType::Prompt : MessageType::Autonomous;
}

}  // namespace

Parts ReadStrictly(const VARNEL_TL1::Message& message) {
  Parts parts;
  parts.offset = message.offset;
  parts.length = message.length;
  CTL1NEMsgParse parser(message.bytes);
  if (!message.complete || !parser.NEMsgParse()) {
    parts.lines = VARNEL_TL1::TextLines(message.bytes);
  } else {
    parts.type = TypeOf(parser);
    parts.sid = VARNEL_TL1::SidField(parser.m_strSID);
    parts.date = Field(parser.m_strDate);
    parts.time = Field(parser.m_strTime);
    parts.ctag = Field(parser.m_strCtag);
    parts.atag = Field(parser.m_strAtag);
    parts.code = Field(parser.m_strRetRspCode);
    parts.verb = Field(parser.m_strVerb);
    parts.lines = VARNEL_TL1::TextLines(parser.m_strTextBlock);
  }
  parts.continues = VARNEL_TL1::Continues(message.bytes, parts);
  return parts;
}
