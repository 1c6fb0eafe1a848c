// Takes single TL1 messages apart by the strict parser, for a caller that has each as a whole.

#include <varnel_common/tl1nemsgparse.h>

#include <iostream>

using VARNEL_COMMON::CTL1NEMsgParse;

namespace {

bool PrintAnswer(const char* message) {
  CTL1NEMsgParse answer(message);
  if (!answer.NEMsgParse()) {
    std::cout << "not recognised\n";
    return false;
  }
  switch (answer.GetNEMsgType()) {
    case 2:
      std::cout << "acknowledgement " << answer.GetRetRspCode() << " of command " << answer.GetCtage() << '\n';
      break;
    case 3:
      std::cout << "answer " << answer.GetRetRspCode() << " to command " << answer.GetCtage() << " from "
                << answer.GetSID() << ", " << answer.m_strDate << ' ' << answer.m_strTime << ':'
                << answer.GetTextBlock();
      break;
    default:  // 4, an autonomous message; the empty texts of a bare prompt would do no harm
      std::cout << "event " << answer.m_strAtag << ' ' << answer.GetRetRspCode() << ' ' << answer.m_strVerb << " from "
                << answer.GetSID() << ':' << answer.GetTextBlock();
  }
  return true;
}

}  // namespace

int main() {
  bool good = PrintAnswer("IP 117\r\n<");
  good = PrintAnswer(
             "\r\n\n   NE-EAST 26-01-15 12:00:07\r\n"
             "M  117 COMPLD\r\n"
             "   \"SLOT-3:CR,EQPT\"\r\n"
             ";") &&
         good;
  good = PrintAnswer(
             "\r\n\n   NE-EAST 26-01-15 12:00:31\r\n"
             "*C 7860 REPT ALM EQPT\r\n"
             "   \"SLOT-5:MJ,FAN-FAIL\"\r\n"
             ";") &&
         good;

  // The strict form only: here the header line lacks its three blanks.
  const bool loose = PrintAnswer("\r\n\nNE-EAST 26-01-15 12:01:02\r\nM  118 DENY\r\n;");

  // For one who collects bytes until an answer is whole.
  CTL1NEMsgParse collecting("");
  std::string received = "\r\n\n   NE-EAST 26-01-15 12:01:02\r\nM  118 DENY\r\n   PLNA\r\n;";
  if (collecting.ParseMsgEndFlg(received)) std::cout << "whole: " << collecting.GetRetRspCode() << '\n';
  return good && !loose ? 0 : 1;
}
