#include "tl1nemsgparse.h"

#include <string_view>

#include "common.h"
#include "find.h"
#include "tl1_parser.h"

namespace VARNEL_COMMON {

namespace {

constexpr char MODULE[] = "tl1nemsgparse";
constexpr VARNEL_INTERNAL::Finder RESPONSE_END("\r\n;");

bool HasHeader(int type) {
  return type == TL1Findings::RESPONSE || type == TL1Findings::AUTONOMOUS;
}

// Always false, for the caller to return.
bool Warn(int line, const char* text) {
  ReportWarning({MODULE, "ParseMsgEndFlg", line}, text);
  return false;
}

// A part of a message, and the member that keeps it.
struct Place {
  TL1Part TL1Findings::*part;
  std::string CTL1NEMsgParse::*text;
};

constexpr Place PLACES[] = {
    {&TL1Findings::sid, &CTL1NEMsgParse::m_strSID},         {&TL1Findings::date, &CTL1NEMsgParse::m_strDate},
    {&TL1Findings::time, &CTL1NEMsgParse::m_strTime},       {&TL1Findings::echo, &CTL1NEMsgParse::m_strEcho},
    {&TL1Findings::rspLine, &CTL1NEMsgParse::m_strRspLine}, {&TL1Findings::textBlock, &CTL1NEMsgParse::m_strTextBlock},
    {&TL1Findings::verb, &CTL1NEMsgParse::m_strVerb},       {&TL1Findings::code, &CTL1NEMsgParse::m_strRetRspCode},
    {&TL1Findings::ctag, &CTL1NEMsgParse::m_strCtag},       {&TL1Findings::atag, &CTL1NEMsgParse::m_strAtag},
};

}  // namespace

// Nothing of the object changes before all of it is known.
struct CTL1NEMsgParse::Findings : TL1Findings {};

CTL1NEMsgParse::CTL1NEMsgParse(const std::string& msg)
    : m_strNEMsg(msg), m_nMsgType(TL1Findings::NONE), m_nMsgStartPos(0) {}

void CTL1NEMsgParse::InitAllPrivate() {
  m_strNEMsg.clear();
  ClearParts();
}

void CTL1NEMsgParse::ClearParts() {
  for (const Place& place : PLACES)
    (this->*place.text).clear();
  m_nMsgType = TL1Findings::NONE;
  m_nMsgStartPos = 0;
}

bool CTL1NEMsgParse::NEMsgParse() {
  Findings found;
  const bool recognised = FindTL1Parts(m_strNEMsg, found);
  Reserve(found);
  Take(found);
  return recognised;
}

// Gets the memory for what was found, so that running out of it changes nothing.
void CTL1NEMsgParse::Reserve(const Findings& found) {
  for (const Place& place : PLACES) {
    std::string& text = this->*place.text;
    const size_t length = (found.*place.part).length;
    if (text.capacity() < length) text.reserve(length);  // a smaller number asks it to shrink
  }
}

void CTL1NEMsgParse::Take(const Findings& found) {
  if (found.emptiesAll) return InitAllPrivate();
  for (const Place& place : PLACES)
    (found.*place.part).CopyTo(this->*place.text, m_strNEMsg);
  // Whatever stands around the "M" in the message.
  constexpr std::string_view START = TL1Findings::RSP_LINE_START;
  if (found.rspLine.length > 0) START.copy(m_strRspLine.data(), START.size());
  if (found.type != TL1Findings::NONE) m_nMsgType = found.type;
  m_nMsgStartPos = found.startPos.value_or(m_nMsgStartPos);
}

bool CTL1NEMsgParse::ParseMsgEndFlg(const std::string& msg) {
  if (msg.empty()) {
    return Warn(__LINE__, "CTL1NEMsgParse::ParseMsgEndFlg(): strNEMsg is empty;");
  }
  const bool hasEnd = RESPONSE_END.Find(msg) != std::string_view::npos;
  Findings found;
  const bool recognised = FindTL1Parts(msg, found);
  Reserve(found);
  m_strNEMsg = msg;  // may be one of the parts
  ClearParts();
  Take(found);
  if (!recognised) {
    return Warn(__LINE__, "CTL1NEMsgParse::ParseMsgEndFlg(): NEMsgParse() is faid;");
  }
  if (m_nMsgType == TL1Findings::NONE) {
    return Warn(__LINE__, "CTL1NEMsgParse::ParseMsgEndFlg(): strNEMsg is Error;");
  }
  return m_nMsgType != TL1Findings::ACKNOWLEDGEMENT && hasEnd;
}

std::string CTL1NEMsgParse::GetRetRspCode() const {
  return m_strRetRspCode;
}

std::string CTL1NEMsgParse::GetCtage() const {
  return m_strCtag;
}

int CTL1NEMsgParse::GetNEMsgType() const {
  return m_nMsgType;
}

std::string CTL1NEMsgParse::GetSID() const {
  return HasHeader(m_nMsgType) ? m_strSID : std::string();
}

std::string CTL1NEMsgParse::GetTextBlock() const {
  return HasHeader(m_nMsgType) ? m_strTextBlock : std::string();
}

unsigned int CTL1NEMsgParse::GetMsgStartPos() const {
  return m_nMsgStartPos;
}

}  // namespace VARNEL_COMMON
