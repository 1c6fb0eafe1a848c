#include <varnel_common/cmdstr.h>
#include <varnel_common/comnemsg.h>

#include <cstring>
#include <iostream>

#include "families.h"

using namespace VARNEL_COMMON;

namespace {

void UseCommandTexts() {
  CCmdStr command;
  command.SetMsg("ACT-USER");
  command.AddMsg(":NE1;\r\n");
  CCmdStr copy(command);
  CCmdStr assigned;
  assigned = copy;
  std::cout << command.AddSnMML(0x1234) << ' ' << command.GetMsg() << ' ' << command.GetMsgLen() << ' '
            << static_cast<int>(command.GetMsg()[command.GetMsgLen() - 1]) << '\n';
  command.EmptyMsg();
  std::cout << command.GetMsgLen() << ' ' << copy.GetMsgLen() << ' ' << assigned.GetMsgLen() << '\n';
}

void UseHead() {
  CComNEHead head;
  head.ulHeadWord0 = 0x01020304;
  head.usMsgLen = 7;
  CComNEHead copy;
  copy = head;
  copy.ToNetOrder();
  unsigned char bytes[sizeof copy];
  std::memcpy(bytes, &copy, sizeof bytes);
  copy.ToHostOrder();
  std::cout << sizeof bytes << ' ' << +bytes[0] << +bytes[3] << ' ' << +bytes[11] << ' ' << copy.usMsgLen << '\n';
}

void UseMessages() {
  CComNEMsg message(4);
  message.SetMsg("12345", 5);
  message.AddMsg("678", 3);
  message.SetBufLen(2000);
  CComNEMsg copy(message);
  CComNEMsg assigned(0);
  assigned = copy;
  std::cout << assigned.m_pMsg << ' ' << assigned.usMsgLen << ' ' << message.m_nMsgBufSize << '\n';
  assigned.EmptyMsg();
  std::cout << assigned.usMsgLen << ' ' << copy.usMsgLen << '\n';
}

}  // namespace

void UseBuffers() {
  UseCommandTexts();
  UseHead();
  UseMessages();
}
