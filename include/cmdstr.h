#ifndef VARNEL_CMDSTR_H
#define VARNEL_CMDSTR_H

#include <vector>

#include "varnel_export.h"

/// @file
/// Command and report texts.

namespace VARNEL_COMMON {

/// One text appended to a CCmdStr and not yet merged into it. Not for callers; declared for the layout only.
struct CmdStrPiece {
  char* pData;             ///< the characters, without a terminator; owned by the CCmdStr
  unsigned int nLen;       ///< number of characters
  unsigned int nBlockLen;  ///< size of the memory block that begins with this piece, 0 if the piece begins none
};

/// A command or report text that is built piece by piece and read as one NUL-terminated text.
///
/// Lengths are unsigned 32-bit values: an argument of 2^32 + 5 bytes counts as 5 bytes.
/// A text has at most 10485760 bytes. Text that does not fit is cut off and logged as a warning; no result reports it,
/// so compare GetMsgLen() before and after. The object overwrites its memory with zeros before freeing it, except the
/// old text that a merge replaces: do not call GetMsg() between pieces that contain a password.
///
/// Two threads must not use one object at the same time, not even to read: GetMsg() and copying rebuild the object.
/// Memory exhaustion throws std::bad_alloc and leaves the text as it was.
class VARNEL_API CCmdStr {
 public:
  /// An empty text.
  CCmdStr();

  /// Copies a text up to its first NUL; a serial number set by AddSnMML() is not copied.
  ///
  /// @param other  its pieces are merged as a side effect, although it is const.
  CCmdStr(const CCmdStr& other);

  /// Replaces the text by another up to its first NUL.
  ///
  /// @param other  its pieces are merged as a side effect. An empty one changes nothing: call EmptyMsg() first.
  ///               Neither const nor a temporary: use SetMsg(other.GetMsg()) for those.
  /// @return this object.
  CCmdStr& operator=(CCmdStr& other);

  /// Wipes and frees everything.
  ~CCmdStr();

  /// Replaces the text.
  ///
  /// A bounded copy that fails is not reported: the text is then the bytes that it left, NULs if it wrote nothing.
  ///
  /// @param pszMsg  may point into this object's own text. Null or empty changes nothing: use EmptyMsg(). A text
  ///                longer than the maximum is cut and a warning logged.
  void SetMsg(const char* pszMsg);

  /// Appends a text.
  ///
  /// A bounded copy that fails is not reported: the bytes that it left are appended, NULs if it wrote nothing.
  ///
  /// @param pszMsg  may point into this object's own text. Null or empty changes nothing. A text longer than the
  ///                maximum is refused as a whole. A text that would exceed the maximum together with the others is
  ///                cut. Both are logged as warnings whose text names SetMsg.
  void AddMsg(const char* pszMsg);

  /// Merges the appended pieces and returns the whole text.
  ///
  /// A bounded copy that fails is reported, and the bytes that it left are kept, NULs if it wrote nothing. Pieces are
  /// appended at the first NUL of the text: they overwrite a serial number that AddSnMML() put there.
  ///
  /// @return the text, NUL-terminated, never null. The object owns it. It is valid until the text is replaced, emptied
  ///         or merged again after AddMsg(), by GetMsg(), by copying the object or by AddSnMML().
  const char* GetMsg();

  /// Returns the length of the whole text.
  ///
  /// @return bytes, including appended pieces and the bytes after a NUL: see AddSnMML().
  unsigned int GetMsgLen() const;

  /// Wipes and frees everything; the text is empty afterwards.
  void EmptyMsg();

  /// Puts a serial number after an MML command: in the first `;\r\n` of the text, `\r` becomes a NUL and `\n` the low
  /// byte of the number. As a C string the text then ends with the ";"; GetMsgLen() still counts the bytes after it, so
  /// send GetMsgLen() bytes. A following AddMsg() overwrites the number: append first, then call this.
  ///
  /// @param usSn  its high byte is dropped.
  /// @return 1. 0, with the text unchanged, if the text has no `;\r\n` or another ";" follows it.
  int AddSnMML(unsigned short usSn);

 private:
  VARNEL_HIDDEN char* NewPiece(unsigned int length);

  char* m_pCmdBuf;
  std::vector<CmdStrPiece> m_lstAddBuf;
  unsigned int m_nBufLen;
  unsigned int m_nBlockRoom;  ///< free bytes after the last piece
};

}  // namespace VARNEL_COMMON

#endif
