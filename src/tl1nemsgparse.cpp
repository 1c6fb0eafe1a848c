#include "tl1nemsgparse.h"

#include <optional>
#include <string_view>

#include "byte_blocks.h"
#include "common.h"
#include "find.h"

namespace VARNEL_COMMON {

namespace {

using VARNEL_INTERNAL::Finder;

constexpr char MODULE[] = "tl1nemsgparse";
constexpr size_t NPOS = std::string::npos;

enum MessageType : int { NONE = -1, ACKNOWLEDGEMENT = 2, RESPONSE = 3, AUTONOMOUS = 4 };

constexpr Finder HEADER_START("\r\n\n   ");
constexpr Finder LINE_END("\r\n");
constexpr Finder ACK_END("\r\n<");
constexpr Finder CONTINUATION("\r\n>");
constexpr Finder VERB_END("\r\n   ");
constexpr Finder RESPONSE_END("\r\n;");
constexpr std::string_view RSP_LINE_START = "\r\nM  ";
constexpr size_t INDENT = 3;      // blanks in front of the SID
constexpr size_t CTAG_START = 3;  // "M" and two blanks

// As std::string::find, which gives npos for a search that would begin behind the end, but always linear.
size_t Find(std::string_view text, const Finder& piece, size_t from) {
  return from > text.size() ? NPOS : piece.Find(text, from);
}

bool HasHeader(int type) {
  return type == RESPONSE || type == AUTONOMOUS;
}

// Always false, for the caller to return.
bool Warn(const char* function, int line, const char* text) {
  ReportWarning({MODULE, function, line}, text);
  return false;
}

void ReserveFor(std::string& text, size_t size) {
  if (text.capacity() < size) text.reserve(size);
}

// A part of a message; one that was not found leaves what an earlier parse left.
struct Part {
  size_t start = NPOS;
  size_t length = 0;

  void CopyTo(std::string& text, const std::string& message) const {
    if (start != NPOS) text.assign(message.data() + start, length);
  }
};

}  // namespace

// What a parse found. Nothing of the object changes before all of it is known.
struct CTL1NEMsgParse::Findings {
  Part sid, date, time, echo, rspLine, textBlock, verb, code, ctag, atag;
  int type = NONE;
  std::optional<unsigned int> startPos;
  bool emptiesAll = false;
};

namespace {

constexpr Part EMPTY = {0, 0};

// Walks over one message, whose form stands in docs/formats.md. A cursor stands where a step begins to read and is
// moved behind what it read.
template <typename Findings>
class Parser {
 public:
  Parser(std::string_view message, Findings& found) : m_message(message), m_found(found) {}

  bool Run() {
    if (m_message.empty()) {
      return Warn("NEMsgParse", __LINE__, "CTL1NEMsgParse::NEMsgParse(): NEMsg is empty;");
    }
    const size_t header = Find(m_message, HEADER_START, 0);
    if (header != NPOS) return ParseFromHeader(header);
    if (Find(m_message, ACK_END, 0) != NPOS) return ParseAck();
    const size_t prompt = Find(m_message, CONTINUATION, 0);
    if (prompt == NPOS) return false;
    m_found.type = AUTONOMOUS;
    m_found.startPos = static_cast<unsigned int>(prompt);
    return true;
  }

 private:
  // Cuts the characters from `start` up to `end` out of the message; false when there are none.
  static bool Cut(size_t start, size_t end, Part& part) {
    part = {start, end > start ? end - start : 0};
    return part.length > 0;
  }

  bool EndsInTerminator() const { return m_message.back() == ';' || m_message.back() == '>'; }

  bool ParseFromHeader(size_t header) {
    m_found.startPos = static_cast<unsigned int>(header);
    size_t cursor = header;
    if (!ParseSID(cursor)) return Warn("NEMsgParse", __LINE__, "CTL1NEMsgParse::ParseSID(): ParseSID failed;");
    if (!ParseDate(cursor)) {
      m_found.sid = EMPTY;
      return Warn("NEMsgParse", __LINE__, "CTL1NEMsgParse::ParseDate(): ParseDate failed;");
    }
    if (!ParseTime(cursor)) {
      m_found.sid = m_found.date = EMPTY;
      return Warn("NEMsgParse", __LINE__, "CTL1NEMsgParse::ParseDate(): ParseDate failed;");
    }
    m_found.echo = {0, header};
    const size_t lineEnd = FindNear(m_message, '\n', cursor);
    // An "M" must follow even where the message turns out to be an autonomous one.
    const size_t mPos = lineEnd == NPOS ? NPOS : FindNear(m_message, 'M', lineEnd + 1);
    return mPos != NPOS && ParseOutputAndAuto(mPos, lineEnd);
  }

