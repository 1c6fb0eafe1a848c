#include <varnel_common/tl1nemsgparse.h>
#include <varnel_tl1/tl1.h>

#include <iostream>

#include "families.h"

using namespace VARNEL_COMMON;

namespace {

void ParseOne() {
  CTL1NEMsgParse message("IP 12\r\n<");
  std::cout << message.NEMsgParse() << ' ' << message.GetNEMsgType() << ' ' << message.GetCtage() << '\n';
  const bool complete = message.ParseMsgEndFlg("\r\n\n   NE1 24-01-02 10:11:12\r\nM  7 COMPLD\r\n   a\r\n;");
  std::cout << complete << ' ' << message.GetSID() << ' ' << message.GetRetRspCode() << ' '
            << message.GetTextBlock().size() << ' ' << message.GetMsgStartPos() << '\n';
  message.InitAllPrivate();
  std::cout << message.GetNEMsgType() << message.ParseMsgEndFlg("") << '\n';
}

void ReadStream() {
  VARNEL_TL1::Framer framer;
  VARNEL_TL1::Message message;
  framer.Append("IP 7\r\n<");
  std::cout << framer.Next(message) << ' ' << message.ctag << '\n';
}

}  // namespace

void UseTl1() {
  ParseOne();
  ReadStream();
}
