// Behaviours in docs/pitfalls.md that the tests of the modules do not cover.

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <type_traits>

#include "allocation.h"
#include "cmdstr.h"
#include "comnemsg.h"
#include "evtmsg.h"
#include "publicdata.h"
#include "recording_test.h"
#include "str.h"
#include "tl1nemsgparse.h"
#include "zepv2data.h"

namespace VARNEL_TEST {
namespace {

using namespace VARNEL_COMMON;

class Pitfall : public RecordingTest {};

TEST_F(Pitfall, CommandsCannotBeAssignedFromConstantsAndTemporaries) {
  static_assert(std::is_assignable_v<CCmdStr&, CCmdStr&>);
  static_assert(!std::is_assignable_v<CCmdStr&, const CCmdStr&> && !std::is_assignable_v<CCmdStr&, CCmdStr>);
  static_assert(std::is_constructible_v<CCmdStr, const CCmdStr&>);
}

TEST_F(Pitfall, EveryReaderOfAnExtendedCommandMovesItsText) {
  CCmdStr command;
  command.SetMsg("A");
  const char* before = command.GetMsg();
  command.AddMsg("B");
  EXPECT_EQ(command.GetMsg() == before, false) << "the old text was still there while the new one was made";

  before = command.GetMsg();
  command.AddMsg("C");
  const CCmdStr copy(command);
  EXPECT_EQ(command.GetMsg() == before, false);

  before = command.GetMsg();
  command.AddMsg("D");
  EXPECT_EQ(command.AddSnMML(1), 0);
  EXPECT_EQ(command.GetMsg() == before, false);

  CEvtMsg event;
  event.m_cmd.SetMsg("A");
  before = event.m_cmd.GetMsg();
  event.m_cmd.AddMsg("B");
  const std::unique_ptr<CEvtMsg> duplicate(event.Duplicate());
  EXPECT_EQ(event.m_cmd.GetMsg() == before, false);
}

TEST_F(Pitfall, BufferOfTheSizeOfABodyIsTooSmallForIt) {
  const std::string body(2000, 'x');
  CComNEMsg message(0);
  message.SetBufLen(2000);
  EXPECT_EQ(message.m_nMsgBufSize, 2000U);
  message.SetMsg(body.data(), 1999);
  EXPECT_EQ(message.m_nMsgBufSize, 2000U);
  message.SetMsg(body.data(), 2000);
  EXPECT_EQ(message.m_nMsgBufSize, 3024U);
}

TEST_F(Pitfall, NetOrderConvertsTheLengthOfAMessageToo) {
  CComNEMsg message(0);
  message.SetMsg("bodies", 5);
  CComNEHead head = message;
  head.ToNetOrder();
  EXPECT_EQ(message.usMsgLen, 5);
  message.ToNetOrder();
  const unsigned char wire[] = {0, 5};
  EXPECT_EQ(std::memcmp(&message.usMsgLen, wire, sizeof wire), 0);
  EXPECT_EQ(std::memcmp(&head.usMsgLen, wire, sizeof wire), 0);
  message.ToHostOrder();
  EXPECT_EQ(message.usMsgLen, 5);
}

TEST_F(Pitfall, MessagesAreFreedUnwiped) {
  const FreedTextWatch watch("SEKRIT");
  {
    CComNEMsg message(16);
    message.SetMsg("PWD=SEKRIT", 10);
    message.SetBufLen(32);
    EXPECT_EQ(watch.Found(), 1U);
  }
  EXPECT_EQ(watch.Found(), 2U);
}

TEST_F(Pitfall, MessagesCannotBeCopiedFromTemporaries) {
  static_assert(!std::is_constructible_v<CComNEMsg, CComNEMsg> && !std::is_assignable_v<CComNEMsg&, CComNEMsg>);
}

TEST_F(Pitfall, ReplacingByATextThatContainsTheOldOneNeedsTwoSteps) {
  std::string text = "one\ntwo";
  ReplaceString(text, "\n", "\r\n");
  EXPECT_EQ(text, "one\ntwo");
  ReplaceString(text, "\n", "\x01");
  ReplaceString(text, "\x01", "\r\n");
  EXPECT_EQ(text, "one\r\ntwo");
}

TEST_F(Pitfall, QuotedAttributesLoseOrKeepTheirQuotes) {
  std::string value;
  EXPECT_TRUE(GetTL1AttrbuteString("NAME=\"x\"", "NAME=", value));
  EXPECT_EQ(value, "");
  EXPECT_TRUE(GetTL1AttrbuteString("NAME=\"x,y\",Z=1", "NAME=", value));
  EXPECT_EQ(value, "\"x");
  EXPECT_TRUE(GetTL1AttrbuteString("SUBTOTAL=1:TOTAL=2", "TOTAL=", value));
  EXPECT_EQ(value, "1:TOTAL=2");
  EXPECT_TRUE(GetTL1AttrbuteString("SUBTOTAL=1:TOTAL=2", ":TOTAL=", value));
  EXPECT_EQ(value, "2");
}

TEST_F(Pitfall, DigitIsReadAsACharacter) {
  char digit = '\0';
  ConvertFromString("7", digit);
  EXPECT_EQ(int{digit}, 55);
}

TEST_F(Pitfall, VerifiedPathsMayPointAnywhere) {
  EXPECT_TRUE(VerifyFilePathAndName("/etc/passwd"));
  EXPECT_FALSE(VerifyFilePathAndName("file..txt"));
  EXPECT_EQ(ToAbsPath("/tmp/../etc"), ToAbsPath("/etc"));
}

TEST_F(Pitfall, KeyClaimsReportsThatContinueAfterIt) {
  CEvtMsg event;
  event.m_strEvtKey = "EVT 1";
  EXPECT_TRUE(event.IsMyEvt("EVT 12 DONE"));
  event.m_strEvtKey = "EVT 1 ";
  EXPECT_FALSE(event.IsMyEvt("EVT 12 DONE"));
  EXPECT_TRUE(event.IsMyEvt("EVT 1 DONE"));
}

TEST_F(Pitfall, DefaultElementSpeaksMml) {
  CVNPackGuageEvt event;
  EXPECT_FALSE(event.HandleReport("FILES_DONE=3,FILES_TOTAL=12,"));
  event.m_dwNEID = 0x1000000;
  EXPECT_TRUE(event.HandleReport("FILES_DONE=3,FILES_TOTAL=12,"));
}

TEST_F(Pitfall, PromptsAndEventsHaveOneType) {
  CTL1NEMsgParse prompt("\r\n>");
  CTL1NEMsgParse event("\r\n\n   NE1 24-01-02 10:11:12\r\nA  5 REPT ALM\r\n   \"M\"\r\n;");
  ASSERT_TRUE(prompt.NEMsgParse());
  ASSERT_TRUE(event.NEMsgParse());
  EXPECT_EQ(prompt.GetNEMsgType(), event.GetNEMsgType());
  EXPECT_EQ(prompt.m_strVerb, "");
  EXPECT_EQ(event.m_strVerb, "REPT ALM");
  EXPECT_EQ(event.m_strAtag, " 5");
  EXPECT_EQ(event.GetCtage(), "");
}

TEST_F(Pitfall, FileWithoutASizeHasNoLines) {
  Vnifstream file("/proc/self/status");
  char line[256];
  EXPECT_FALSE(file.GetLine(line, sizeof line));
}

TEST_F(Pitfall, ChecksumDoesNotDetectExchangedBytes) {
  EXPECT_EQ(GetUCCheckSum("abcd", 4), GetUCCheckSum("dcba", 4));
}

TEST_F(Pitfall, HexadecimalSlotsAreReadAsOtherSlots) {
  EXPECT_EQ(WSlotIDi2Hexstr(0x0010), "10");
  EXPECT_EQ(WSlotIDstr2i("10"), 10);
}

TEST_F(Pitfall, SlotsAbove255BecomeOtherSlots) {
  EXPECT_EQ(WSlotIDi2str(WSlotIDstr2i("3-300")), "4-44");
  EXPECT_EQ(WSlotIDi2str(WSlotIDstr2i("256-1")), "1");
  EXPECT_EQ(WSlotIDi2str(WSlotIDstr2i("-5")), "251-0");
  EXPECT_EQ(convertSlotDC("30000"), 300U << 8);
}

TEST_F(Pitfall, NeSlotIdsAreNotComputedFromWords) {
  EXPECT_EQ(GetNESlotID(305), unsigned{'3'} << 5 | '0');
  EXPECT_EQ(GetNESlotID(0x0305), unsigned{'7'} << 5 | '7') << "773";
}

TEST_F(Pitfall, SlotCutAtTheColonIsReadCorrectly) {
  unsigned short shelf = 0;
  unsigned short slot = 0;
  EXPECT_TRUE(ParseTL1SlotID("SLOT-5:ABC-DEF", shelf, slot));
  EXPECT_EQ(shelf, 5);
  shelf = slot = 0;
  EXPECT_TRUE(ParseTL1SlotID("SLOT-5", shelf, slot));
  EXPECT_EQ(shelf, 0);
  EXPECT_EQ(slot, 5);
}

TEST_F(Pitfall, SomeBoardNamesMatchAnywhere) {
  EXPECT_TRUE(IsSccBdName("x-SCC-9"));
  EXPECT_TRUE(IsSccBdName("vcu"));
  EXPECT_FALSE(IsSccBdName("vcu9"));
}

}  // namespace
}  // namespace VARNEL_TEST
