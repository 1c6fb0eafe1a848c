#include <varnel_common/evtmsg.h>

#include <iostream>
#include <memory>

#include "families.h"

using namespace VARNEL_COMMON;

namespace {

// An event of the stranger's own.
class AnyReport : public CEvtMsg {
 public:
  CEvtMsg* Duplicate() override {
    auto copy = std::make_unique<AnyReport>();
    CopyMembersTo(*copy);
    return copy.release();
  }
};

void UseBase() {
  CEvtMsg event;
  event.m_strEvtKey = "*FILES_DONE*";
  const std::unique_ptr<CEvtMsg> copy(event.CEvtMsg::Duplicate());
  std::cout << copy->CEvtMsg::IsMyEvt("REPT EVT FILES_DONE=3") << copy->CEvtMsg::HandleReport(nullptr) << '\n';

  AnyReport own;
  own.m_dwUserData1 = 5;
  const std::unique_ptr<CEvtMsg> ownCopy(own.Duplicate());
  std::cout << (dynamic_cast<AnyReport*>(ownCopy.get()) != nullptr) << ownCopy->m_dwUserData1 << '\n';
}

void FollowPackage() {
  CVNPackGuageEvt package;
  package.m_dwNEID = 0x1000000;
  const std::unique_ptr<CEvtMsg> copy(package.Duplicate());
  const bool handled = copy->HandleReport("REPT EVT FILES_DONE=3,FILES_TOTAL=12,");
  std::cout << handled << ' ' << dynamic_cast<CVNPackGuageEvt&>(*copy).GetGuage() << '\n';
  std::cout << package.HandleTL1LReport("SLOTSDONE=1,SLOTSTTL=2,") << package.GetGuage() << ' '
            << package.HandleMMLReport("status=completed done=4 total=4 ") << package.GetGuage() << ' '
            << package.HandleReport(nullptr) << '\n';
}

void FollowScript() {
  CVNScriptFileGuageEvt script;
  const char* const report = "EVENT CAM RUN PROGRESS TOTAL_COMMANDS=20 5;";
  std::cout << script.HandleReport(report) << script.HandleMMLReport(report) << ' ' << script.GetGuage() << '\n';
  const std::unique_ptr<CEvtMsg> copy(script.Duplicate());
  std::cout << dynamic_cast<CVNScriptFileGuageEvt&>(*copy).m_dwTotalNum << '\n';
}

void EndScript() {
  CVNScriptFileEndEvt end;
  end.HandleReport("EVENT CAM RUN END RSP FAIL 7 CMD1 no such slot");
  std::cout << end.m_strResult << ' ' << end.m_dwResultCode << ' ' << end.m_strResultItem << ' ' << end.m_strResultText
            << '\n';
  const std::unique_ptr<CEvtMsg> copy(end.Duplicate());
  auto& again = dynamic_cast<CVNScriptFileEndEvt&>(*copy);
  std::cout << again.HandleMMLReport("EVENT CAM RUN END RSP SUCCESS 0") << again.m_strResult << '\n';
}

}  // namespace

void UseEvents() {
  UseBase();
  FollowPackage();
  FollowScript();
  EndScript();
}
