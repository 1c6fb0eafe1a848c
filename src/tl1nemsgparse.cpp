#include "tl1nemsgparse.h"

#include <string_view>
#include <utility>

#include "common.h"
#include "find.h"

namespace VARNEL_COMMON {

namespace {

constexpr char MODULE[] = "tl1nemsgparse";
constexpr size_t NPOS = std::string::npos;

enum MessageType : int { NONE = -1, ACKNOWLEDGEMENT = 2, RESPONSE = 3, AUTONOMOUS = 4 };

constexpr std::string_view HEADER_START = "\r\n\n   ";
constexpr std::string_view LINE_END = "\r\n";
constexpr std::string_view ACK_END = "\r\n<";
constexpr std::string_view CONTINUATION = "\r\n>";
constexpr std::string_view VERB_END = "\r\n   ";
constexpr std::string_view RESPONSE_END = "\r\n;";
constexpr size_t INDENT = 3;      // blanks in front of the SID
constexpr size_t CTAG_START = 3;  // "M" and two blanks

// As std::string::find, which gives npos for a search that would begin behind the end, but always linear.
size_t Find(std::string_view text, std::string_view piece, size_t from) {
  return from > text.size() ? NPOS : VARNEL_INTERNAL::FindLinear(text, piece, from);
}

// Cuts the characters from `start` up to `end` out of a message; false when there are none.
bool Cut(const std::string& message, size_t start, size_t end, std::string& field) {
  field.assign(message, start, end > start ? end - start : 0);
  return !field.empty();
}

bool HasHeader(int type) {
  return type == RESPONSE || type == AUTONOMOUS;
}

// Always false, for the caller to return.
bool Warn(const char* function, int line, const char* text) {
  ReportWarning({MODULE, function, line}, text);
  return false;
}

bool EndsInTerminator(const std::string& message) {
  return message.back() == ';' || message.back() == '>';
}

}  // namespace

CTL1NEMsgParse::CTL1NEMsgParse(const std::string& msg) : m_strNEMsg(msg), m_nMsgType(NONE), m_nMsgStartPos(0) {}

void CTL1NEMsgParse::InitAllPrivate() {
  for (std::string* text : {&m_strNEMsg, &m_strSID, &m_strDate, &m_strTime, &m_strEcho, &m_strRspLine, &m_strTextBlock,
                            &m_strVerb, &m_strRetRspCode, &m_strCtag, &m_strAtag}) {
    text->clear();
  }
  m_nMsgType = NONE;
  m_nMsgStartPos = 0;
}

bool CTL1NEMsgParse::NEMsgParse() {
  return ParseInPlaceOfThis(CTL1NEMsgParse(*this));
}

// Takes over what `message` becomes when parsed, so that memory that runs out on the way leaves this object as it was.
bool CTL1NEMsgParse::ParseInPlaceOfThis(CTL1NEMsgParse message) {
  const bool recognised = message.Parse();
  *this = std::move(message);
  return recognised;
}

bool CTL1NEMsgParse::Parse() {
  if (m_strNEMsg.empty()) {
    return Warn("NEMsgParse", __LINE__, "CTL1NEMsgParse::NEMsgParse(): NEMsg is empty;");
  }
  const size_t header = Find(m_strNEMsg, HEADER_START, 0);
  if (header != NPOS) return ParseFromHeader(header);
  if (Find(m_strNEMsg, ACK_END, 0) != NPOS) return ParseAck();
  const size_t prompt = Find(m_strNEMsg, CONTINUATION, 0);
  if (prompt == NPOS) return false;
  m_nMsgType = AUTONOMOUS;
  m_nMsgStartPos = static_cast<unsigned int>(prompt);
  return true;
}

bool CTL1NEMsgParse::ParseFromHeader(size_t header) {
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
  // An "M" must follow even where the message turns out to be an autonomous one.
  const size_t mPos = lineEnd == NPOS ? NPOS : m_strNEMsg.find('M', lineEnd + 1);
  return mPos != NPOS && ParseOutputAndAuto(mPos, lineEnd);
}

bool CTL1NEMsgParse::ParseSID(size_t& cursor) {
  const size_t blank = m_strNEMsg.find(' ', cursor);
  const size_t start = blank + INDENT;
  const size_t end = blank == NPOS ? NPOS : m_strNEMsg.find(' ', start);
  if (end == NPOS) return false;
  cursor = end;
  return Cut(m_strNEMsg, start, end, m_strSID);
}

bool CTL1NEMsgParse::ParseDate(size_t& cursor) {
  const size_t start = cursor + 1;
  const size_t end = m_strNEMsg.find(' ', start);
  if (end == NPOS) return false;
  cursor = end;
  return Cut(m_strNEMsg, start, end, m_strDate);
}

bool CTL1NEMsgParse::ParseTime(size_t& cursor) {
  const size_t start = cursor + 1;
  const size_t end = m_strNEMsg.find('\r', start);
  if (end == NPOS) return false;
  cursor = end;
  return Cut(m_strNEMsg, start, end, m_strTime);
}

bool CTL1NEMsgParse::ParseAck() {
  const size_t blank = m_strNEMsg.find(' ');
  if (blank == NPOS || !Cut(m_strNEMsg, 0, blank, m_strRetRspCode)) return Refuse();
  m_nMsgStartPos = 0;
  const size_t end = Find(m_strNEMsg, ACK_END, blank);
  if (end == NPOS || end + ACK_END.size() != m_strNEMsg.size()) return Refuse();
  if (!Cut(m_strNEMsg, blank + 1, end, m_strCtag)) return Refuse();
  m_nMsgType = ACKNOWLEDGEMENT;
  return true;
}

bool CTL1NEMsgParse::ParseOutputAndAuto(size_t mPos, size_t lineEnd) {
  return mPos == lineEnd + 1 ? ParseOutput(mPos) : ParseAuto(lineEnd);
}

bool CTL1NEMsgParse::ParseOutput(size_t mPos) {
  const size_t ctag = mPos + CTAG_START;
  const size_t blank = m_strNEMsg.find(' ', ctag);
  if (blank == NPOS) return Refuse(__LINE__, "CTL1NEMsgParse::ParseOutputAndAuto(): Not find ctag");
  if (!Cut(m_strNEMsg, ctag, blank, m_strCtag)) {
    return Refuse(__LINE__, "CTL1NEMsgParse::ParseOutputAndAuto(): ctag is empty");
  }
  size_t end = Find(m_strNEMsg, LINE_END, blank);
  if (end == NPOS) return Refuse(__LINE__, "CTL1NEMsgParse::ParseOutputAndAuto(): m_strRetRspCode not find");
  if (!Cut(m_strNEMsg, blank + 1, end, m_strRetRspCode)) {
    return Refuse(__LINE__, "CTL1NEMsgParse::ParseOutputAndAuto(): m_strRetRspCode is empty");
  }
  m_strRspLine = "\r\nM  " + m_strCtag + " " + m_strRetRspCode;
  m_nMsgType = RESPONSE;
  return ParseTextBlock(end);
}

bool CTL1NEMsgParse::ParseAuto(size_t lineEnd) {
  const size_t codeEnd = m_strNEMsg.find(' ', lineEnd);
  if (codeEnd == NPOS || !Cut(m_strNEMsg, lineEnd + 1, codeEnd, m_strRetRspCode)) return Refuse();
  const size_t atagEnd = m_strNEMsg.find(' ', codeEnd + 2);
  if (atagEnd == NPOS || !Cut(m_strNEMsg, codeEnd + 1, atagEnd, m_strAtag)) return Refuse();
  size_t cursor = atagEnd;
  if (!ParseVerb(cursor)) return Refuse();
  m_nMsgType = AUTONOMOUS;
  return ParseTextBlock(cursor);
}

bool CTL1NEMsgParse::ParseVerb(size_t& cursor) {
  const size_t start = cursor + 1;
  const size_t end = Find(m_strNEMsg, VERB_END, start);
  if (end == NPOS && !EndsInTerminator(m_strNEMsg)) return false;
  cursor = end == NPOS ? m_strNEMsg.size() - 1 : end;
  return Cut(m_strNEMsg, start, cursor, m_strVerb);
}

bool CTL1NEMsgParse::ParseTextBlock(size_t& cursor) {
  if (!EndsInTerminator(m_strNEMsg)) return false;
  const size_t start = cursor + 1;
  // A message that ends in ">" but holds a ";" ends its block at that ";".
  const size_t semicolon = m_strNEMsg.rfind(';');
  cursor = semicolon == NPOS ? m_strNEMsg.size() - 1 : semicolon;
  Cut(m_strNEMsg, start, cursor, m_strTextBlock);
  return true;
}

bool CTL1NEMsgParse::ParseMsgEndFlg(const std::string& msg) {
  if (msg.empty()) {
    return Warn("ParseMsgEndFlg", __LINE__, "CTL1NEMsgParse::ParseMsgEndFlg(): strNEMsg is empty;");
  }
  const bool hasEnd = Find(msg, RESPONSE_END, 0) != NPOS;
  if (!ParseInPlaceOfThis(CTL1NEMsgParse(msg))) {
    return Warn("ParseMsgEndFlg", __LINE__, "CTL1NEMsgParse::ParseMsgEndFlg(): NEMsgParse() is faid;");
  }
  if (m_nMsgType == NONE) {
    return Warn("ParseMsgEndFlg", __LINE__, "CTL1NEMsgParse::ParseMsgEndFlg(): strNEMsg is Error;");
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

// Empties everything; the way most failures end.
bool CTL1NEMsgParse::Refuse() {
  InitAllPrivate();
  return false;
}

bool CTL1NEMsgParse::Refuse(int line, const char* why) {
  InitAllPrivate();
  return Warn("ParseOutputAndAuto", line, why);
}

}  // namespace VARNEL_COMMON
