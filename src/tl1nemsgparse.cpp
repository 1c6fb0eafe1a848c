#include "tl1nemsgparse.h"

#include "common.h"

namespace VARNEL_COMMON {

namespace {

constexpr char MODULE[] = "tl1nemsgparse";
constexpr size_t NPOS = std::string::npos;
constexpr int NONE = -1, ACKNOWLEDGEMENT = 2, RESPONSE = 3, AUTONOMOUS = 4;

constexpr char HEADER_START[] = "\r\n\n   ";
constexpr char ACK_END[] = "\r\n<";
constexpr char VERB_END[] = "\r\n   ";
constexpr size_t INDENT = 3;      // blanks before the SID
constexpr size_t CTAG_START = 3;  // "M" and two blanks

bool HasHeader(int type) {
  return type == RESPONSE || type == AUTONOMOUS;
}

// Always false, for the caller to return.
bool Warn(const char* function, int line, const char* text) {
  LogWarning({MODULE, function, line}, text);
  return false;
}

// Cuts out the field from `start` to the next `end`, where the cursor moves. False without an end or with an empty
// field.
bool TakeField(const std::string& message, size_t start, char end, size_t& cursor, std::string& field) {
  const size_t found = message.find(end, start);
  if (found == NPOS) return false;
  cursor = found;
  field.assign(message, start, found - start);
  return !field.empty();
}

bool EndsInTerminator(const std::string& message) {
  return message.back() == ';' || message.back() == '>';
}

}  // namespace

CTL1NEMsgParse::CTL1NEMsgParse(const std::string& msg) : m_strNEMsg(msg), m_nMsgType(NONE), m_nMsgStartPos(0) {}

void CTL1NEMsgParse::InitAllPrivate() {
  m_strNEMsg.clear();
  ClearParts();
}

void CTL1NEMsgParse::ClearParts() {
  for (std::string* part : {&m_strSID, &m_strDate, &m_strTime, &m_strEcho, &m_strRspLine, &m_strTextBlock, &m_strVerb,
                            &m_strRetRspCode, &m_strCtag, &m_strAtag})
    part->clear();
  m_nMsgType = NONE;
  m_nMsgStartPos = 0;
}

// Most failures end here. Always false, for the caller to return.
bool CTL1NEMsgParse::Refuse() {
  InitAllPrivate();
  return false;
}

bool CTL1NEMsgParse::NEMsgParse() {
  if (m_strNEMsg.empty()) return Warn("NEMsgParse", __LINE__, "CTL1NEMsgParse::NEMsgParse(): NEMsg is empty;");
  const size_t header = m_strNEMsg.find(HEADER_START);
  if (header == NPOS) {
    if (m_strNEMsg.find(ACK_END) != NPOS) return ParseAck();
    const size_t prompt = m_strNEMsg.find("\r\n>");
    if (prompt == NPOS) return false;
    m_nMsgType = AUTONOMOUS;
    m_nMsgStartPos = static_cast<unsigned int>(prompt);
    return true;
  }
  m_nMsgStartPos = static_cast<unsigned int>(header);
  size_t cursor = header;
  if (!ParseSID(cursor)) return Warn("NEMsgParse", __LINE__, "CTL1NEMsgParse::ParseSID(): ParseSID failed;");
  if (!ParseDate(cursor)) {
    m_strSID.clear();
    return Warn("NEMsgParse", __LINE__, "CTL1NEMsgParse::ParseDate(): ParseDate failed;");
  }
  if (!ParseTime(cursor)) {
    m_strSID.clear();
    m_strDate.clear();
    return Warn("NEMsgParse", __LINE__, "CTL1NEMsgParse::ParseDate(): ParseDate failed;");
  }
  m_strEcho.assign(m_strNEMsg, 0, header);
  const size_t lineEnd = m_strNEMsg.find('\n', cursor);
  // An "M" must follow even if the message turns out to be an autonomous one.
  const size_t mPos = lineEnd == NPOS ? NPOS : m_strNEMsg.find('M', lineEnd + 1);
  return mPos != NPOS && ParseOutputAndAuto(mPos, lineEnd);
}

bool CTL1NEMsgParse::ParseSID(size_t& cursor) {
  const size_t blank = m_strNEMsg.find(' ', cursor);
  return TakeField(m_strNEMsg, blank + INDENT, ' ', cursor, m_strSID);
}

bool CTL1NEMsgParse::ParseDate(size_t& cursor) {
  return TakeField(m_strNEMsg, cursor + 1, ' ', cursor, m_strDate);
}

bool CTL1NEMsgParse::ParseTime(size_t& cursor) {
  return TakeField(m_strNEMsg, cursor + 1, '\r', cursor, m_strTime);
}

bool CTL1NEMsgParse::ParseAck() {
  size_t blank = 0;
  if (!TakeField(m_strNEMsg, 0, ' ', blank, m_strRetRspCode)) return Refuse();
  const size_t end = m_strNEMsg.find(ACK_END, blank);
  if (end == NPOS || end + 3 != m_strNEMsg.size()) return Refuse();
  m_strCtag.assign(m_strNEMsg, blank + 1, end - (blank + 1));
  if (m_strCtag.empty()) return Refuse();
  m_nMsgStartPos = 0;
  m_nMsgType = ACKNOWLEDGEMENT;
  return true;
}

bool CTL1NEMsgParse::ParseOutputAndAuto(size_t mPos, size_t lineEnd) {
  return mPos == lineEnd + 1 ? ParseOutput(mPos) : ParseAuto(lineEnd);
}

bool CTL1NEMsgParse::ParseOutput(size_t mPos) {
  const auto refuse = [this](int line, const char* why) {
    Refuse();
    return Warn("ParseOutputAndAuto", line, why);
  };
  const size_t blank = m_strNEMsg.find(' ', mPos + CTAG_START);
  if (blank == NPOS) return refuse(__LINE__, "CTL1NEMsgParse::ParseOutputAndAuto(): Not find ctag");
  m_strCtag.assign(m_strNEMsg, mPos + CTAG_START, blank - (mPos + CTAG_START));
  if (m_strCtag.empty()) return refuse(__LINE__, "CTL1NEMsgParse::ParseOutputAndAuto(): ctag is empty");
  size_t end = m_strNEMsg.find("\r\n", blank);
  if (end == NPOS) return refuse(__LINE__, "CTL1NEMsgParse::ParseOutputAndAuto(): m_strRetRspCode not find");
  m_strRetRspCode.assign(m_strNEMsg, blank + 1, end - (blank + 1));
  if (m_strRetRspCode.empty()) {
    return refuse(__LINE__, "CTL1NEMsgParse::ParseOutputAndAuto(): m_strRetRspCode is empty");
  }
  m_strRspLine.assign("\r\nM  ").append(m_strNEMsg, mPos + CTAG_START, end - (mPos + CTAG_START));
  m_nMsgType = RESPONSE;
  return ParseTextBlock(end);
}

bool CTL1NEMsgParse::ParseAuto(size_t lineEnd) {
  size_t cursor = lineEnd;
  if (!TakeField(m_strNEMsg, lineEnd + 1, ' ', cursor, m_strRetRspCode)) return Refuse();
  const size_t atag = cursor + 1;
  const size_t atagEnd = m_strNEMsg.find(' ', atag + 1);
  if (atagEnd == NPOS) return Refuse();
  m_strAtag.assign(m_strNEMsg, atag, atagEnd - atag);
  cursor = atagEnd;
  if (!ParseVerb(cursor)) return Refuse();
  m_nMsgType = AUTONOMOUS;
  return ParseTextBlock(cursor);
}

bool CTL1NEMsgParse::ParseVerb(size_t& cursor) {
  const size_t start = cursor + 1;
  const size_t end = m_strNEMsg.find(VERB_END, start);
  if (end == NPOS && !EndsInTerminator(m_strNEMsg)) return false;
  cursor = end == NPOS ? m_strNEMsg.size() - 1 : end;
  m_strVerb.assign(m_strNEMsg, start, cursor - start);
  return !m_strVerb.empty();
}

bool CTL1NEMsgParse::ParseTextBlock(size_t& cursor) {
  if (!EndsInTerminator(m_strNEMsg)) return false;
  const size_t start = cursor + 1;
  // If a message that ends in ">" contains a ";", its text block ends at that ";".
  const size_t semicolon = m_strNEMsg.rfind(';');
  cursor = semicolon == NPOS ? m_strNEMsg.size() - 1 : semicolon;
  m_strTextBlock.assign(m_strNEMsg, start, cursor > start ? cursor - start : 0);
  return true;
}

bool CTL1NEMsgParse::ParseMsgEndFlg(const std::string& msg) {
  if (msg.empty()) {
    return Warn("ParseMsgEndFlg", __LINE__, "CTL1NEMsgParse::ParseMsgEndFlg(): strNEMsg is empty;");
  }
  const bool hasEnd = msg.find("\r\n;") != NPOS;
  m_strNEMsg = msg;  // first, as it may be one of the parts
  ClearParts();
  if (!NEMsgParse()) {
    return Warn("ParseMsgEndFlg", __LINE__, "CTL1NEMsgParse::ParseMsgEndFlg(): NEMsgParse() is faid;");
  }
  return m_nMsgType != ACKNOWLEDGEMENT && hasEnd;
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
