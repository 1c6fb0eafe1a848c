// From a command to its end report, over the bundled platform: a program that waits for several reports.
#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "cmdstr.h"
#include "comnemsg.h"
#include "evtmsg.h"
#include "logged_test.h"
#include "publicdata.h"
#include "tl1nemsgparse.h"
#include "varnel_tl1/framer.h"

namespace VARNEL_TEST {
namespace {

using namespace VARNEL_COMMON;

constexpr unsigned int TL1_ELEMENT = 0x1000001;
constexpr unsigned int MML_ELEMENT = 0xFFFFFF;

// The output of a TL1 element while it loads a package, including prompts and echoes.
constexpr char TL1_SESSION[] =
    "< LOAD-PACK:NE1::117::SRC=\"a.pkg\";\r\nIP 117\r\n<"
    "\r\n\n   NE1 26-01-15 12:00:07\r\nM  117 COMPLD\r\n   \"PACK=7\"\r\n;"
    "\r\n\n   NE1 26-01-15 12:00:08\r\nA  1 REPT EVT PROGRESS M\r\n   \"S:TRANSFEREDFILES=0,TOTALNUM=12,:\"\r\n;"
    "\r\n\n   NE1 26-01-15 12:00:09\r\n** 2 REPT ALM EQPT M\r\n   \"FAN:CR\"\r\n;"
    "\r\n\n   NE1 26-01-15 12:00:10\r\nM  118 DENY\r\n   IIAC\r\n;"
    "\r\n\n   NE1 26-01-15 12:01:08\r\nA  3 REPT EVT PROGRESS M\r\n   \"S:TRANSFEREDFILES=5,TOTALNUM=12,:\"\r\n;"
    "\r\n\n   NE1 26-01-15 12:02:08\r\nA  4 REPT EVT PROGRESS M\r\n   \"S:TRANSFEREDFILES=12,TOTALNUM=12,:\"\r\n;";

const std::vector<std::string> MML_REPORTS = {
    "EVENT CAM RUN PROGRESS\nTOTAL  DONE_NUM\n20     5\n\n--- END",
    "EVENT CAM RUN PROGRESS\nTOTAL  DONE_NUM\n20     20\n\n--- END",
    "EVENT CAM OTHER\n",
    "EVENT CAM RUN END\n\nRSP SUCCESS 0\n\n--- END",
};

std::vector<std::string> Frame(const std::string& bytes, size_t piece) {
  VARNEL_TL1::Framer framer;
  std::vector<std::string> messages;
  VARNEL_TL1::Message message;
  for (size_t at = 0; at < bytes.size(); at += piece) {
    framer.Append(std::string_view(bytes).substr(at, piece));
    while (framer.Next(message))
      messages.emplace_back(message.bytes);
  }
  framer.Finish();
  EXPECT_FALSE(framer.Next(message));
  return messages;
}

using Events = std::vector<std::unique_ptr<CEvtMsg>>;

// The first event that claims a report and can read it.
CEvtMsg* Offer(const Events& waiting, const std::string& report) {
  const auto found = std::find_if(waiting.begin(), waiting.end(), [&report](const auto& event) {
    return event->IsMyEvt(report.c_str()) && event->HandleReport(report.c_str());
  });
  return found == waiting.end() ? nullptr : found->get();
}

template <typename Event>
std::unique_ptr<Event> Waiting(const char* key, unsigned int element) {
  auto event = std::make_unique<Event>();
  event->m_strEvtKey = key;
  event->m_dwNEID = element;
  return event;
}

Events EventsOfATool() {
  Events events;
  events.push_back(Waiting<CVNScriptFileEndEvt>("*EVENT*CAM*RUN*END*", MML_ELEMENT));
  events.push_back(Waiting<CVNScriptFileGuageEvt>("CAM RUN PROGRESS", MML_ELEMENT));
  events.push_back(Waiting<CVNPackGuageEvt>("*REPT EVT PROGRESS*", TL1_ELEMENT));
  return events;
}

/// A tool with pending commands, each identified by its tag.
class Tool {
 public:
  explicit Tool(Events events) : m_events(std::move(events)) {}

