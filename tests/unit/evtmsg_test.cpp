#include "evtmsg.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstring>
#include <memory>
#include <new>
#include <sstream>
#include <string>
#include <tuple>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

#include "allocation.h"
#include "exact_text.h"
#include "foreign_locale.h"
#include "growth.h"
#include "recording_test.h"
#include "report_shapes.h"

namespace VARNEL_TEST {
namespace {

using namespace std::string_literals;

using VARNEL_COMMON::CEvtMsg;
using VARNEL_COMMON::CVNPackGuageEvt;
using VARNEL_COMMON::CVNScriptFileEndEvt;
using VARNEL_COMMON::CVNScriptFileGuageEvt;

constexpr unsigned int LARGEST = 4294967295;
constexpr unsigned int LAST_MML_NE = 0xFFFFFF;
constexpr unsigned int FIRST_TL1_NE = 0x1000000;

// Result of a handler, done, total.
using Counts = std::tuple<bool, unsigned int, unsigned int>;

// Numbers that no report of these tests contains.
constexpr unsigned int OLD_DONE = 77;
constexpr unsigned int OLD_TOTAL = 88;
constexpr Counts UNRECOGNISED{false, OLD_DONE, OLD_TOTAL};

struct CountsCase {
  std::string report;
  Counts expected;
};

// Events log nothing for any input.
class Event : public RecordingTest {
 protected:
  void TearDown() override { EXPECT_EQ(host.lines, Lines{}); }
};

template <typename Progress>
Counts Read(bool (Progress::*handler)(const char*), const std::string& report) {
  Progress event;
  event.m_dwDoneNum = OLD_DONE;
  event.m_dwTotalNum = OLD_TOTAL;
  const bool result = (event.*handler)(ExactText(report));
  return {result, event.m_dwDoneNum, event.m_dwTotalNum};
}

Counts ReadMml(const std::string& report) {
  return Read(&CVNPackGuageEvt::HandleMMLReport, report);
}

Counts ReadTl1(const std::string& report) {
  return Read(&CVNPackGuageEvt::HandleTL1LReport, report);
}

Counts ReadScript(const std::string& report) {
  return Read(&CVNScriptFileGuageEvt::HandleMMLReport, report);
}

std::string Repeated(const std::string& unit, size_t count) {
  std::string text;
  for (size_t i = 0; i < count; ++i)
    text += unit;
  return text;
}

TEST_F(Event, ClassesAreOneFamily) {
  EXPECT_TRUE((std::is_convertible_v<CVNPackGuageEvt*, CEvtMsg*>));
  EXPECT_TRUE((std::is_convertible_v<CVNScriptFileGuageEvt*, CEvtMsg*>));
  EXPECT_TRUE((std::is_convertible_v<CVNScriptFileEndEvt*, CEvtMsg*>));
}

template <typename Class>
constexpr bool IS_COPYABLE = std::is_copy_constructible_v<Class> || std::is_copy_assignable_v<Class> ||
                             std::is_move_constructible_v<Class> || std::is_move_assignable_v<Class>;

TEST_F(Event, IsCopiedByDuplicateOnly) {
  EXPECT_FALSE(IS_COPYABLE<CEvtMsg>);
  EXPECT_FALSE(IS_COPYABLE<CVNPackGuageEvt>);
  EXPECT_FALSE(IS_COPYABLE<CVNScriptFileGuageEvt>);
  EXPECT_FALSE(IS_COPYABLE<CVNScriptFileEndEvt>);
}

void ExpectDefaults(CEvtMsg& event) {
  EXPECT_EQ(event.m_strEvtKey, "");
  EXPECT_EQ(event.m_dwUserData1, 0U);
  EXPECT_EQ(event.m_dwUserData2, 0U);
  EXPECT_EQ(event.m_dwNEID, 0U);
  EXPECT_STREQ(event.m_cmd.GetMsg(), "");
  EXPECT_EQ(event.m_cmd.GetMsgLen(), 0U);
}

// An object in memory that was not zero before.
template <typename Class>
class InUsedMemory {
 public:
  InUsedMemory() {
    std::memset(m_memory, 0xA5, sizeof m_memory);
    m_object = new (m_memory) Class;
  }
  ~InUsedMemory() { m_object->~Class(); }
  InUsedMemory(const InUsedMemory&) = delete;
  InUsedMemory& operator=(const InUsedMemory&) = delete;
  Class& operator*() { return *m_object; }