  bool ParseSID(size_t& cursor) {
    const size_t blank = FindNear(m_message, ' ', cursor);
    const size_t start = blank + INDENT;
    const size_t end = blank == NPOS ? NPOS : FindNear(m_message, ' ', start);
    if (end == NPOS) return false;
    cursor = end;
    return Cut(start, end, m_found.sid);
  }

  bool ParseDate(size_t& cursor) {
    const size_t start = cursor + 1;
    const size_t end = FindNear(m_message, ' ', start);
    if (end == NPOS) return false;
    cursor = end;
    return Cut(start, end, m_found.date);
  }

  bool ParseTime(size_t& cursor) {
    const size_t start = cursor + 1;
    const size_t end = FindNear(m_message, '\r', start);
    if (end == NPOS) return false;
    cursor = end;
    return Cut(start, end, m_found.time);
  }

  bool ParseAck() {
    const size_t blank = FindNear(m_message, ' ', 0);
    if (blank == NPOS || !Cut(0, blank, m_found.code)) return Refuse();
    const size_t end = Find(m_message, ACK_END, blank);
    if (end == NPOS || end + ACK_END.Piece().size() != m_message.size()) return Refuse();
    if (!Cut(blank + 1, end, m_found.ctag)) return Refuse();
    m_found.startPos = 0;
    m_found.type = ACKNOWLEDGEMENT;
    return true;
  }

  bool ParseOutputAndAuto(size_t mPos, size_t lineEnd) {
    return mPos == lineEnd + 1 ? ParseOutput(mPos) : ParseAuto(lineEnd);
  }

  bool ParseOutput(size_t mPos) {
    const size_t ctag = mPos + CTAG_START;
    const size_t blank = FindNear(m_message, ' ', ctag);
    if (blank == NPOS) return Refuse(__LINE__, "CTL1NEMsgParse::ParseOutputAndAuto(): Not find ctag");
    if (!Cut(ctag, blank, m_found.ctag)) {
      return Refuse(__LINE__, "CTL1NEMsgParse::ParseOutputAndAuto(): ctag is empty");
    }
    size_t end = Find(m_message, LINE_END, blank);
    if (end == NPOS) return Refuse(__LINE__, "CTL1NEMsgParse::ParseOutputAndAuto(): m_strRetRspCode not find");
    if (!Cut(blank + 1, end, m_found.code)) {
      return Refuse(__LINE__, "CTL1NEMsgParse::ParseOutputAndAuto(): m_strRetRspCode is empty");
    }
    const size_t rspLine = ctag - RSP_LINE_START.size();
    m_found.rspLine = {rspLine, end - rspLine};
    m_found.type = RESPONSE;
    return ParseTextBlock(end);
  }

  bool ParseAuto(size_t lineEnd) {
    const size_t codeEnd = FindNear(m_message, ' ', lineEnd);
    if (codeEnd == NPOS || !Cut(lineEnd + 1, codeEnd, m_found.code)) return Refuse();
    const size_t atagEnd = FindNear(m_message, ' ', codeEnd + 2);
    if (atagEnd == NPOS || !Cut(codeEnd + 1, atagEnd, m_found.atag)) return Refuse();
    size_t cursor = atagEnd;
    if (!ParseVerb(cursor)) return Refuse();
    m_found.type = AUTONOMOUS;
    return ParseTextBlock(cursor);
  }

  bool ParseVerb(size_t& cursor) {
    const size_t start = cursor + 1;
    const size_t end = Find(m_message, VERB_END, start);
    if (end == NPOS && !EndsInTerminator()) return false;
    cursor = end == NPOS ? m_message.size() - 1 : end;
    return Cut(start, cursor, m_found.verb);
  }

