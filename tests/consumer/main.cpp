// A user's program: it includes the installed headers and uses nothing of the build tree.
#include <varnel_common/varnel_common.h>
#include <varnel_tl1/tl1.h>

#include <iostream>
#include <memory>
#include <string>

// The shorter spellings must also work.
#include "cmdstr.h"
#include "framer.h"
#include "platform/annex_k.h"
#include "platform/log_process.h"

using namespace VARNEL_COMMON;

namespace {

void UseValues() {
  CCmdStr command;
  command.SetMsg("RTRV-HDR");
  command.AddMsg(":NE1;");
  std::cout << "command: " << command.GetMsg() << '\n';
  unsigned short number = 0;
  ConvertFromString("70000", number);
  std::cout << "largest number of 16 bits: " << number << '\n';
  std::cout << "shelf 1, slot 3: " << WSlotIDi2str(0x0103) << '\n';
}

// Needs the virtual table and the type information of the class.
class Awaited : public CVNPackGuageEvt {
 public:
  bool IsMyEvt(const char* report) override { return CVNPackGuageEvt::IsMyEvt(report); }
};

void UseEvents() {
  const std::unique_ptr<CEvtMsg> event = std::make_unique<Awaited>();
  event->m_strEvtKey = "TASK";
  std::cout << "report claimed: " << event->IsMyEvt("TASK") << '\n';
  std::cout << "class recognised: " << (dynamic_cast<const CVNPackGuageEvt*>(event.get()) != nullptr) << '\n';
}

void UseTl1() {
  VARNEL_TL1::Framer framer;
  VARNEL_TL1::Message message;
  framer.Append("IP 7\r\n<");
  if (framer.Next(message)) std::cout << "TL1 tag: " << message.ctag << '\n';
}

void UsePlatform() {
  CPkgFile package("/absent");
  std::cout << "absent package: " << std::hex << package.ParsePkgFile() << std::dec << '\n';
  LogProcess::ForceLog("stranger", EN_LOG_LEVEL_WARNING, std::string("a line"), LocationInfo("main", "main", 7));
  char small[4];
  std::cout << "characters written: " << snprintf_s(small, sizeof small, 3, "%d", 123) << '\n';
}

}  // namespace

int main() {
  UseValues();
  UseEvents();
  UseTl1();
  UsePlatform();
}