 private:
  alignas(Class) unsigned char m_memory[sizeof(Class)];
  Class* m_object;
};

TEST_F(Event, MembersStartEmpty) {
  InUsedMemory<CEvtMsg> base;
  ExpectDefaults(*base);
  InUsedMemory<CVNPackGuageEvt> package;
  ExpectDefaults(*package);
  EXPECT_EQ((*package).m_dwDoneNum, 0U);
  EXPECT_EQ((*package).m_dwTotalNum, 0U);
  InUsedMemory<CVNScriptFileGuageEvt> script;
  ExpectDefaults(*script);
  EXPECT_EQ((*script).m_dwDoneNum, 0U);
  EXPECT_EQ((*script).m_dwTotalNum, 0U);
  InUsedMemory<CVNScriptFileEndEvt> end;
  ExpectDefaults(*end);
  EXPECT_EQ((*end).m_strResult, "");
  EXPECT_EQ((*end).m_strResultItem, "");
  EXPECT_EQ((*end).m_strResultText, "");
  EXPECT_EQ((*end).m_dwResultCode, 0U);
  EXPECT_EQ((*end).m_dwExtra, 0U);
}

bool Claims(const std::string& key, const std::string& report) {
  CEvtMsg event;
  event.m_strEvtKey = key;
  return event.IsMyEvt(ExactText(report));
}

TEST_F(Event, NullReportIsNotClaimed) {
  CEvtMsg event;
  EXPECT_FALSE(event.IsMyEvt(nullptr));
  event.m_strEvtKey = "*";
  EXPECT_FALSE(event.IsMyEvt(nullptr));
}

TEST_F(Event, EmptyKeyClaimsEveryReport) {
  for (const char* report : {"", " ", "any report", "\xFF"})
    EXPECT_TRUE(Claims("", report)) << report;
}

TEST_F(Event, PatternClaimsWhatItMatches) {
  EXPECT_TRUE(Claims("*PROGRESS*", "EVENT PROGRESS 5"));
  EXPECT_TRUE(Claims("EVENT*5", "EVENT PROGRESS 5"));
  EXPECT_TRUE(Claims("*", ""));
  EXPECT_TRUE(Claims("EVENT*PROGRESS", "EVENTPROGRESS"));
  EXPECT_FALSE(Claims("EVENT*6", "EVENT PROGRESS 5"));
  EXPECT_FALSE(Claims("PROGRESS*EVENT", "EVENT PROGRESS 5"));
  EXPECT_FALSE(Claims("*progress*", "EVENT PROGRESS 5"));
  EXPECT_FALSE(Claims("VENT*5", "EVENT PROGRESS 5")) << "a pattern is matched with the whole report";
}

TEST_F(Event, LiteralKeyClaimsReportsThatContainIt) {
  EXPECT_TRUE(Claims("PROGRESS", "EVENT PROGRESS 5"));
  EXPECT_TRUE(Claims("PROGRESS", "PROGRESS"));
  EXPECT_FALSE(Claims("PROGRESS", "EVENT PROGRES"));
  EXPECT_FALSE(Claims("PROGRESS", "event progress 5"));
  EXPECT_FALSE(Claims("PROGRESS", ""));
}

TEST_F(Event, KeyIsFoundLiterallyIfItsPatternDoesNotMatch) {
  EXPECT_TRUE(Claims("a*b", "--a*b--"));
  EXPECT_FALSE(Claims("a*b", "--a+b--"));
  EXPECT_TRUE(Claims("*C 5", "\r\n*C 5 REPT ALM"));
}

TEST_F(Event, KeyEndsAtItsFirstNul) {
  EXPECT_TRUE(Claims("EVENT\0X"s, "AN EVENT"));
  EXPECT_TRUE(Claims("\0X"s, "anything"));
  EXPECT_TRUE(Claims("AN*\0X"s, "AN EVENT"));
}

TEST_F(Event, KeysOfBytesAbove7F) {
  EXPECT_TRUE(Claims("\xE1\x80", "x\xE1\x80y"));
  EXPECT_TRUE(Claims("x*\xFF", "x\xE1\x80\xFF"));
  EXPECT_FALSE(Claims("\xE1", "\xC1"));
}

TEST_F(Event, OneReportPassedToTenThousandEvents) {
  std::vector<std::unique_ptr<CEvtMsg>> events;
  for (int i = 0; i < 10000; ++i) {
    events.push_back(std::make_unique<CVNPackGuageEvt>());
    const std::string number = std::to_string(i);
    events.back()->m_strEvtKey = i % 2 == 0 ? "CMD=" + number + "," : "*CMD=" + number + ",*";
  }
  const ExactText report("EVT CMD=4711, CMD=4712, CMD=10000, status=completed done=1 total=4");
  std::vector<size_t> claimed;
  for (size_t i = 0; i < events.size(); ++i) {
    if (events[i]->IsMyEvt(report)) claimed.push_back(i);
  }
  EXPECT_EQ(claimed, (std::vector<size_t>{4711, 4712}));
  EXPECT_TRUE(events[4711]->HandleReport(report));
  EXPECT_EQ(static_cast<CVNPackGuageEvt&>(*events[4711]).GetGuage(), 25U);
}

TEST_F(Event, BaseHandlesEverything) {
  CEvtMsg event;
  EXPECT_TRUE(event.HandleReport("x"));
  EXPECT_TRUE(event.HandleReport(nullptr));
  event.m_dwNEID = LARGEST;
  EXPECT_TRUE(event.HandleReport(nullptr));
}

const char MML_PACKAGE[] = "status=completed done=3 total=12";
const char TL1_PACKAGE[] = "REPT EVT FILES_DONE=3,FILES_TOTAL=12 X";
const char SCRIPT_PROGRESS[] = "EVENT CAM RUN PROGRESS TOTAL_COMMANDS=12 3;";
const char SCRIPT_SUCCESS[] = "EVENT CAM RUN END RSP SUCCESS 0";

template <typename Class>
bool Handles(unsigned int element, const char* report) {
  Class event;
  event.m_dwNEID = element;
  CEvtMsg& base = event;
  return base.HandleReport(report);
}

TEST_F(Event, ElementDecidesTheLanguageOfPackageReports) {
  for (const unsigned int mml : {0U, 1U, LAST_MML_NE}) {
    EXPECT_TRUE(Handles<CVNPackGuageEvt>(mml, MML_PACKAGE)) << mml;
    EXPECT_FALSE(Handles<CVNPackGuageEvt>(mml, TL1_PACKAGE)) << mml;
  }
  for (const unsigned int tl1 : {FIRST_TL1_NE, LARGEST}) {
    EXPECT_FALSE(Handles<CVNPackGuageEvt>(tl1, MML_PACKAGE)) << tl1;
    EXPECT_TRUE(Handles<CVNPackGuageEvt>(tl1, TL1_PACKAGE)) << tl1;
  }
}

TEST_F(Event, Tl1ElementsDoNotReportScripts) {
  for (const unsigned int mml : {0U, LAST_MML_NE}) {
    EXPECT_TRUE(Handles<CVNScriptFileGuageEvt>(mml, SCRIPT_PROGRESS)) << mml;
    EXPECT_TRUE(Handles<CVNScriptFileEndEvt>(mml, SCRIPT_SUCCESS)) << mml;
  }
  for (const unsigned int tl1 : {FIRST_TL1_NE, LARGEST}) {
    EXPECT_FALSE(Handles<CVNScriptFileGuageEvt>(tl1, SCRIPT_PROGRESS)) << tl1;
    EXPECT_FALSE(Handles<CVNScriptFileEndEvt>(tl1, SCRIPT_SUCCESS)) << tl1;
  }
}

TEST_F(Event, NullReportsAreRefused) {
  for (const unsigned int element : {0U, LAST_MML_NE, FIRST_TL1_NE}) {
    EXPECT_FALSE(Handles<CVNPackGuageEvt>(element, nullptr)) << element;
    EXPECT_FALSE(Handles<CVNScriptFileGuageEvt>(element, nullptr)) << element;
    EXPECT_FALSE(Handles<CVNScriptFileEndEvt>(element, nullptr)) << element;
  }
  EXPECT_FALSE(CVNPackGuageEvt().HandleMMLReport(nullptr));
  EXPECT_FALSE(CVNPackGuageEvt().HandleTL1LReport(nullptr));
  EXPECT_FALSE(CVNScriptFileGuageEvt().HandleMMLReport(nullptr));
  EXPECT_FALSE(CVNScriptFileEndEvt().HandleMMLReport(nullptr));
}

TEST_F(Event, ReportGoesThroughTheBaseToItsNumbers) {
  CVNPackGuageEvt event;
  event.m_dwNEID = FIRST_TL1_NE;
  EXPECT_TRUE(static_cast<CEvtMsg&>(event).HandleReport(TL1_PACKAGE));
  EXPECT_EQ(event.m_dwDoneNum, 3U);
  EXPECT_EQ(event.m_dwTotalNum, 12U);
  EXPECT_EQ(event.GetGuage(), 25U);
}

// The text after the column header; the two numbers in the order of the text.
const CountsCase TWO_NUMBERS[] = {
    {" 3 12 x", {true, 3, 12}},
    {"3 12;", {true, 3, 12}},
    {"\r\n  3  \t 12\r\n---", {true, 3, 12}},
    {"\v3\f12\v.", {true, 3, 12}},
    {" 0 0 x", {true, 0, 0}},
    {" 007 08 x", {true, 7, 8}},
    {" +3 +4 x", {true, 3, 4}},
    {" -1 -4 x", {true, LARGEST, LARGEST - 3}},
    {"3-4x", {true, 3, LARGEST - 3}},
    {"3+4x", {true, 3, 4}},
    {"3 4x", {true, 3, 4}},
    {"3 4,5", {true, 3, 4}},
    {"3 4\xFF", {true, 3, 4}},
    {" 4294967295 4294967295 x", {true, LARGEST, LARGEST}},
    {" -4294967295 1 x", {true, 1, 1}},
    {" 4294967296 5 x", {false, LARGEST, OLD_TOTAL}},
    {" -4294967296 5 x", {false, LARGEST, OLD_TOTAL}},
    {" 5 4294967296 x", {false, 5, LARGEST}},
    {" 99999999999999999999999999 5 x", {false, LARGEST, OLD_TOTAL}},
    {" 3 12", {false, 3, 12}},
    {" 3 12 \r\n", {false, 3, 12}},
    {" 3", {false, 3, OLD_TOTAL}},
    {" 3 ", {false, 3, OLD_TOTAL}},
    {"", {false, OLD_DONE, OLD_TOTAL}},
    {" \r\n\t", {false, OLD_DONE, OLD_TOTAL}},
    {" x 3 4 y", {false, 0, OLD_TOTAL}},
    {"=3 4 y", {false, 0, OLD_TOTAL}},
    {" 3 x 4 y", {false, 3, 0}},
    {" 3,4 y", {false, 3, 0}},
    {" - 3 y", {false, 0, OLD_TOTAL}},
    {" -", {false, 0, OLD_TOTAL}},
    {" 3 +", {false, 3, 0}},
    {" 0x10 5 y", {false, 0, 0}},
    {" 1e3 5 y", {false, 1, 0}},
    {" \xA0"
     "3 4 y",
     {false, 0, OLD_TOTAL}},
};

TEST_F(Event, CopyProgressReadsDoneThenTotal) {
  for (const auto& [tail, expected] : TWO_NUMBERS) {
    EXPECT_EQ(ReadMml("EVT_SFTM_CPYFILE_PROGRESS\r\nDONE_NUM  TOTAL_NUM" + tail), expected) << tail;
  }
}

TEST_F(Event, ScriptProgressReadsTotalThenDone) {
  for (const auto& [tail, expected] : TWO_NUMBERS) {
    const auto [result, first, second] = expected;
    const unsigned int total = first == OLD_DONE ? OLD_TOTAL : first;
    const unsigned int done = second == OLD_TOTAL ? OLD_DONE : second;
    EXPECT_EQ(ReadScript("EVENT CAM RUN PROGRESS TOTAL_COMMANDS=" + tail), (Counts{result, done, total})) << tail;
  }
}

TEST_F(Event, CopyProgressShapes) {
  const CountsCase cases[] = {
      {"EVT_SFTM_CPYFILE_PROGRESS DONE_NUM TOTAL_NUM 3 4 x", {true, 3, 4}},
      {"xEVT_SFTM_CPYFILE_PROGRESSDONE_NUMTOTAL_NUM3 4 x", {true, 3, 4}},
      {"\xFF\nEVT_SFTM_CPYFILE_PROGRESS\x80\r\nDONE_NUM\xA0TOTAL_NUM 3 4 \xFF", {true, 3, 4}},
      {"TOTAL_NUM 8 9 x EVT_SFTM_CPYFILE_PROGRESS DONE_NUM TOTAL_NUM 3 4 x", {true, 8, 9}},
      {"EVT_SFTM_CPYFILE_PROGRESS DONE_NUM TOTAL_NUM 3 4 x TOTAL_NUM 8 9 x", {true, 3, 4}},
      {"EVT_SFTM_CPYFILE_PROGRESS TOTAL_NUM 3 4 x", UNRECOGNISED},
      {"EVT_SFTM_CPYFILE_PROGRESS DONE_NUM 3 4 x", UNRECOGNISED},
      {"EVT_SFTM_CPYFILE_PROGRESS TOTAL_NUM DONE_NUM 3 4 x", UNRECOGNISED},
      {"DONE_NUM TOTAL_NUM 3 4 x", UNRECOGNISED},
      {"DONE_NUM EVT_SFTM_CPYFILE_PROGRESS TOTAL_NUM 3 4 x", UNRECOGNISED},
      {"DONE_NUM TOTAL_NUM EVT_SFTM_CPYFILE_PROGRESS 3 4 x", UNRECOGNISED},
      {"EVT_SFTM_CPYFILE_PROGRESS done_num total_num 3 4 x", UNRECOGNISED},
      {"EVT_SFTM_CPYFILE_PROGRES DONE_NUM TOTAL_NUM 3 4 x", UNRECOGNISED},
      {"EVT_SFTM_CPYFILE_PROGRESS DONE_NUM TOTAL_NU", UNRECOGNISED},
      {"", UNRECOGNISED},
  };
  for (const auto& [report, expected] : cases)
    EXPECT_EQ(ReadMml(report), expected) << report;
}

TEST_F(Event, CompletedShapes) {
  const CountsCase cases[] = {
      {"status=completed done=5 total=12", {true, 5, 12}},
      {"x status=completed,done=5,total=12,y", {true, 5, 12}},
      {"status=completeddone=5total=12", {true, 5, 12}},
      {"status=completed done= \r\n5 total=\t\v\f7", {true, 5, 7}},
      {"status=completed done=+5 total=-1", {true, 5, LARGEST}},
      {"status=completed done=0 total=0", {true, 0, 0}},
      {"status=completed done=010 total=0x10", {true, 10, 0}},
      {"status=completed done=5x total=6y", {true, 5, 6}},
      {"status=completed done=4294967296 total=4294967297", {true, 0, 1}},
      {"status=completed done=18446744073709551615 total=18446744073709551614", {true, LARGEST, LARGEST - 1}},
      {"status=completed done=18446744073709551616 total=99999999999999999999999", {true, LARGEST, LARGEST}},
      {"status=completed done=-18446744073709551616 total=-18446744073709551615", {true, LARGEST, 1}},
      {"status=completed done=5 total=", {false, 5, 0}},
      {"status=completed done=5 total= \r\n", {false, 5, 0}},
      {"status=completed done=5 total=x", {false, 5, 0}},
      {"status=completed done= total=6", {false, 0, 6}},
      {"status=completed done=x total=6", {false, 0, 6}},
      {"status=completed done=- total=+", {false, 0, 0}},
      {"status=completed done=+-5 total=- 5", {false, 0, 0}},
      {"status=completed done=5 total=\xA0"
       "6",
       {false, 5, 0}},
      {"total=1 done=2 status=completed done=3 total=4", {true, 2, 1}},
      {"status=completed done=3 total=4 done=5 total=6", {true, 3, 4}},
      {"status=completed undone=3 subtotal=4", {true, 3, 4}},
      {"status=completed total=6 done=5", UNRECOGNISED},
      {"done=5 total=6 status=completed", UNRECOGNISED},
      {"done=5 status=completed total=6", UNRECOGNISED},
      {"done=5 total=6", UNRECOGNISED},
      {"status=running done=5 total=6", UNRECOGNISED},
      {"status=completed done=5", UNRECOGNISED},
      {"status=completed total=5", UNRECOGNISED},
      {"STATUS=COMPLETED DONE=5 TOTAL=6", UNRECOGNISED},
      {"status=completed done =5 total =6", UNRECOGNISED},
  };
  for (const auto& [report, expected] : cases)
    EXPECT_EQ(ReadMml(report), expected) << report;
}

TEST_F(Event, CopyProgressIsTriedBeforeCompleted) {
  const CountsCase cases[] = {
      {"EVT_SFTM_CPYFILE_PROGRESS DONE_NUM TOTAL_NUM 3 4 status=completed done=5 total=6", {true, 3, 4}},
      {"status=completed done=5 total=6 EVT_SFTM_CPYFILE_PROGRESS DONE_NUM TOTAL_NUM 3 4 x", {true, 3, 4}},
      {"EVT_SFTM_CPYFILE_PROGRESS DONE_NUM TOTAL_NUM x status=completed done=5 total=6", {false, 0, OLD_TOTAL}},
      {"status=completed done=5 total=6 EVT_SFTM_CPYFILE_PROGRESS DONE_NUM TOTAL_NUM", UNRECOGNISED},
      {"TOTAL_NUM 3 4 status=completed done=5 total=6", {true, 5, 6}},
  };
  for (const auto& [report, expected] : cases)
    EXPECT_EQ(ReadMml(report), expected) << report;
}

TEST_F(Event, EachTl1Shape) {
  const std::tuple<std::string, std::string, Counts> values[] = {
      {"3,", "12", {true, 3, 12}},
      {"3,", "12,X=1", {true, 3, 12}},
      {"3,", "12\"\r\n;", {true, 3, 12}},
      {" +3 ,", "\r\n 12\r\n", {true, 3, 12}},
      {"3x,", "12;", {true, 3, 12}},
      {"-1,", "-2", {true, LARGEST, LARGEST - 1}},
      {"4294967296,", "4294967296", {true, LARGEST, LARGEST}},
      {"3,", "0", {false, 3, 0}},
      {"3,", "x", {false, 3, 0}},
      {"x,", "12", {true, 0, 12}},
      {"\"3\",", "12", {true, 0, 12}},
      {"3,", "\"12\",", {false, 3, 0}},
      {"3,", "\"12\"", {true, 3, OLD_TOTAL}},
      {",", "12", {true, OLD_DONE, 12}},
      {",", ",", {true, OLD_DONE, OLD_TOTAL}},
      {"3,", "", {true, 3, OLD_TOTAL}},
      {"3,", " \r\n", {true, 3, OLD_TOTAL}},
      {"3 ", "12", {true, 3, 12}},
      {"\xA0"
       "3,",
       "12\xFF",
       {true, 0, 12}},
  };
  for (const Tl1Shape& shape : TL1_SHAPES) {
    const std::string pattern = shape.pattern, start = pattern.substr(1, pattern.find(shape.done) - 1);
    for (const auto& [done, total, expected] : values) {
      const std::string report = start + shape.done + done + shape.total + total;
      EXPECT_EQ(ReadTl1(report), expected) << report;
      EXPECT_EQ(ReadTl1("\r\n\"" + report), expected) << report;
    }
  }
}

TEST_F(Event, MissingTl1TotalKeepsTheOldTotal) {
  CVNPackGuageEvt event;
  EXPECT_FALSE(event.HandleTL1LReport("FILES_DONE=3,FILES_TOTAL="));
  EXPECT_EQ(event.m_dwDoneNum, 3U);
  EXPECT_EQ(event.m_dwTotalNum, 0U);
  EXPECT_TRUE(event.HandleTL1LReport("FILES_DONE=3,FILES_TOTAL=12"));
  EXPECT_TRUE(event.HandleTL1LReport("FILES_DONE=4,FILES_TOTAL="));
  EXPECT_EQ(event.GetGuage(), 33U);
}

TEST_F(Event, FirstMatchingTl1ShapeIsRead) {
  const CountsCase cases[] = {
      {"FILES_DONE=1,FILES_TOTAL=2,SLOTSDONE=3,SLOTSTTL=4", {true, 1, 2}},
      {"SLOTSDONE=3,SLOTSTTL=4,FILES_DONE=1,FILES_TOTAL=2", {true, 1, 2}},
      {"SLOTSDONE=3,SLOTSTTL=4,REPT EVT PROGRESS,TRANSFEREDFILES=5,TOTALNUM=6", {true, 5, 6}},
      {"REPT EVT PROGRESS,TRANSFEREDFILES=5,TOTALNUM=6,FILES_DONE=1,FILES_TOTAL=0", {false, 1, 0}},
      {"FILES_TOTAL=9,FILES_DONE=3,FILES_TOTAL=12", {true, 3, 9}},
      {"FILES_DONE=1,FILES_DONE=2,FILES_TOTAL=3,FILES_TOTAL=4", {true, 1, 3}},
      {"XFILES_DONE=3,XFILES_TOTAL=4", {true, 3, 4}},
  };
  for (const auto& [report, expected] : cases)
    EXPECT_EQ(ReadTl1(report), expected) << report;
}

TEST_F(Event, OtherTl1ReportsAreRefused) {
  for (const char* report :
       {"", "FILES_DONE=3", "FILES_TOTAL=12", "FILES_TOTAL=12,FILES_DONE=3", "files_done=3,files_total=12",
        "FILES_DONE:3,FILES_TOTAL:12", "TRANSFEREDFILES=5,TOTALNUM=6", "TRANSFEREDFILES=5,REPT EVT PROGRESS,TOTALNUM=6",
        "REPT EVT PROGRESS,TRANSFERREDFILES=5,TOTALNUM=6", "REPT EVT PROGRESS,TOTALNUM=6,TRANSFEREDFILES=5",
        "SLOTSTTL=4,SLOTSDONE=3", "SLOTSDONE=3,SLOTSTOTAL=4", "SLOTSDONE=3,SLOTSTTL"}) {
    EXPECT_EQ(ReadTl1(report), UNRECOGNISED) << report;
  }
}

TEST_F(Event, ScriptProgressShapes) {
  const CountsCase cases[] = {
      {"EVENT CAM RUN PROGRESS TOTAL_COMMANDS=12 3;", {true, 3, 12}},
      {"EVENTCAMRUNPROGRESSTOTAL_COMMANDS=12 3;", {true, 3, 12}},
      {"\xFF EVENT\xA0"
       "CAM\x80RUN PROGRESS TOTAL\x80\x81\x82\x83\x84\x85\x86\x87\x88\x89 12 3\xFF",
       {true, 3, 12}},
      {"TOTAL_COMMANDS=12 3; EVENT CAM RUN PROGRESS", {true, 3, 12}},
      {"EVENT CAM RUN PROGRESS TOTAL_COMMANDS=12 3; TOTAL_COMMANDS=9 8;", {true, 3, 12}},
      {"EVENT CAM RUN PROGRESS TOTAL=12 3;", UNRECOGNISED},
      {"EVENT CAM RUN PROGRESS total_commands=12 3;", UNRECOGNISED},
      {"EVENT CAM RUN PROGRESS", UNRECOGNISED},
      {"EVENT CAM RUN TOTAL_COMMANDS=12 3;", UNRECOGNISED},
      {"EVENT RUN CAM PROGRESS TOTAL_COMMANDS=12 3;", UNRECOGNISED},
      {"CAM RUN PROGRESS TOTAL_COMMANDS=12 3;", UNRECOGNISED},
      {"PROGRESS RUN CAM EVENT TOTAL_COMMANDS=12 3;", UNRECOGNISED},
      {"event cam run progress TOTAL_COMMANDS=12 3;", UNRECOGNISED},
      {"", UNRECOGNISED},
  };
  for (const auto& [report, expected] : cases)
    EXPECT_EQ(ReadScript(report), expected) << report;
}

TEST_F(Event, ScriptProgressThatEndsWithinTheColumnHeader) {
  for (size_t length = 5; length <= 15; ++length) {
    const std::string report = "EVENT CAM RUN PROGRESS " + std::string("TOTAL 3 4 5 6 7 8").substr(0, length);
    EXPECT_EQ(ReadScript(report), UNRECOGNISED) << length;
  }
  EXPECT_EQ(ReadScript("EVENT CAM RUN PROGRESS TOTAL_COMMANDS=7"), (Counts{false, OLD_DONE, 7}));
}

struct Percentage {
  unsigned int done, total, expected;
};

template <typename Progress>
unsigned int Percent(unsigned int done, unsigned int total) {
  Progress event;
  event.m_dwDoneNum = done;
  event.m_dwTotalNum = total;
  return event.GetGuage();
}

constexpr Percentage PERCENTAGES[] = {{0, 12, 0},
                                      {3, 12, 25},
                                      {1, 30, 3},
                                      {29, 30, 96},
                                      {12, 12, 100},
                                      {25, 12, 208},
                                      {42949672, 42949672, 100},
                                      {42949673, 42949673, 0},
                                      {42949673, 10, 0},
                                      {42949674, 10, 10},
                                      {LARGEST, LARGEST, 0},
                                      {LARGEST, 10, 429496719},
                                      {42949672, LARGEST, 0}};

TEST_F(Event, PackagePercentages) {
  for (const auto& [done, total, expected] : PERCENTAGES)
    EXPECT_EQ(Percent<CVNPackGuageEvt>(done, total), expected) << done << " of " << total;
  for (const auto& [done, total, expected] : {Percentage{0, 0, 0}, {5, 0, 0}, {1, 7, 14}, {9, 9, 100}, {0, 1, 0}})
    EXPECT_EQ(Percent<CVNPackGuageEvt>(done, total), expected) << done << " of " << total;
}

TEST_F(Event, ScriptPercentages) {
  for (const auto& [done, total, expected] : PERCENTAGES)
    EXPECT_EQ(Percent<CVNScriptFileGuageEvt>(done, total), expected) << done << " of " << total;
}

TEST_F(Event, ScriptsOfFewerThanTenCommandsCountAsComplete) {
  for (unsigned int total = 0; total < 10; ++total) {
    for (const unsigned int done : {0U, 1U, total, 1000U, LARGEST})
      EXPECT_EQ(Percent<CVNScriptFileGuageEvt>(done, total), 100U) << done << " of " << total;
  }
  EXPECT_EQ(Percent<CVNScriptFileGuageEvt>(1, 10), 10U);
  EXPECT_EQ(Percent<CVNScriptFileGuageEvt>(0, 10), 0U);
}

// Result of the handler, result, code, item, text.
using End = std::tuple<bool, std::string, unsigned int, std::string, std::string>;

const End END_UNRECOGNISED{false, "old", 77, "old item", "old text "};

End Members(bool result, const CVNScriptFileEndEvt& event) {
  return {result, event.m_strResult, event.m_dwResultCode, event.m_strResultItem, event.m_strResultText};
}

void SetOldMembers(CVNScriptFileEndEvt& event) {
  event.m_strResult = "old";
  event.m_dwResultCode = 77;
  event.m_strResultItem = "old item";
  event.m_strResultText = "old text ";
}

End ReadEnd(const std::string& report) {
  CVNScriptFileEndEvt event;
  SetOldMembers(event);
  const bool result = event.HandleMMLReport(ExactText(report));
  EXPECT_EQ(event.m_dwExtra, 0U);
  return Members(result, event);
}

struct EndCase {
  std::string behindRsp;
  End expected;
};

TEST_F(Event, SuccessSetsResultAndCode) {
  const auto success = [](const std::string& result, unsigned int code) {
    return End{true, result, code, "old item", "old text "};
  };
  const EndCase cases[] = {
      {" SUCCESS 5", success("SUCCESS", 5)},
      {"SUCCESS 5 more words", success("SUCCESS", 5)},
      {"\r\n\tSUCCESS\v\f 5\r\n;", success("SUCCESS", 5)},
      {"=SUCCESS 5", success("=SUCCESS", 5)},
      {" SUCCESS", success("SUCCESS", 77)},
      {" SUCCESS \r\n", success("SUCCESS", 77)},
      {" SUCCESS text 5", success("SUCCESS", 0)},
      {" SUCCESS 5x", success("SUCCESS", 5)},
      {" SUCCESS - 5", success("SUCCESS", 0)},
      {" SUCCESS -1", success("SUCCESS", LARGEST)},
      {" SUCCESS 4294967295", success("SUCCESS", LARGEST)},
      {" SUCCESS 4294967296", success("SUCCESS", LARGEST)},
      {" SUCCESS 18446744073709551617", success("SUCCESS", LARGEST)},
      {" OK 5 UNSUCCESSFUL", success("OK", 5)},
      {" FAIL 3 item text SUCCESS", success("FAIL", 3)},
      {" SUCCESS 3 item text FAIL", success("SUCCESS", 3)},
      {" \xFF\xA0SUCCESS\x80 5", success("\xFF\xA0SUCCESS\x80", 5)},
      {" SUCCESS\xA0"
       "5",
       success("SUCCESS\xA0"
               "5",
               77)},
  };
  for (const auto& [tail, expected] : cases)
    EXPECT_EQ(ReadEnd("EVENT CAM RUN END RSP" + tail), expected) << tail;
}

TEST_F(Event, FailureSetsResultCodeItemAndText) {
  const EndCase cases[] = {
      {" FAIL 12 CMD7 slot", {true, "FAIL", 12, "CMD7", "old text slot "}},
      {"FAIL 12 CMD7 bad slot number", {true, "FAIL", 12, "CMD7", "old text bad slot number "}},
      {"\r\n FAIL\t\t12\v\fCMD7  \n\n  bad\r\n slot ", {true, "FAIL", 12, "CMD7", "old text bad slot "}},
      {" FAILED code item text", {true, "FAILED", 0, "item", "old text text "}},
      {" FAIL 12x item text", {true, "FAIL", 12, "item", "old text text "}},
      {" FAIL -1 item text", {true, "FAIL", LARGEST, "item", "old text text "}},
      {" FAIL 4294967296 item text", {true, "FAIL", LARGEST, "item", "old text text "}},
      {" a 1 b FAIL", {true, "a", 1, "b", "old text FAIL "}},
      {" \x80 1 \xA0 \xFF FAIL", {true, "\x80", 1, "\xA0", "old text \xFF FAIL "}},
      {" x EVENT RSP FAIL 1", {true, "x", 0, "RSP", "old text FAIL 1 "}},
  };
  for (const auto& [tail, expected] : cases)
    EXPECT_EQ(ReadEnd("EVENT CAM RUN END RSP" + tail), expected) << tail;
}

TEST_F(Event, OtherEndReportsChangeNothing) {
  for (const char* report :
       {"EVENT CAM RUN END RSP FAIL", "EVENT CAM RUN END RSP FAIL 12", "EVENT CAM RUN END RSP FAIL 12 CMD7",
        "EVENT CAM RUN END RSP \t FAIL 12 CMD7 \r\n", "EVENT CAM RUN END RSP", "EVENT CAM RUN END RSP success 0",
        "EVENT CAM RUN END RSP fail 12 CMD7 text", "EVENT CAM RUN END RSP OK 12 CMD7 text",
        "SUCCESS FAIL EVENT CAM RUN END RSP a b c d", "EVENT CAM RUN END SUCCESS 0", "EVENT CAM RUN END rsp SUCCESS 0",
        "EVENT CAM RUN RSP SUCCESS 0", "EVENT RUN CAM END RSP SUCCESS 0", "CAM RUN END RSP SUCCESS 0",
        "END RUN CAM EVENT RSP SUCCESS 0", "event cam run end RSP SUCCESS 0", ""}) {
    EXPECT_EQ(ReadEnd(report), END_UNRECOGNISED) << report;
  }
}

TEST_F(Event, FieldsOfEndReportsAreAnyWords) {
  EXPECT_EQ(ReadEnd("EVENTCAMRUNENDRSPSUCCESS"), (End{true, "SUCCESS", 77, "old item", "old text "}));
  EXPECT_EQ(ReadEnd("RSP SUCCESS 4 EVENT CAM RUN END"), (End{true, "SUCCESS", 4, "old item", "old text "}));
}

TEST_F(Event, TextsOfTwoFailuresAreJoined) {
  CVNScriptFileEndEvt event;
  EXPECT_TRUE(event.HandleReport("EVENT CAM RUN END RSP FAIL 1 CMD1 first text"));
  EXPECT_TRUE(event.HandleReport("EVENT CAM RUN END RSP FAIL 2 CMD2 second"));
  EXPECT_EQ(Members(true, event), (End{true, "FAIL", 2, "CMD2", "first text second "}));
  EXPECT_TRUE(event.HandleReport("EVENT CAM RUN END RSP SUCCESS 0"));
  EXPECT_EQ(Members(true, event), (End{true, "SUCCESS", 0, "CMD2", "first text second "}));
}

void SetBaseMembers(CEvtMsg& event) {
  event.m_strEvtKey = "a key that is too long to be held in place\0X"s;
  event.m_dwUserData1 = 1;
  event.m_dwUserData2 = 2;
  event.m_dwNEID = LARGEST;
  event.m_cmd.SetMsg("ACT-USER:NE1");
  event.m_cmd.AddMsg("::7;");
}

void ExpectBaseMembers(CEvtMsg& event) {
  EXPECT_EQ(event.m_strEvtKey, "a key that is too long to be held in place\0X"s);
  EXPECT_EQ(event.m_dwUserData1, 1U);
  EXPECT_EQ(event.m_dwUserData2, 2U);
  EXPECT_EQ(event.m_dwNEID, LARGEST);
  EXPECT_STREQ(event.m_cmd.GetMsg(), "ACT-USER:NE1::7;");
  EXPECT_EQ(event.m_cmd.GetMsgLen(), 16U);
}

// A copy through the base class. It must have the class of the object, and outlives it.
template <typename Class>
std::unique_ptr<Class> DuplicateOf(std::unique_ptr<Class> event) {
  SetBaseMembers(*event);
  std::unique_ptr<CEvtMsg> copy(static_cast<CEvtMsg&>(*event).Duplicate());
  const CEvtMsg& copied = *copy;
  EXPECT_EQ(typeid(copied), typeid(Class));
  EXPECT_NE(copy.get(), event.get());
  EXPECT_NE(copy->m_cmd.GetMsg(), event->m_cmd.GetMsg());
  ExpectBaseMembers(*event);
  event->m_strEvtKey = "other";
  event->m_cmd.SetMsg("other");
  event.reset();
  ExpectBaseMembers(*copy);
  return std::unique_ptr<Class>(static_cast<Class*>(copy.release()));
}

TEST_F(Event, DuplicateOfTheBase) {
  DuplicateOf(std::make_unique<CEvtMsg>());
}

template <typename Progress>
void ExpectDuplicateOfProgress() {
  auto event = std::make_unique<Progress>();
  event->m_dwDoneNum = 3;
  event->m_dwTotalNum = 4;
  const auto copy = DuplicateOf(std::move(event));
  EXPECT_EQ(copy->m_dwDoneNum, 3U);
  EXPECT_EQ(copy->m_dwTotalNum, 4U);
}

TEST_F(Event, DuplicateOfProgress) {
  ExpectDuplicateOfProgress<CVNPackGuageEvt>();
  ExpectDuplicateOfProgress<CVNScriptFileGuageEvt>();
}

TEST_F(Event, DuplicateOfAnEnd) {
  auto event = std::make_unique<CVNScriptFileEndEvt>();
  event->m_strResult = "a result that is too long to be held in place";
  event->m_strResultItem = "item\0x"s;
  event->m_strResultText = "text ";
  event->m_dwResultCode = 5;
  event->m_dwExtra = 6;
  const auto copy = DuplicateOf(std::move(event));
  EXPECT_EQ(Members(true, *copy), (End{true, "a result that is too long to be held in place", 5, "item\0x"s, "text "}));
  EXPECT_EQ(copy->m_dwExtra, 6U);
}

TEST_F(Event, DuplicateCopiesTheCommandUpToItsFirstNul) {
  CEvtMsg event;
  event.m_cmd.SetMsg("A;\r\n");
  event.m_cmd.AddSnMML(7);
  const std::unique_ptr<CEvtMsg> copy(event.Duplicate());
  EXPECT_STREQ(copy->m_cmd.GetMsg(), "A;");
  EXPECT_EQ(copy->m_cmd.GetMsgLen(), 2U);
}

TEST_F(Event, DuplicateOfAFreshEventIsFresh) {
  CVNScriptFileEndEvt event;
  const std::unique_ptr<CEvtMsg> copy(event.Duplicate());
  ExpectDefaults(*copy);
}

TEST_F(Event, NothingIsAllocatedForUnrecognisedReports) {
  const ExactText report("REPT EVT EQPT " + std::string(1000, 'x') + " TOTAL_NUM done= FILES_DONE= RSP SUCCESS TOTAL");
  CEvtMsg literal, pattern;
  literal.m_strEvtKey = "a key that is too long to be held in place";
  pattern.m_strEvtKey = "*a pattern * that is too long to be held in place*";
  CVNPackGuageEvt mml, tl1;
  tl1.m_dwNEID = FIRST_TL1_NE;
  CVNScriptFileGuageEvt progress;
  CVNScriptFileEndEvt end;

  const AllocationGuard guard;
  EXPECT_FALSE(literal.IsMyEvt(report));
  EXPECT_FALSE(pattern.IsMyEvt(report));
  EXPECT_FALSE(mml.HandleReport(report));
  EXPECT_FALSE(tl1.HandleReport(report));
  EXPECT_FALSE(progress.HandleReport(report));
  EXPECT_FALSE(end.HandleReport(report));
  EXPECT_EQ(guard.Count(), 0U);
}

TEST_F(Event, Tl1CountsMayHaveManyDigits) {
  const std::string zeros(40, '0');
  const ExactText report("REPT EVT PROGRESS TRANSFEREDFILES=" + zeros + "3,TOTALNUM=" + zeros + "12,");
  CVNPackGuageEvt event;
  EXPECT_TRUE(event.HandleTL1LReport(report));
  EXPECT_EQ(event.m_dwDoneNum, 3U);
  EXPECT_EQ(event.m_dwTotalNum, 12U);
}

TEST_F(Event, AllocationFailuresLeaveTheEndAsItWas) {
  const std::string word(40, 'w');
  for (const std::string& tail : {"SUCCESS" + word + " 5 " + word, "FAIL" + word + " 5 " + word + ' ' + word}) {
    const ExactText report("EVENT CAM RUN END RSP " + tail);
    CVNScriptFileEndEvt event;
    SetOldMembers(event);
    const size_t live = LiveAllocations();
    const auto unchanged = [&] {
      EXPECT_EQ(Members(false, event), END_UNRECOGNISED);
      EXPECT_EQ(LiveAllocations(), live);
    };
    EXPECT_GE(FailEachAllocation([&] { EXPECT_TRUE(event.HandleMMLReport(report)); }, unchanged), 2U);
    EXPECT_EQ(event.m_dwResultCode, 5U);
  }
}

template <typename Class>
void ExpectDuplicateToSurviveAllocationFailures() {
  Class event;
  SetBaseMembers(event);
  event.m_cmd.GetMsg();
  const size_t live = LiveAllocations();
  const auto unchanged = [&] {
    EXPECT_EQ(LiveAllocations(), live);
    ExpectBaseMembers(event);
  };
  EXPECT_GE(FailEachAllocation([&] { delete event.Duplicate(); }, unchanged), 3U) << "object, key, command";
  unchanged();
}

TEST_F(Event, AllocationFailuresOfDuplicateLeakNothing) {
  ExpectDuplicateToSurviveAllocationFailures<CEvtMsg>();
  ExpectDuplicateToSurviveAllocationFailures<CVNPackGuageEvt>();
  ExpectDuplicateToSurviveAllocationFailures<CVNScriptFileGuageEvt>();
  ExpectDuplicateToSurviveAllocationFailures<CVNScriptFileEndEvt>();
}

class HugeReports : public Event {
 protected:
  static constexpr size_t SMALL = 131072;