  void Send(const std::string& tag) {
    CCmdStr& command = m_pending[tag];
    command.AddMsg("LOAD-PACK:NE1::");
    command.AddMsg(tag.c_str());
    command.AddMsg("::SRC=\"a.pkg\";");
  }

  // The steps are recorded in order.
  void Receive(const std::string& message) {
    CTL1NEMsgParse parser(message);
    if (!parser.NEMsgParse()) return Record("not recognised");
    const std::string code = parser.GetRetRspCode();
    if (parser.GetNEMsgType() == 2) return Record("accepted " + TextOf(parser.GetCtage()));
    if (!parser.ParseMsgEndFlg(message)) return Record("incomplete");
    if (parser.GetNEMsgType() == 3) return Record(code + ' ' + TextOf(parser.GetCtage()));
    const auto* progress = dynamic_cast<CVNPackGuageEvt*>(Offer(m_events, message));
    Record(progress == nullptr ? "unclaimed" : std::to_string(progress->GetGuage()) + '%');
  }

  std::vector<std::string> steps;

 private:
  std::string TextOf(const std::string& tag) {
    const auto found = m_pending.find(tag);
    return found == m_pending.end() ? "nothing sent" : found->second.GetMsg();
  }
  void Record(const std::string& step) { steps.push_back(step); }

