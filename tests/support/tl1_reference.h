#ifndef VARNEL_TESTS_TL1_REFERENCE_H
#define VARNEL_TESTS_TL1_REFERENCE_H

#include <ostream>
#include <string>
#include <vector>

namespace VARNEL_TEST {

/// The members of a TL1 parser; by default those of an emptied one.
struct Tl1Parts {
  std::string message, sid, date, time, echo, responseLine, textBlock, verb, code, ctag, atag;
  int type = -1;
  unsigned int start = 0;
};

bool operator==(const Tl1Parts& a, const Tl1Parts& b);
std::ostream& operator<<(std::ostream& out, const Tl1Parts& parts);

/// The members of a parser with the interface of CTL1NEMsgParse.
template <typename Parser>
Tl1Parts PartsOf(const Parser& p) {
  return {p.m_strNEMsg, p.m_strSID,        p.m_strDate, p.m_strTime, p.m_strEcho,  p.m_strRspLine,  p.m_strTextBlock,
          p.m_strVerb,  p.m_strRetRspCode, p.m_strCtag, p.m_strAtag, p.m_nMsgType, p.m_nMsgStartPos};
}

/// A TL1 parser that follows its steps one by one, with std::string::find only.
class Tl1Reference {
 public:
  explicit Tl1Reference(const std::string& message) { parts.message = message; }

  bool Parse();
  bool ParseComplete(const std::string& message);

  struct Report {
    std::string function, text;
  };

  Tl1Parts parts;
  std::vector<Report> reports;

 private:
  bool ParseSid(size_t& cursor);
  bool ParseUpTo(char end, std::string& part, size_t start, size_t& cursor) const;
  bool ParseVerb(size_t& cursor);
  bool ParseTextBlock(size_t& cursor);
  bool ParseHeader(size_t header);
  bool ParseAcknowledgement();
  bool ParseResponse(size_t m);
  bool ParseAutonomous(size_t n);
  bool Fail(const std::string& function, const std::string& text);
  bool Empty();
};

}  // namespace VARNEL_TEST

#endif
