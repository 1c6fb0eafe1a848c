// A stranger's program: it knows the installed headers and nothing of the build tree.
#include <varnel_common/cmdstr.h>
#include <varnel_common/platform/log_process.h>
#include <varnel_common/tl1stream.h>
#include <varnel_common/varnel_common.h>

#include <cstdio>
#include <iostream>
#include <memory>
#include <string>

#include "cmdstr.h"
#include "platform/annex_k.h"
#include "platform/log_process.h"

using namespace VARNEL_COMMON;

namespace {

void FollowReports() {
  CVNPackGuageEvt package;
  package.m_strEvtKey = "*FILES_DONE*";
  package.m_dwNEID = 0x1000000;
  const std::unique_ptr<CEvtMsg> copy(package.Duplicate());
  const char report[] = "REPT EVT FILES_DONE=3,FILES_TOTAL=12,";
  std::cout << copy->IsMyEvt(report) << copy->HandleReport(report) << ' '
            << dynamic_cast<CVNPackGuageEvt&>(*copy).GetGuage() << '\n';

  CVNScriptFileGuageEvt script;
  const bool recognised = script.HandleReport("EVENT CAM RUN PROGRESS TOTAL_COMMANDS=20 5;");
  std::cout << recognised << ' ' << script.GetGuage() << '\n';

  CVNScriptFileEndEvt end;
  end.HandleReport("EVENT CAM RUN END RSP FAIL 7 CMD1 no such slot");
  std::cout << end.m_strResult << ' ' << end.m_dwResultCode << ' ' << end.m_strResultItem << ' ' << end.m_strResultText
            << '\n';
}

void ParseTl1() {
  CTL1NEMsgParse message("IP 12\r\n<");
  std::cout << message.NEMsgParse() << ' ' << message.GetNEMsgType() << ' ' << message.GetCtage() << '\n';
  const bool complete = message.ParseMsgEndFlg("\r\n\n   NE1 24-01-02 10:11:12\r\nM  7 COMPLD\r\n   a\r\n;");
  std::cout << complete << ' ' << message.GetSID() << ' ' << message.GetRetRspCode() << ' '
            << message.GetTextBlock().size() << '\n';
  message.ParseMsgEndFlg("");
}

}  // namespace

int main(int, char** argv) {
  CCmdStr command;
  command.SetMsg("ACT-USER");
  command.AddMsg(":NE1;");
  std::cout << command.GetMsg() << ' ' << command.GetMsgLen() << '\n';

  std::string text = "  a \t b ";
  StrCollapse(text);
  unsigned int number = 0;
  ConvertFromString("42", number);
  std::cout << text << ' ' << number << ' ' << strmcmp("abc", "a*c") << ' ' << strmcmpnocase("abc", "A?C") << '\n';

  const char bytes[] = "\1\2\3";
  std::cout << GetUCCheckSum(bytes, 3) << ' ' << isColdPatch(argv[0]) << '\n';

  CPkgFile package("/absent");
  std::cout << std::hex << package.ParsePkgFile() << ' ' << ToAbsPath("/absent").size() << std::dec << '\n';

  FollowReports();
  ParseTl1();

  VARNEL_TL1::Framer framer;
  VARNEL_TL1::Message message;
  framer.Feed("IP 7\r\n<");
  std::cout << framer.Next(message) << ' ' << *VARNEL_TL1::Reader().Read(message).ctag << '\n';

  const LocationInfo location("main", "main", 7);
  LogProcess::ForceLog("stranger", EN_LOG_LEVEL_WARNING, std::string("PWD=hunter2 as it is"), location);
  char small[4];
  std::cout << snprintf_s(small, sizeof small, 3, "%d", 123) << ' ' << small << '\n';
}