  // Passes a report of megabytes, made of a repeated unit, to every handler.
  void ExpectLinear(const std::string& start, const std::string& unit, const std::string& end) {
    const auto prepare = [&](size_t size) { return start + Repeated(unit, size / unit.size()) + end; };
    EXPECT_LT(Growth(SMALL, prepare, OfferToAll), LINEAR_GROWTH) << start << unit << end;
  }

 private:
  static void OfferToAll(const std::string& report) {
    CVNPackGuageEvt package;
    package.m_strEvtKey = "*EVT*PROGRESS*NUM";
    package.IsMyEvt(report.c_str());
    package.HandleMMLReport(report.c_str());
    package.HandleTL1LReport(report.c_str());
    CVNScriptFileGuageEvt().HandleMMLReport(report.c_str());
    CVNScriptFileEndEvt().HandleMMLReport(report.c_str());
  }
};

TEST_F(HugeReports, AlmostRecognisedShapes) {
  ExpectLinear("", "EVT_SFTM_CPYFILE_PROGRESS DONE_NUM TOTAL_NU", "");
  ExpectLinear("", "status=completed done=", "");
  ExpectLinear("", "FILES_DONE=1,SLOTSDONE=1,", "");
  ExpectLinear("", "EVENT CAM RUN ", "");
}

TEST_F(HugeReports, NumbersAndBlanks) {
  ExpectLinear("EVT_SFTM_CPYFILE_PROGRESS DONE_NUM TOTAL_NUM", " ", "5 6 x");
  ExpectLinear("EVT_SFTM_CPYFILE_PROGRESS DONE_NUM TOTAL_NUM", "9", " 6 x");
  ExpectLinear("status=completed done=1 total=", "0", "5");
  ExpectLinear("FILES_DONE=1,FILES_TOTAL=", "0", "5");
  ExpectLinear("EVENT CAM RUN PROGRESS TOTAL_COMMANDS=", "\r\n", "5 6 x");
}

TEST_F(HugeReports, Words) {
  ExpectLinear("EVENT CAM RUN END RSP SUCCESS 5 ", "and more words ", "");
  ExpectLinear("EVENT CAM RUN END RSP FAIL 5 ", "and more words ", "");
  ExpectLinear("EVENT CAM RUN END RSP ", " \r\n", "FAIL 5 item text");
}

TEST_F(HugeReports, AreReadToTheirEnd) {
  const std::string blanks(10485760, ' ');
  EXPECT_EQ(ReadMml(blanks + "status=completed" + blanks + "done=5" + blanks + "total=6"), (Counts{true, 5, 6}));
  EXPECT_EQ(ReadTl1(blanks + "FILES_DONE=5," + blanks + "FILES_TOTAL=6" + blanks), (Counts{true, 5, 6}));
  EXPECT_EQ(ReadScript("EVENT CAM RUN PROGRESS TOTAL_COMMANDS=" + blanks + "6" + blanks + "5" + blanks + "x"),
            (Counts{true, 5, 6}));
  const std::string word(10485760, 'w');
  EXPECT_EQ(ReadEnd("EVENT CAM RUN END RSP FAIL 5 item " + word),
            (End{true, "FAIL", 5, "item", "old text " + word + ' '}));
}

TEST_F(Event, NumbersDoNotDependOnTheLocaleOfTheProgram) {
  ASSERT_NE(std::setlocale(LC_ALL, "C.utf8"), nullptr);
  const GroupingLocale locale;
  unsigned int read = 0;
  std::stringstream("1.234") >> read;
  EXPECT_EQ(read, 1234U) << "a stream does follow it";
  EXPECT_EQ(ReadMml("EVT_SFTM_CPYFILE_PROGRESS DONE_NUM TOTAL_NUM 1234 5.678 x"), (Counts{true, 1234, 5}));
  EXPECT_EQ(ReadMml("status=completed done=1.234 total=5.678"), (Counts{true, 1, 5}));
  EXPECT_EQ(ReadTl1("FILES_DONE=1.234,FILES_TOTAL=5.678"), (Counts{true, 1, 5}));
  EXPECT_EQ(ReadScript("EVENT CAM RUN PROGRESS TOTAL_COMMANDS=1234 5.678 x"), (Counts{true, 5, 1234}));
  EXPECT_EQ(ReadEnd("EVENT CAM RUN END RSP SUCCESS 1.234"), (End{true, "SUCCESS", 1, "old item", "old text "}));
  EXPECT_EQ(ReadEnd("EVENT CAM RUN END RSP FAIL 1.234 a b"), (End{true, "FAIL", 1, "a", "old text b "}));
  std::setlocale(LC_ALL, "C");
}

}  // namespace
}  // namespace VARNEL_TEST
