#include "tl1_reference.h"

#include <tuple>
#include <utility>

namespace VARNEL_TEST {

namespace {

constexpr size_t NPOS = std::string::npos;

auto Fields(const Tl1Parts& p) {
  return std::tie(p.message, p.sid, p.date, p.time, p.echo, p.responseLine, p.textBlock, p.verb, p.code, p.ctag, p.atag,
                  p.type, p.start);
}

std::string Shown(const std::string& text) {
  std::string shown;
  for (const char c : text) {
    constexpr char HEX[] = "0123456789abcdef";
    const auto byte = static_cast<unsigned char>(c);
    if (c >= ' ' && c <= '~') {
      shown += c;
    } else {
      shown += std::string("\\x") + HEX[byte / 16] + HEX[byte % 16];
    }
  }
  return '"' + shown + '"';
}

}  // namespace

bool operator==(const Tl1Parts& a, const Tl1Parts& b) {
  return Fields(a) == Fields(b);
}

std::ostream& operator<<(std::ostream& out, const Tl1Parts& p) {
  const std::pair<const char*, const std::string&> texts[] = {
      {"message", p.message}, {"sid", p.sid},           {"date", p.date},       {"time", p.time},
      {"echo", p.echo},       {"line", p.responseLine}, {"block", p.textBlock}, {"verb", p.verb},
      {"code", p.code},       {"ctag", p.ctag},         {"atag", p.atag}};
  for (const auto& [name, text] : texts)
    out << name << ' ' << Shown(text) << ", ";
  return out << "type " << p.type << ", start " << p.start;
}

bool Tl1Reference::Fail(const std::string& function, const std::string& text) {
  reports.push_back({function, text});
  return false;
}

bool Tl1Reference::Empty() {
  parts = Tl1Parts();
  return false;
}

bool Tl1Reference::Parse() {
  const std::string& message = parts.message;
  if (message.empty()) return Fail("NEMsgParse", "CTL1NEMsgParse::NEMsgParse(): NEMsg is empty;");
  const size_t header = message.find("\r\n\n   ");
  if (header != NPOS) return ParseHeader(header);
  if (message.find("\r\n<") != NPOS) return ParseAcknowledgement();
  const size_t prompt = message.find("\r\n>");
  if (prompt == NPOS) return false;
  parts.type = 4;
  parts.start = static_cast<unsigned int>(prompt);
  return true;
}

bool Tl1Reference::ParseHeader(size_t header) {
  parts.start = static_cast<unsigned int>(header);
  size_t cursor = header;
  if (!ParseSid(cursor)) return Fail("NEMsgParse", "CTL1NEMsgParse::ParseSID(): ParseSID failed;");
  if (!ParseUpTo(' ', parts.date, cursor + 1, cursor)) {
    parts.sid = "";
    return Fail("NEMsgParse", "CTL1NEMsgParse::ParseDate(): ParseDate failed;");
  }
  if (!ParseUpTo('\r', parts.time, cursor + 1, cursor)) {
    parts.sid = "";
    parts.date = "";
    return Fail("NEMsgParse", "CTL1NEMsgParse::ParseDate(): ParseDate failed;");
  }
  parts.echo = parts.message.substr(0, header);
  const size_t n = parts.message.find('\n', cursor);
  if (n == NPOS) return false;
  const size_t m = parts.message.find('M', n);
  if (m == NPOS) return false;
  return m == n + 1 ? ParseResponse(m) : ParseAutonomous(n);
}

bool Tl1Reference::ParseSid(size_t& cursor) {
  return ParseUpTo(' ', parts.sid, parts.message.find(' ', cursor) + 3, cursor);
}

// The cursor is then on the end mark of the part.
bool Tl1Reference::ParseUpTo(char end, std::string& part, size_t start, size_t& cursor) const {
  cursor = parts.message.find(end, start);
  if (cursor == NPOS) return false;
  part = parts.message.substr(start, cursor - start);
  return part != "";
}

bool Tl1Reference::ParseAcknowledgement() {
  const std::string message = parts.message;
  const size_t b = message.find(' ');
  if (b == NPOS) return Empty();
  parts.code = message.substr(0, b);
  if (parts.code == "") return Empty();
  parts.start = 0;
  const size_t end = message.find("\r\n<", b);
  if (end == NPOS || end + 3 != message.size()) return Empty();
  parts.ctag = message.substr(b + 1, end - b - 1);
  if (parts.ctag == "") return Empty();
  parts.type = 2;
  return true;
}

bool Tl1Reference::ParseResponse(size_t m) {
  const std::string message = parts.message;
  const std::string function = "ParseOutputAndAuto", prefix = "CTL1NEMsgParse::ParseOutputAndAuto(): ";
  const size_t b = message.find(' ', m + 3);
  if (b == NPOS) return Empty() || Fail(function, prefix + "Not find ctag");
  parts.ctag = message.substr(m + 3, b - m - 3);
  if (parts.ctag == "") return Empty() || Fail(function, prefix + "ctag is empty");
  size_t e = message.find("\r\n", b);
  if (e == NPOS) return Empty() || Fail(function, prefix + "m_strRetRspCode not find");
  parts.code = message.substr(b + 1, e - b - 1);
  if (parts.code == "") return Empty() || Fail(function, prefix + "m_strRetRspCode is empty");
  parts.responseLine = "\r\nM  " + parts.ctag + " " + parts.code;
  parts.type = 3;
  return ParseTextBlock(e);
}

bool Tl1Reference::ParseAutonomous(size_t n) {
  const std::string message = parts.message;
  const size_t b = message.find(' ', n);
  if (b == NPOS) return Empty();
  parts.code = message.substr(n + 1, b - n - 1);
  if (parts.code == "") return Empty();
  const size_t t = message.find(' ', b + 2);
  if (t == NPOS) return Empty();
  parts.atag = message.substr(b + 1, t - b - 1);
  size_t cursor = t;
  if (!ParseVerb(cursor)) return Empty();
  const bool result = ParseTextBlock(cursor);
  parts.type = 4;
  return result;
}

bool Tl1Reference::ParseVerb(size_t& cursor) {
  const size_t start = cursor + 1;
  cursor = parts.message.find("\r\n   ", start);
  if (cursor == NPOS) {
    const size_t semicolon = parts.message.rfind(';');
    const size_t prompt = parts.message.rfind('>');
    const size_t last = parts.message.size() - 1;
    if (semicolon != last && prompt != last) return false;
    cursor = last;
  }
  parts.verb = parts.message.substr(start, cursor - start);
  return parts.verb != "";
}

bool Tl1Reference::ParseTextBlock(size_t& cursor) {
  const size_t semicolon = parts.message.rfind(';');
  const size_t prompt = parts.message.rfind('>');
  const size_t last = parts.message.size() - 1;
  if (semicolon != last && prompt != last) return false;
  const size_t end = semicolon != NPOS ? semicolon : prompt;
  parts.textBlock = end > cursor + 1 ? parts.message.substr(cursor + 1, end - cursor - 1) : "";
  cursor = end;
  return true;
}

bool Tl1Reference::ParseComplete(const std::string& message) {
  const std::string function = "ParseMsgEndFlg";
  if (message.empty()) return Fail(function, "CTL1NEMsgParse::ParseMsgEndFlg(): strNEMsg is empty;");
  Empty();
  parts.message = message;
  if (!Parse()) return Fail(function, "CTL1NEMsgParse::ParseMsgEndFlg(): NEMsgParse() is faid;");
  return (parts.type == 3 || parts.type == 4) && message.find("\r\n;") != NPOS;
}

}  // namespace VARNEL_TEST
