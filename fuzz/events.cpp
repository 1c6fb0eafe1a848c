// A number that the counts start from, an event key and a report: the handlers of all events against the plain ones.

#include <evtmsg.h>

#include <memory>
#include <tuple>

#include "check.h"
#include "event_references.h"
#include "exact_text.h"
#include "input.h"

using VARNEL_COMMON::CEvtMsg;
using VARNEL_COMMON::CVNPackGuageEvt;
using VARNEL_COMMON::CVNScriptFileEndEvt;
using VARNEL_COMMON::CVNScriptFileGuageEvt;
using VARNEL_TEST::ExactText;

namespace Reference = VARNEL_TEST::Reference;

namespace {

constexpr unsigned int MML_NE = 0xFFFFFF;
constexpr unsigned int TL1_NE = 0x1000000;
constexpr size_t LONGEST_REPORT = 2048;  // the plain versions are slow on longer ones
constexpr size_t LONGEST_KEY = 64;

template <typename Event, typename Read>
void CheckCounts(unsigned int element, unsigned int before, const std::string& report, Read read) {
  unsigned int done = before, total = before;
  const bool expected = read(report, done, total);
  Event event;
  event.m_dwNEID = element;
  event.m_dwDoneNum = event.m_dwTotalNum = before;
  FUZZ_CHECK(event.HandleReport(ExactText(report)) == expected);
  FUZZ_CHECK(event.m_dwDoneNum == done);
  FUZZ_CHECK(event.m_dwTotalNum == total);
  if (total != 0 && done <= total) FUZZ_CHECK(event.GetGuage() <= 100);
}

void CheckEnd(const std::string& report) {
  Reference::ScriptEnd end{"result", "item", "text ", 77};
  const bool expected = Reference::ReadScriptEnd(report, end);
  CVNScriptFileEndEvt event;
  event.m_strResult = "result";
  event.m_strResultItem = "item";
  event.m_strResultText = "text ";
  event.m_dwResultCode = 77;
  FUZZ_CHECK(event.HandleReport(ExactText(report)) == expected);
  FUZZ_CHECK(std::tie(event.m_strResult, event.m_dwResultCode, event.m_strResultItem, event.m_strResultText) ==
             std::tie(end.result, end.code, end.item, end.text));
  const std::unique_ptr<CEvtMsg> copy(event.Duplicate());
  FUZZ_CHECK(dynamic_cast<CVNScriptFileEndEvt&>(*copy).m_strResultText == end.text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  VARNEL_FUZZ::Input input(data, size);
  const unsigned int before = input.Byte();
  // Both are C strings to the library.
  const std::string key = input.Field().substr(0, LONGEST_KEY).c_str();
  const std::string report = input.Rest().substr(0, LONGEST_REPORT).c_str();

  CheckCounts<CVNPackGuageEvt>(MML_NE, before, report, Reference::ReadMmlPackageProgress);
  CheckCounts<CVNPackGuageEvt>(TL1_NE, before, report, Reference::ReadTl1PackageProgress);
  CheckCounts<CVNScriptFileGuageEvt>(MML_NE, before, report, Reference::ReadScriptProgress);
  CheckEnd(report);

  CEvtMsg event;
  event.m_strEvtKey = key;
  FUZZ_CHECK(event.IsMyEvt(ExactText(report)) == Reference::ClaimsReport(key, report));
  return 0;
}
