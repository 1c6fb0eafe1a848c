#ifndef VARNEL_COMNEMSG_H
#define VARNEL_COMNEMSG_H

#include <cstdint>

#include "varnel_export.h"

namespace VARNEL_COMMON {

/// Header of a binary message to or from a network element: 16 bytes without gaps, big-endian on the wire.
///
/// Fill the fields in the machine's order, then call ToNetOrder() before the bytes are sent; call ToHostOrder() on
/// bytes that were received. Thread-compatible like a plain structure.
class VARNEL_API CComNEHead {
 public:
  /// All fields 0.
  CComNEHead();
  CComNEHead(const CComNEHead& other) = default;

  /// Copies the five fields.
  CComNEHead& operator=(CComNEHead& other);

  /// Converts every field from network to host order, in place. Done twice it restores the fields.
  void ToHostOrder();

  /// Converts every field from host to network order, in place.
  void ToNetOrder();

  uint32_t ulHeadWord0;  ///< set by the caller
  uint32_t ulHeadWord1;  ///< set by the caller
  uint16_t usHeadShort;  ///< set by the caller
  uint16_t usMsgLen;     ///< length of the body in bytes; a CComNEMsg keeps it
  uint32_t ulHeadWord2;  ///< set by the caller
};

/// A binary message: the header and a body of at most 65534 bytes in a buffer that grows.
///
/// Behind the body, at position `usMsgLen`, stands a NUL after every successful set or append, so that a text body can
/// be read as a string. A body that does not fit is cut and a warning logged. Buffers are freed without being wiped.
///
/// The members are public for callers that send and receive the bytes. One who changes `usMsgLen`, `m_pMsg` or
/// `m_nMsgBufSize` by hand keeps `usMsgLen` + 1 within the buffer, and `m_pMsg` from new[].
///
/// One object belongs to one thread at a time. Memory exhaustion throws std::bad_alloc and leaves the message as it
/// was.
class VARNEL_API CComNEMsg : public CComNEHead {
 public:
  /// An empty message.
  ///
  /// @param nBufLen  size of its buffer in bytes: 0 for 1024; more than 65534 counts as 65534.
  explicit CComNEMsg(unsigned int nBufLen);

  /// Copies header and body; the copy has a buffer of 1024 bytes, or of the body and 1024 where that does not do.
  CComNEMsg(CComNEMsg& other);

  /// Copies header and body into this message's buffer, as SetMsg() does.
  CComNEMsg& operator=(CComNEMsg& other);

  ~CComNEMsg();

  /// Overwrites the whole buffer with zeros and sets the length to 0; the buffer and the other fields stay.
  void EmptyMsg();

  /// Replaces the body. A null `pData` changes nothing, more than 65534 bytes are cut to that.
  ///
  /// A bounded copy that fails is reported; length and NUL are then set all the same, over the bytes that the buffer
  /// held before, or over zeros where it is new. `pData` may point into this message's own body.
  void SetMsg(const void* pData, unsigned int nDataLen);

  /// Makes room for a body of `nBufLen` bytes (at most 65534) and keeps what the buffer holds; it never shrinks. A
  /// bounded copy that fails is reported and leaves buffer and size as they were.
  void SetBufLen(unsigned int nBufLen);

  /// Appends to the body. A null `pData` changes nothing, what goes beyond 65534 bytes is cut off.
  ///
  /// A bounded copy that fails is reported: the message stays as it was when that happens while its buffer grows; a
  /// failing copy of the data itself lengthens the body as if it had been copied. `pData` may point into this
  /// message's own body.
  void AddMsg(const void* pData, unsigned int nDataLen);

  char* m_pMsg;                ///< the body; owned
  unsigned int m_nMsgBufSize;  ///< usable size of `m_pMsg` in bytes
};

}  // namespace VARNEL_COMMON

#endif
