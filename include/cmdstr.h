#ifndef VARNEL_CMDSTR_H
#define VARNEL_CMDSTR_H

#include <vector>

#include "varnel_export.h"

namespace VARNEL_COMMON {

/// One text appended to a CCmdStr and not yet merged into it.
struct CmdStrPiece {
  char* pData;        ///< the characters, without a terminator; owned by the CCmdStr
  unsigned int nLen;  ///< number of characters
  unsigned int
      nBlockLen;  ///< size of the memory block that begins with this piece; 0 where it lies further back in one
};

/// A command or report text that is put together piece by piece and read as one NUL-terminated text.
///
/// A text holds at most 10485760 bytes; what does not fit is cut off and a warning logged. Whatever the object frees
/// is overwritten with zeros first, except the old text that a merge replaces.
///
/// One object must not be used by two threads at once, reading included: GetMsg() and copying rebuild the object.
/// Memory exhaustion throws std::bad_alloc and leaves the text as it was.
class VARNEL_API CCmdStr {
 public:
  CCmdStr();

  /// Copies the text of `other` up to its first NUL; merges the pieces of `other` as a side effect.
  CCmdStr(const CCmdStr& other);

  /// Replaces the text by that of `other` up to its first NUL. An empty `other` leaves the text as it is: call
  /// EmptyMsg() first where that matters.
  CCmdStr& operator=(CCmdStr& other);

  ~CCmdStr();

  /// Replaces the text. A null or empty `pszMsg` changes nothing; a text longer than the maximum is cut to it and a
  /// warning logged. `pszMsg` may point into this object's own text.
  void SetMsg(const char* pszMsg);

  /// Appends a text. A null or empty `pszMsg` changes nothing; one longer than the maximum is refused as a whole, one
  /// that would take the total beyond the maximum is cut, each with a warning. `pszMsg` may point into this object's
  /// own text.
  void AddMsg(const char* pszMsg);

  /// Merges what was appended and gives the whole text, NUL-terminated; never null.
  ///
  /// A bounded copy that fails is reported; its piece then reads as NULs. Valid until the next SetMsg(), EmptyMsg(),
  /// AddMsg() followed by GetMsg(), or destruction.
  const char* GetMsg();

  /// Length of the whole text in bytes, appended pieces and what AddSnMML() put behind the ";" included.
  unsigned int GetMsgLen() const;

  /// Wipes and frees everything; the text is empty afterwards.
  void EmptyMsg();

  /// Puts a serial number behind an MML command: in a text that ends its command with ";\r\n" the "\r" becomes a NUL
  /// and the "\n" the low byte of `usSn`. GetMsgLen() keeps counting both.
  ///
  /// @return 1, or 0 with the text unchanged when it holds no ";\r\n" or a further ";" follows the first one found.
  int AddSnMML(unsigned short usSn);

 private:
  VARNEL_HIDDEN char* NewPiece(unsigned int length);

  char* m_pCmdBuf;
  std::vector<CmdStrPiece> m_lstAddBuf;
  unsigned int m_nBufLen;
  unsigned int m_nBlockRoom;  ///< free bytes behind the last piece
};

}  // namespace VARNEL_COMMON

#endif