  bool ParseTextBlock(size_t& cursor) {
    if (!EndsInTerminator()) return false;
    const size_t start = cursor + 1;
    // A message that ends in ">" but holds a ";" ends its block at that ";".
    const size_t semicolon = m_message.rfind(';');
    cursor = semicolon == NPOS ? m_message.size() - 1 : semicolon;
    Cut(start, cursor, m_found.textBlock);
    return true;
  }

  // The way most failures end.
  bool Refuse() {
    m_found.emptiesAll = true;
    return false;
  }

  bool Refuse(int line, const char* why) {
    Refuse();
    return Warn("ParseOutputAndAuto", line, why);
  }

  std::string_view m_message;
  Findings& m_found;
};

}  // namespace

CTL1NEMsgParse::CTL1NEMsgParse(const std::string& msg) : m_strNEMsg(msg), m_nMsgType(NONE), m_nMsgStartPos(0) {}

void CTL1NEMsgParse::InitAllPrivate() {
  m_strNEMsg.clear();
  ClearParts();
}

void CTL1NEMsgParse::ClearParts() {
  for (std::string* text : {&m_strSID, &m_strDate, &m_strTime, &m_strEcho, &m_strRspLine, &m_strTextBlock, &m_strVerb,
                            &m_strRetRspCode, &m_strCtag, &m_strAtag}) {
    text->clear();
  }
  m_nMsgType = NONE;
  m_nMsgStartPos = 0;
}

bool CTL1NEMsgParse::NEMsgParse() {
  Findings found;
  const bool recognised = Parser(m_strNEMsg, found).Run();
  Reserve(found);
  Take(found);
  return recognised;
}

// Gets the memory for what was found, so that running out of it changes nothing.
void CTL1NEMsgParse::Reserve(const Findings& found) {
  ReserveFor(m_strSID, found.sid.length);
  ReserveFor(m_strDate, found.date.length);
  ReserveFor(m_strTime, found.time.length);
  ReserveFor(m_strEcho, found.echo.length);
  ReserveFor(m_strRspLine, found.rspLine.length);
  ReserveFor(m_strTextBlock, found.textBlock.length);
  ReserveFor(m_strVerb, found.verb.length);
  ReserveFor(m_strRetRspCode, found.code.length);
  ReserveFor(m_strCtag, found.ctag.length);
  ReserveFor(m_strAtag, found.atag.length);
}

void CTL1NEMsgParse::Take(const Findings& found) {
  if (found.emptiesAll) return InitAllPrivate();
  found.sid.CopyTo(m_strSID, m_strNEMsg);
  found.date.CopyTo(m_strDate, m_strNEMsg);
  found.time.CopyTo(m_strTime, m_strNEMsg);
  found.echo.CopyTo(m_strEcho, m_strNEMsg);
  found.rspLine.CopyTo(m_strRspLine, m_strNEMsg);
  found.textBlock.CopyTo(m_strTextBlock, m_strNEMsg);
  found.verb.CopyTo(m_strVerb, m_strNEMsg);
  found.code.CopyTo(m_strRetRspCode, m_strNEMsg);
  found.ctag.CopyTo(m_strCtag, m_strNEMsg);
  found.atag.CopyTo(m_strAtag, m_strNEMsg);
  // Whatever stands around the "M" in the message.
  if (found.rspLine.length > 0) RSP_LINE_START.copy(m_strRspLine.data(), RSP_LINE_START.size());
  if (found.type != NONE) m_nMsgType = found.type;
  m_nMsgStartPos = found.startPos.value_or(m_nMsgStartPos);
}

bool CTL1NEMsgParse::ParseMsgEndFlg(const std::string& msg) {
  if (msg.empty()) {
    return Warn("ParseMsgEndFlg", __LINE__, "CTL1NEMsgParse::ParseMsgEndFlg(): strNEMsg is empty;");
  }
  const bool hasEnd = Find(msg, RESPONSE_END, 0) != NPOS;
  Findings found;
  const bool recognised = Parser(msg, found).Run();
  Reserve(found);
  m_strNEMsg = msg;  // may be one of the parts
  ClearParts();
  Take(found);
  if (!recognised) {
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

}  // namespace VARNEL_COMMON
