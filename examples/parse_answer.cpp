// Parses single TL1 messages with the strict parser, for a caller that has each message as a whole.

#include <varnel_common/str.h>
#include <varnel_common/tl1nemsgparse.h>

#include <iostream>
#include <string>

using namespace VARNEL_COMMON;

namespace {

constexpr char ACKNOWLEDGEMENT[] = "IP 117\r\n<";
constexpr char ANSWER[] = "\r\n\n   NE-EAST 26-01-15 12:00:07\r\nM  117 COMPLD\r\n   \"SLOT-3:CR,EQPT\"\r\n;";
constexpr char EVENT[] = "\r\n\n   NE-EAST 26-01-15 12:00:31\r\n*C 7860 REPT ALM EQPT\r\n   \"SLOT-5:MJ\"\r\n;";
constexpr char WITHOUT_INDENT[] = "\r\n\nNE-EAST 26-01-15 12:01:02\r\nM  118 DENY\r\n;";

bool PrintMessage(const char* message) {
  CTL1NEMsgParse parser(message);
  if (!parser.NEMsgParse()) {
    std::cout << "not of the strict form\n";
    return false;
  }
  const std::string text = replaceEnterWithBlank(parser.GetTextBlock().c_str());
  switch (parser.GetNEMsgType()) {
    case 2:
      std::cout << "acknowledgement " << parser.GetRetRspCode() << " of command " << parser.GetCtage() << '\n';
      break;
    case 3:
      std::cout << "answer " << parser.GetRetRspCode() << " to command " << parser.GetCtage() << " from "
                << parser.GetSID() << ", " << parser.m_strDate << ' ' << parser.m_strTime << ':' << text << '\n';
      break;
    default:  // 4, an event; a bare prompt also has this type, with empty texts
      std::cout << "event " << parser.m_strAtag << ' ' << parser.GetRetRspCode() << ' ' << parser.m_strVerb << " from "
                << parser.GetSID() << ':' << text << '\n';
  }
  return true;
}

}  // namespace

int main() {
  for (const char* message : {ACKNOWLEDGEMENT, ANSWER, EVENT})
    if (!PrintMessage(message)) return 1;
  if (PrintMessage(WITHOUT_INDENT)) return 1;

  // For a caller that collects bytes until an answer is complete: without its last byte it is not.
  const std::string received = ANSWER;
  CTL1NEMsgParse parser("");
  const bool early = parser.ParseMsgEndFlg(received.substr(0, received.size() - 1));
  const bool whole = parser.ParseMsgEndFlg(received);
  std::cout << "whole: " << early << ", then " << whole << '\n';
  return whole && !early ? 0 : 1;
}
