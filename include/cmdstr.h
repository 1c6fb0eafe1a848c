#ifndef VARNEL_CMDSTR_H
#define VARNEL_CMDSTR_H

#include <vector>

#include "varnel_export.h"

/// @file
/// Command and report texts.

namespace VARNEL_COMMON {

/// One text appended to a CCmdStr and not yet merged into it. Of no use to callers; it is here for the layout only.
struct CmdStrPiece {
  char* pData;             ///< the characters, without a terminator; owned by the CCmdStr
  unsigned int nLen;       ///< number of characters
  unsigned int nBlockLen;  ///< size of the memory block that begins with this piece, 0 if the piece begins none
};

/// A command or report text that is put together piece by piece and read as one NUL-terminated text.
///
/// Lengths are unsigned 32-bit values: an argument of 2^32 + 5 bytes counts as 5 bytes.
/// A text holds at most 10485760 bytes; what does not fit is cut off and a warning logged, no result tells so.
/// Whatever the object frees is overwritten with zeros first, except the old text that a merge replaces.
///
/// One object must not be used by two threads at once, reading included: GetMsg() and copying rebuild the object.
/// Memory exhaustion throws std::bad_alloc and leaves the text as it was.
class VARNEL_API CCmdStr {
 public:
  /// An empty text.
  CCmdStr();

  /// Copies a text up to its first NUL, so without what AddSnMML() put behind it.
  ///
  /// @param other  its pieces are merged as a side effect, although it is const.
  CCmdStr(const CCmdStr& other);

  /// Replaces the text by another up to its first NUL.
  ///
  /// @param other  its pieces are merged as a side effect. An empty one changes nothing: call EmptyMsg() first where
  ///               that matters.
  /// @return this object.
  CCmdStr& operator=(CCmdStr& other);

  /// Wipes and frees everything.
  ~CCmdStr();

  /// Replaces the text.
  ///
  /// A bounded copy that fails is not reported: the text is what it left, NULs if it wrote nothing.
  ///
  /// @param pszMsg  may point into this object's own text. Null or empty changes nothing; what is longer than the
  ///                maximum is cut to it and a warning logged.
  void SetMsg(const char* pszMsg);

  /// Appends a text.
  ///
  /// A bounded copy that fails is not reported: what it left is appended, NULs if it wrote nothing.
  ///
  /// @param pszMsg  may point into this object's own text. Null or empty changes nothing. One longer than the maximum
  ///                is refused as a whole, one that would take the total beyond the maximum is cut, each with a
  ///                warning.
  void AddMsg(const char* pszMsg);

  /// Merges what was appended and gives the whole text.
  ///
  /// A bounded copy that fails is reported, and what it left is kept, NULs if it wrote nothing. Pieces follow the text
  /// up to its first NUL, so that they overwrite a serial number that AddSnMML() put there.
  ///
  /// @return the text, NUL-terminated, never null. Owned by the object and valid until its text is replaced, emptied,
  ///         or merged again after AddMsg(); what reads it merges, copying and AddSnMML() too.
  const char* GetMsg();

  /// Tells the length of the whole text.
  ///
  /// @return bytes, appended pieces and what stands behind a NUL included: see AddSnMML().
  unsigned int GetMsgLen() const;

  /// Wipes and frees everything; the text is empty afterwards.
  void EmptyMsg();

  /// Puts a serial number behind an MML command: of the first `;\r\n` in the text `\r` becomes a NUL and `\n` the
  /// low byte of the number. The text then reads up to the ";", GetMsgLen() keeps counting what stands behind it.
  ///
  /// @param usSn  its high byte is dropped.
  /// @return 1; 0 with the text unchanged when it holds no `;\r\n`, or another ";" follows the first one found.
  int AddSnMML(unsigned short usSn);

 private:
  VARNEL_HIDDEN char* NewPiece(unsigned int length);

  char* m_pCmdBuf;
  std::vector<CmdStrPiece> m_lstAddBuf;
  unsigned int m_nBufLen;
  unsigned int m_nBlockRoom;  ///< free bytes after the last piece
  unsigned int m_nTextLen;    ///< length of the text in m_pCmdBuf, what AddSnMML() puts after its NUL included
};

}  // namespace VARNEL_COMMON

#endif
