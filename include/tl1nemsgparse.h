#ifndef VARNEL_TL1NEMSGPARSE_H
#define VARNEL_TL1NEMSGPARSE_H

#include <string>

#include "varnel_export.h"

namespace VARNEL_COMMON {

/// Takes one TL1 message apart: an acknowledgement, a command response, an autonomous message or a bare continuation
/// prompt. It accepts the strict form only; varnel::tl1stream reads what elements really send.
///
/// The message is any bytes, NULs included. The members are the result and are there to be read. One object belongs to
/// one thread at a time; memory exhaustion throws std::bad_alloc and leaves the object as it was or as after the call.
class VARNEL_API CTL1NEMsgParse {
 public:
  /// Keeps the message; nothing is parsed yet.
  explicit CTL1NEMsgParse(const std::string& msg);

  /// Empties all texts, the message too; the type becomes -1 and the start position 0.
  void InitAllPrivate();

  /// Parses the message that the object holds, on top of what an earlier parse left.
  ///
  /// @return true when the message is recognised. After false the reason has been logged in most cases, and most
  ///         failures leave the object as InitAllPrivate() does. Exceptions: one in the header line empties date and
  ///         SID only, and one in the text block keeps type, header fields and tags.
  bool NEMsgParse();

  /// Replaces the message and parses it from scratch. `msg` may be the object's own m_strNEMsg.
  ///
  /// @return true when it is a complete response or autonomous message, one that "\r\n;" ends. Never true for an
  ///         acknowledgement.
  bool ParseMsgEndFlg(const std::string& msg);

  /// Acknowledgement code, completion code or alarm code, by message type.
  std::string GetRetRspCode() const;
  /// Correlation tag of an acknowledgement or response.
  std::string GetCtage() const;
  /// -1 none, 2 acknowledgement, 3 response, 4 autonomous message or continuation prompt.
  int GetNEMsgType() const;
  /// Source identifier of a response or autonomous message, else empty.
  std::string GetSID() const;
  /// Text block of a response or autonomous message, else empty.
  std::string GetTextBlock() const;
  /// Where in the message the recognised part begins.
  unsigned int GetMsgStartPos() const;

  std::string m_strNEMsg;       ///< the whole message
  std::string m_strSID;         ///< source identifier of the header line
  std::string m_strDate;        ///< date of the header line, as text
  std::string m_strTime;        ///< time of the header line, as text
  std::string m_strEcho;        ///< everything in front of the header line
  std::string m_strRspLine;     ///< response identification: "\r\nM  " + ctag + blank + completion code
  std::string m_strTextBlock;   ///< from behind the identification line up to the terminator
  std::string m_strVerb;        ///< verb line of an autonomous message
  std::string m_strRetRspCode;  ///< see GetRetRspCode()
  std::string m_strCtag;        ///< see GetCtage()
  std::string m_strAtag;        ///< tag of an autonomous message
  int m_nMsgType;               ///< see GetNEMsgType()
  unsigned int m_nMsgStartPos;  ///< see GetMsgStartPos()

 private:
  struct Findings;
  VARNEL_HIDDEN void Reserve(const Findings& found);
  VARNEL_HIDDEN void Take(const Findings& found);
  VARNEL_HIDDEN void ClearParts();
};

}  // namespace VARNEL_COMMON

#endif
