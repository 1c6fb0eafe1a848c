#include "tl1_parser.h"

#include "byte_blocks.h"
#include "common.h"
#include "find.h"

namespace VARNEL_COMMON {

namespace {

using VARNEL_INTERNAL::Finder;

constexpr char MODULE[] = "tl1nemsgparse";
constexpr size_t NPOS = std::string_view::npos;
constexpr TL1Part EMPTY = {0, 0};

constexpr Finder HEADER_START("\r\n\n   ");
constexpr Finder LINE_END("\r\n");
constexpr Finder ACK_END("\r\n<");
constexpr Finder CONTINUATION("\r\n>");
constexpr Finder VERB_END("\r\n   ");
constexpr size_t INDENT = 3;      // blanks in front of the SID
constexpr size_t CTAG_START = 3;  // "M" and two blanks

// As std::string::find, which gives npos for a search that would begin behind the end, but always linear.
size_t Find(std::string_view text, const Finder& piece, size_t from) {
  return from > text.size() ? NPOS : piece.Find(text, from);
}

// Always false, for the caller to return.
bool Warn(const char* function, int line, const char* text) {
  ReportWarning({MODULE, function, line}, text);
  return false;
}

// Walks over one message, whose form stands in docs/formats.md. A cursor stands where a step begins to read and is
// moved behind what it read.
class Parser {
 public:
  Parser(std::string_view message, TL1Findings& found) : m_message(message), m_found(found) {}

  bool Run() {
    if (m_message.empty()) {
      return Warn("NEMsgParse", __LINE__, "CTL1NEMsgParse::NEMsgParse(): NEMsg is empty;");
    }
    const size_t header = Find(m_message, HEADER_START, 0);
    if (header != NPOS) return ParseFromHeader(header);
    if (Find(m_message, ACK_END, 0) != NPOS) return ParseAck();
    const size_t prompt = Find(m_message, CONTINUATION, 0);
    if (prompt == NPOS) return false;
    m_found.type = TL1Findings::AUTONOMOUS;
    m_found.startPos = static_cast<unsigned int>(prompt);
    return true;
  }

 private:
  // Cuts the characters from `start` up to `end` out of the message; false when there are none.
  static bool Cut(size_t start, size_t end, TL1Part& part) {
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
    m_found.type = TL1Findings::ACKNOWLEDGEMENT;
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
    const size_t rspLine = ctag - TL1Findings::RSP_LINE_START.size();
    m_found.rspLine = {rspLine, end - rspLine};
    m_found.type = TL1Findings::RESPONSE;
    return ParseTextBlock(end);
  }

  bool ParseAuto(size_t lineEnd) {
    const size_t codeEnd = FindNear(m_message, ' ', lineEnd);
    if (codeEnd == NPOS || !Cut(lineEnd + 1, codeEnd, m_found.code)) return Refuse();
    const size_t atagEnd = FindNear(m_message, ' ', codeEnd + 2);
    if (atagEnd == NPOS || !Cut(codeEnd + 1, atagEnd, m_found.atag)) return Refuse();
    size_t cursor = atagEnd;
    if (!ParseVerb(cursor)) return Refuse();
    m_found.type = TL1Findings::AUTONOMOUS;
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
  TL1Findings& m_found;
};

}  // namespace

bool FindTL1Parts(std::string_view message, TL1Findings& found) {
  return Parser(message, found).Run();
}

}  // namespace VARNEL_COMMON
