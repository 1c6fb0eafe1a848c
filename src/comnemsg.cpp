#include "comnemsg.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <functional>
#include <memory>
#include <string>

#include "common.h"
#include "platform/annex_k.h"
#include "util/big_endian.h"

namespace VARNEL_COMMON {

namespace {

constexpr char MODULE[] = "comnemsg";
constexpr unsigned int MAX_BODY = 65534;  // leaves the 16-bit length field one value to spare; it never changes
constexpr unsigned int FIRST_BUFFER = 1024;
constexpr unsigned int HEADROOM = 1024;

static_assert(sizeof(CComNEHead) == 4 + 4 + 2 + 2 + 4 && offsetof(CComNEHead, ulHeadWord2) == 12,
              "as on the wire, see docs/formats.md");

using VARNEL_UTIL::BigToHost;
using Buffer = std::unique_ptr<char[]>;

// Whether the data to copy is part of the target buffer.
bool IsInside(const void* data, const char* buffer, unsigned int size) {
  const std::less<const void*> before;
  return buffer != nullptr && !before(data, buffer) && before(data, buffer + size);
}

// A new buffer that begins with the contents of the old one; null when the bounded copy fails, which is reported.
Buffer Enlarged(unsigned int size, const char* old, unsigned int length, const char* function) {
  Buffer buffer(new char[size]);
  const int result = memcpy_s(buffer.get(), size, old, length);
  if (result == 0) return buffer;
  LogError({MODULE, function, __LINE__}, result, StrCat(function, ".memcpy_s failed"));
  return nullptr;
}

}  // namespace

CComNEHead::CComNEHead() : ulHeadWord0(0), ulHeadWord1(0), usHeadShort(0), usMsgLen(0), ulHeadWord2(0) {}

CComNEHead& CComNEHead::operator=(CComNEHead& other) = default;

void CComNEHead::ToHostOrder() {
  for (uint32_t* word : {&ulHeadWord0, &ulHeadWord1, &ulHeadWord2})
    BigToHost(*word);
  for (uint16_t* word : {&usHeadShort, &usMsgLen})
    BigToHost(*word);
}

void CComNEHead::ToNetOrder() {
  ToHostOrder();
}

CComNEMsg::CComNEMsg(unsigned int nBufLen)
    : m_pMsg(nullptr), m_nMsgBufSize(nBufLen == 0 ? FIRST_BUFFER : std::min(nBufLen, MAX_BODY)) {
  m_pMsg = new char[m_nMsgBufSize];
  m_pMsg[0] = '\0';
}

CComNEMsg::CComNEMsg(CComNEMsg& other) : CComNEMsg(FIRST_BUFFER) {
  *this = other;
}

CComNEMsg& CComNEMsg::operator=(CComNEMsg& other) {
  if (this == &other) return *this;
  // The body is copied first: if that fails, the header is still that of the old body.
  SetMsg(other.m_pMsg, other.usMsgLen);
  const uint16_t length = other.m_pMsg == nullptr ? other.usMsgLen : usMsgLen;
  CComNEHead::operator=(other);
  usMsgLen = length;
  return *this;
}

CComNEMsg::~CComNEMsg() {
  delete[] m_pMsg;
}

void CComNEMsg::EmptyMsg() {
  memset_s(m_pMsg, m_nMsgBufSize, 0, m_nMsgBufSize);
  usMsgLen = 0;
}

void CComNEMsg::SetMsg(const void* pData, unsigned int nDataLen) {
  if (pData == nullptr) return;
  if (nDataLen > MAX_BODY) {
    LogWarning({MODULE, "SetMsg", __LINE__}, StrCat("SetMsg: nDataLen beyond max, nDataLen:", MAX_BODY));
    nDataLen = MAX_BODY;
  }
  if (IsInside(pData, m_pMsg, m_nMsgBufSize)) {
    const std::string copy(static_cast<const char*>(pData), nDataLen);
    return SetMsg(copy.data(), nDataLen);
  }
  if (m_nMsgBufSize < nDataLen + 1) {
    auto* buffer = new char[nDataLen + HEADROOM]();  // after a failing copy it contains no old memory
    delete[] m_pMsg;
    m_pMsg = buffer;
    m_nMsgBufSize = nDataLen + HEADROOM;
  }
  if (m_pMsg == nullptr) {
    usMsgLen = 0;
    LogError({MODULE, "SetMsg", __LINE__}, CONSISTENCY_ERROR, "SetMsg:m_pMsg==NULL");
    return;
  }
  const int result = memcpy_s(m_pMsg, m_nMsgBufSize, pData, nDataLen);
  m_pMsg[nDataLen] = '\0';
  usMsgLen = static_cast<uint16_t>(nDataLen);
  if (result != 0) LogError({MODULE, "SetMsg", __LINE__}, result, "SetMsg:memcpy_s failed");
}

void CComNEMsg::SetBufLen(unsigned int nBufLen) {
  if (nBufLen > MAX_BODY) {
    LogWarning({MODULE, "SetBufLen", __LINE__}, StrCat("AddStrToMsg: nDataLen beyond max, nDataLen:", MAX_BODY));
    nBufLen = MAX_BODY;
  }
  if (m_nMsgBufSize >= nBufLen + 1) return;
  Buffer buffer = Enlarged(nBufLen + 1, m_pMsg, m_nMsgBufSize, "SetBufLen");
  if (buffer == nullptr) return;
  buffer[nBufLen] = '\0';
  delete[] m_pMsg;
  m_pMsg = buffer.release();
  m_nMsgBufSize = nBufLen;  // the last byte is for the NUL
}

void CComNEMsg::AddMsg(const void* pData, unsigned int nDataLen) {
  if (pData == nullptr) return;
  const unsigned int room = MAX_BODY - std::min<unsigned int>(usMsgLen, MAX_BODY);
  if (nDataLen > room) {
    LogWarning({MODULE, "AddMsg", __LINE__},
               StrCat("AddMsg: nDataLen beyond max, nDataLen:", nDataLen, ", nBufLen:", usMsgLen));
    nDataLen = room;
  }
  if (nDataLen == 0) return;
  if (IsInside(pData, m_pMsg, m_nMsgBufSize)) {
    const std::string copy(static_cast<const char*>(pData), nDataLen);
    return AddMsg(copy.data(), nDataLen);
  }
  const unsigned int length = usMsgLen + nDataLen;
  if (m_pMsg == nullptr || length + 1 > m_nMsgBufSize) {
    Buffer buffer = Enlarged(length + HEADROOM, m_pMsg, usMsgLen, "AddMsg");
    if (buffer == nullptr) return;
    std::memset(buffer.get() + usMsgLen, 0, nDataLen);
    delete[] m_pMsg;
    m_pMsg = buffer.release();
    m_nMsgBufSize = length + HEADROOM;
  }
  const int result = memcpy_s(m_pMsg + usMsgLen, nDataLen, pData, nDataLen);
  m_pMsg[length] = '\0';
  usMsgLen = static_cast<uint16_t>(length);
  if (result != 0) LogError({MODULE, "AddMsg", __LINE__}, result, "AddMsg.memcpy_s failed");
}

}  // namespace VARNEL_COMMON
