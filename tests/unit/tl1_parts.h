#ifndef VARNEL_TESTS_TL1_PARTS_H
#define VARNEL_TESTS_TL1_PARTS_H

#include "tl1_reference.h"
#include "tl1nemsgparse.h"

namespace VARNEL_TEST {

inline Tl1Parts PartsOf(const VARNEL_COMMON::CTL1NEMsgParse& p) {
  return {p.m_strNEMsg, p.m_strSID,        p.m_strDate, p.m_strTime, p.m_strEcho,  p.m_strRspLine,  p.m_strTextBlock,
          p.m_strVerb,  p.m_strRetRspCode, p.m_strCtag, p.m_strAtag, p.m_nMsgType, p.m_nMsgStartPos};
}

}  // namespace VARNEL_TEST

#endif
