#ifndef VARNEL_COMNEMSG_H
#define VARNEL_COMNEMSG_H

#include <cstdint>

#include "varnel_export.h"

/// @file
/// Binary messages to and from network elements.

namespace VARNEL_COMMON {

/// Header of a binary message to or from a network element: 16 bytes without gaps, big-endian on the wire.
///
/// Fill the fields in the machine's order, then call ToNetOrder() before the bytes are sent; call ToHostOrder() on
/// bytes that were received. Threads may use it like any plain structure.
class VARNEL_API CComNEHead {
 public:
  /// All fields 0.
  CComNEHead();

  /// Copies the five fields.
  ///
  /// @param other  the header to copy.
  CComNEHead(const CComNEHead& other) = default;

  /// Copies the five fields.
  ///
  /// @param other  the header to copy; only read, though not const, so a temporary does not do.
  /// @return this object.
  CComNEHead& operator=(CComNEHead& other);

  /// Converts every field from network to host order, in place. A second call restores the fields.
  void ToHostOrder();

  /// Converts every field from host to network order, in place: the same conversion as ToHostOrder().
  void ToNetOrder();

  uint32_t ulHeadWord0;  ///< set by the caller
  uint32_t ulHeadWord1;  ///< set by the caller
  uint16_t usHeadShort;  ///< set by the caller
  uint16_t usMsgLen;     ///< length of the body in bytes; a CComNEMsg keeps it
  uint32_t ulHeadWord2;  ///< set by the caller
};

/// A binary message: the header and a body of at most 65534 bytes in a buffer that grows.
///
/// Every successful set or append puts a NUL after the body, at position `usMsgLen`, so a text body can be read as a
/// string. A body that does not fit is cut and a warning logged; compare `usMsgLen`. Buffers are freed without being
/// wiped: call EmptyMsg() first for a secret. After ToNetOrder() `usMsgLen` is in network order: convert a copy of the
/// header instead, or call ToHostOrder() before any other call.
///
/// The members are public for callers that send and receive the bytes. Callers that change `usMsgLen`, `m_pMsg` or
/// `m_nMsgBufSize` must keep `usMsgLen` + 1 within the buffer, and allocate `m_pMsg` with new[].
///
/// One object belongs to one thread at a time. Memory exhaustion throws std::bad_alloc and leaves the message as it
/// was.
class VARNEL_API CComNEMsg : public CComNEHead {
 public:
  /// An empty message: all fields of the header 0, a NUL at the start of the buffer, the rest of it undefined.
  ///
  /// @param nBufLen  size of the buffer in bytes: 0 means 1024, more than 65534 means 65534. A body of `nBufLen` bytes
  ///                 does not fit, since the NUL takes one.
  CComNEMsg(unsigned int nBufLen);

  /// Copies header and body. The copy has a buffer of 1024 bytes, or of the body + 1024 if that is too small.
  ///
  /// @param other  the message to copy; only read, though not const, so a temporary does not do.
  CComNEMsg(CComNEMsg& other);

  /// Copies header and body into this message's buffer, as SetMsg() does.
  ///
  /// @param other  the message to copy; only read, though not const, so a temporary does not do.
  /// @return this object.
  CComNEMsg& operator=(CComNEMsg& other);

  /// Frees the buffer.
  ~CComNEMsg();

  /// Overwrites the whole buffer with zeros and sets the length to 0; the buffer and the other fields stay.
  void EmptyMsg();

  /// Replaces the body. A buffer that is too small for it and its NUL is replaced by one of `nDataLen` + 1024 bytes.
  ///
  /// A bounded copy that fails is reported; length and NUL are set nevertheless. If it wrote nothing, the body is what
  /// the buffer contained before, or zeros in a new buffer. A null buffer with an `m_nMsgBufSize` above 0 is reported
  /// too; the length is then 0.
  ///
  /// @param pData     may point into this message's own body. Null changes nothing: use EmptyMsg().
  /// @param nDataLen  bytes to copy; 0 empties the body, more than 65534 are cut to 65534 and a warning is logged.
  void SetMsg(const void* pData, unsigned int nDataLen);

  /// Makes the buffer larger and keeps its content; it never shrinks. The added bytes have no defined value. Body and
  /// NUL share the `nBufLen` bytes: a body of `nBufLen` - 1 bytes fits.
  ///
  /// A bounded copy that fails is reported and leaves buffer and size as they were.
  ///
  /// @param nBufLen  the new size in bytes; more than 65534 counts as 65534, and a warning is logged.
  void SetBufLen(unsigned int nBufLen);

  /// Appends to the body. A buffer that is too small is replaced by one of the new length + 1024 bytes.
  ///
  /// A bounded copy that fails is reported. If the copy of the old body to a larger buffer fails, the message stays as
  /// it was. If the copy of the data fails, the body grows as if it had succeeded.
  ///
  /// @param pData     may point into this message's own body. Null changes nothing.
  /// @param nDataLen  bytes to append; the part that exceeds 65534 bytes of body is cut off and a warning logged.
  void AddMsg(const void* pData, unsigned int nDataLen);

  char* m_pMsg;                ///< the body; owned
  unsigned int m_nMsgBufSize;  ///< usable size of `m_pMsg` in bytes
};

}  // namespace VARNEL_COMMON

#endif
