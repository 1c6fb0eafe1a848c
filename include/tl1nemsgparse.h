#ifndef VARNEL_TL1NEMSGPARSE_H
#define VARNEL_TL1NEMSGPARSE_H

#include <cstddef>
#include <string>

#include "varnel_export.h"

/// @file
/// The strict parser of single TL1 messages.

namespace VARNEL_COMMON {

/// Parses one TL1 message: an acknowledgement, a command response, an autonomous message or a bare continuation prompt.
/// It accepts the strict form only; varnel::tl1 reads what elements really send.
///
/// The message may contain any bytes, NULs included. The members are the result: read them directly. One object belongs
/// to one thread at a time. Memory exhaustion throws std::bad_alloc; the object can then be used, but its members may
/// come from two messages: call ParseMsgEndFlg() or InitAllPrivate().
class VARNEL_API CTL1NEMsgParse {
 public:
  /// Keeps the message; nothing is parsed yet.
  ///
  /// @param msg  one whole message.
  CTL1NEMsgParse(const std::string& msg);

  /// Empties all texts, the message too; the type becomes -1 and the start position 0.
  void InitAllPrivate();

  /// Parses the message of the object without resetting the results of an earlier parse; ParseMsgEndFlg() resets them.
  ///
  /// A failure leaves the object as follows:
  /// - a bad acknowledgement, identification or verb line: as InitAllPrivate() does;
  /// - a bad SID, date or time: the fields before the fault empty, start position set;
  /// - a header without an "M" anywhere after it: header fields, echo and start position set, type unchanged;
  /// - a text block without its end: everything set but the text block;
  /// - an empty message, or one of an unknown form: unchanged.
  ///
  /// Logged are an empty message, a bad SID, date or time, and a bad tag or code of a response.
  ///
  /// @return true when the message is recognised.
  bool NEMsgParse();

  /// Replaces the message, resets all results, parses it and returns whether it is complete.
  ///
  /// @param msg  may be the object's own m_strNEMsg, or another member. An empty one is refused and replaces nothing.
  /// @return true for a response, autonomous message or prompt that is recognised and contains `\r\n;` anywhere, not
  ///         only at its end. False for a part without it that ends in ">", for every acknowledgement, and for a
  ///         message that is not recognised, which is logged. The members are set as by NEMsgParse(), after false too.
  bool ParseMsgEndFlg(const std::string& msg);

  /// Returns the code.
  ///
  /// @return acknowledgement code, completion code or alarm code, by message type.
  std::string GetRetRspCode() const;

  /// Returns the correlation tag. The tag of an autonomous message is m_strAtag.
  ///
  /// @return the tag of an acknowledgement or response.
  std::string GetCtage() const;

  /// Returns the type of the message.
  ///
  /// @return -1 none, 2 acknowledgement, 3 response, 4 autonomous message or continuation prompt, which has no
  /// m_strVerb.
  int GetNEMsgType() const;

  /// Returns the source identifier.
  ///
  /// @return m_strSID of a response or autonomous message, else empty.
  std::string GetSID() const;

  /// Returns the text block.
  ///
  /// @return m_strTextBlock of a response or autonomous message, else empty.
  std::string GetTextBlock() const;

  /// Returns the position at which the recognised part of the message begins.
  ///
  /// @return the position of the line end before the header or prompt; 0 for an acknowledgement.
  unsigned int GetMsgStartPos() const;

  std::string m_strNEMsg;       ///< the whole message
  std::string m_strSID;         ///< source identifier of the header line
  std::string m_strDate;        ///< date of the header line, as text
  std::string m_strTime;        ///< time of the header line, as text
  std::string m_strEcho;        ///< everything before the header line
  std::string m_strRspLine;     ///< response identification: `\r\nM  ` + ctag + blank + completion code
  std::string m_strTextBlock;   ///< from the line feed of the identification or verb line up to the terminator
  std::string m_strVerb;        ///< verb line of an autonomous message
  std::string m_strRetRspCode;  ///< see GetRetRspCode()
  std::string m_strCtag;        ///< see GetCtage()
  std::string m_strAtag;        ///< tag of an autonomous message
  int m_nMsgType;               ///< see GetNEMsgType()
  unsigned int m_nMsgStartPos;  ///< see GetMsgStartPos()

 private:
  VARNEL_HIDDEN void ClearParts();
  VARNEL_HIDDEN bool Refuse();
  VARNEL_HIDDEN bool ParseAck();
  VARNEL_HIDDEN bool ParseSID(size_t& cursor);
  VARNEL_HIDDEN bool ParseDate(size_t& cursor);
  VARNEL_HIDDEN bool ParseTime(size_t& cursor);
  VARNEL_HIDDEN bool ParseOutputAndAuto(size_t mPos, size_t lineEnd);
  VARNEL_HIDDEN bool ParseOutput(size_t mPos);
  VARNEL_HIDDEN bool ParseAuto(size_t lineEnd);
  VARNEL_HIDDEN bool ParseVerb(size_t& cursor);
  VARNEL_HIDDEN bool ParseTextBlock(size_t& cursor);
};

}  // namespace VARNEL_COMMON

#endif