  Events m_events;
  std::map<std::string, CCmdStr> m_pending;
};

class ReportRoad : public LoggedTest {};

TEST_F(ReportRoad, FollowsATl1LoadForAnyCutOfTheStream) {
  for (const size_t piece : {size_t{1}, size_t{7}, sizeof TL1_SESSION}) {
    Tool tool(EventsOfATool());
    tool.Send("117");
    for (const std::string& message : Frame(TL1_SESSION, piece))
      tool.Receive(message);
    EXPECT_EQ(tool.steps,
              (Lines{"accepted LOAD-PACK:NE1::117::SRC=\"a.pkg\";", "COMPLD LOAD-PACK:NE1::117::SRC=\"a.pkg\";", "0%",
                     "unclaimed", "DENY nothing sent", "41%", "100%"}))
        << piece;
  }
  EXPECT_EQ(Log(), Lines{});
}

// The strict parser requires an "M" somewhere after every header.
TEST_F(ReportRoad, ReportsThePartThatTheStrictParserRefuses) {
  Tool tool(EventsOfATool());
  tool.Receive("\r\n\n   NE1 26-01-15 12:00:08\r\nA  1 REPT EVT PROGRESS\r\n   \"S:SLOTSDONE=1,SLOTSTTL=2,\"\r\n;");
  tool.Receive("\r\n\n   NE1 26-01-15\r\n;");
  EXPECT_EQ(tool.steps, (Lines{"not recognised", "not recognised"}));
  EXPECT_EQ(Log(), Lines{"warning tl1nemsgparse::NEMsgParse CTL1NEMsgParse::ParseDate(): ParseDate failed;"});
}

TEST_F(ReportRoad, FollowsAnMmlScriptToItsEnd) {
  const Events waiting = EventsOfATool();
  Lines steps;
  for (const std::string& report : MML_REPORTS) {
    CEvtMsg* event = Offer(waiting, report);
    if (event == nullptr) {
      steps.emplace_back("unclaimed");
    } else if (const auto* progress = dynamic_cast<CVNScriptFileGuageEvt*>(event)) {
      steps.push_back(std::to_string(progress->GetGuage()) + '%');
    } else if (const auto* end = dynamic_cast<CVNScriptFileEndEvt*>(event)) {
      steps.push_back(end->m_strResult + ' ' + std::to_string(end->m_dwResultCode));
    }
  }
  EXPECT_EQ(steps, (Lines{"25%", "100%", "unclaimed", "SUCCESS 0"}));
}

TEST_F(ReportRoad, IgnoresReportsInTheOtherLanguage) {
  Events waiting;
  waiting.push_back(Waiting<CVNPackGuageEvt>("PROGRESS", MML_ELEMENT));
  waiting.push_back(Waiting<CVNScriptFileGuageEvt>("PROGRESS", TL1_ELEMENT));
  waiting.push_back(Waiting<CVNScriptFileEndEvt>("END", TL1_ELEMENT));
  EXPECT_EQ(Offer(waiting, "REPT EVT PROGRESS \"TRANSFEREDFILES=5,TOTALNUM=12,\""), nullptr);
  for (const std::string& report : MML_REPORTS)
    EXPECT_EQ(Offer(waiting, report), nullptr) << report;
}

TEST_F(ReportRoad, ACopyIsIndependent) {
  const auto event = Waiting<CVNPackGuageEvt>("*FILES_DONE=*", TL1_ELEMENT);
  event->m_cmd.SetMsg("LOAD-PACK;");
  Events copies;
  copies.emplace_back(event->Duplicate());
  ASSERT_EQ(Offer(copies, "REPT EVT FILES_DONE=3,FILES_TOTAL=12,"), copies.front().get());
  EXPECT_EQ(dynamic_cast<CVNPackGuageEvt&>(*copies.front()).GetGuage(), 25U);
  EXPECT_STREQ(copies.front()->m_cmd.GetMsg(), "LOAD-PACK;");
  EXPECT_EQ(event->GetGuage(), 0U);
}

// The bytes of a message on the wire: 16 of the header, then the body.
std::string OnTheWire(CComNEMsg& message) {
  const size_t length = message.usMsgLen;
  message.ToNetOrder();
  std::string bytes(sizeof(CComNEHead), '\0');
  std::memcpy(&bytes[0], static_cast<const CComNEHead*>(&message), sizeof(CComNEHead));
  return bytes.append(message.m_pMsg, length);
}

// Reads a message back as its receiver does.
void Receive(const std::string& bytes, CComNEMsg& message) {
  std::memcpy(static_cast<void*>(static_cast<CComNEHead*>(&message)), bytes.data(), sizeof(CComNEHead));
  message.ToHostOrder();
  message.SetMsg(&bytes[sizeof(CComNEHead)], message.usMsgLen);
}

TEST_F(ReportRoad, CarriesANumberedCommandInABinaryMessage) {
  CCmdStr command;
  command.AddMsg("RUN-SCRIPT:");
  command.AddMsg("\"upgrade.mml\";\r\n");
  ASSERT_EQ(command.AddSnMML(0x1234), 1);
  const std::string body(command.GetMsg(), command.GetMsgLen());
  ASSERT_EQ(body, std::string("RUN-SCRIPT:\"upgrade.mml\";\0\x34", 27));

  CComNEMsg message(16);
  message.ulHeadWord0 = 0x01020304;
  message.ulHeadWord1 = 0x0A0B0C0D;
  message.usHeadShort = 0x1122;
  message.ulHeadWord2 = 0x55667788;
  message.SetMsg(body.data(), static_cast<unsigned int>(body.size()));
  const std::string bytes = OnTheWire(message);
  EXPECT_EQ(bytes, std::string("\1\2\3\4\xA\xB\xC\xD\x11\x22\0\x1B\x55\x66\x77\x88", 16) + body);

  CComNEMsg received(0);
  Receive(bytes, received);
  EXPECT_EQ(received.ulHeadWord2, 0x55667788U);
  ASSERT_EQ(received.usMsgLen, body.size());
  EXPECT_EQ(std::string(received.m_pMsg, received.usMsgLen), body);
  EXPECT_STREQ(received.m_pMsg, "RUN-SCRIPT:\"upgrade.mml\";");
  EXPECT_EQ(Log(), Lines{});
}

TEST_F(ReportRoad, CutsACommandTooLongForAMessageWithAWarning) {
  CCmdStr command;
  command.SetMsg(std::string(70000, 'x').c_str());
  CComNEMsg message(0);
  message.SetMsg(command.GetMsg(), command.GetMsgLen());
  EXPECT_EQ(message.usMsgLen, 65534);
  EXPECT_EQ(OnTheWire(message).size(), 16U + 65534);
  EXPECT_EQ(Log(), Lines{"warning comnemsg::SetMsg SetMsg: nDataLen beyond max, nDataLen:65534"});
}

}  // namespace
}  // namespace VARNEL_TEST
