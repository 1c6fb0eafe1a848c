// The binary interface of programs that are already built: offsets and types of members, sizes of classes, the order of
// virtual operations, result types. For the headers of software files see zep_head_layout_test.cpp.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <list>
#include <string>
#include <type_traits>
#include <vector>

#include "platform/log_process.h"
#include "private_access.h"
#include "varnel_common.h"

namespace VARNEL_TEST {
namespace {

using namespace VARNEL_COMMON;

VARNEL_PRIVATE_MEMBER(CommandBuffer, CCmdStr, m_pCmdBuf, char*)
VARNEL_PRIVATE_MEMBER(CommandPieces, CCmdStr, m_lstAddBuf, std::vector<CmdStrPiece>)
VARNEL_PRIVATE_MEMBER(CommandLength, CCmdStr, m_nBufLen, unsigned int)
VARNEL_PRIVATE_MEMBER(LineBuffer, Vnifstream, m_pBuffer, char*)
VARNEL_PRIVATE_MEMBER(LineBufferSize, Vnifstream, m_uiSize, unsigned int)
VARNEL_PRIVATE_MEMBER(LinePosition, Vnifstream, m_uiPos, unsigned int)

constexpr size_t POINTER = sizeof(void*);

using Sizes = std::vector<size_t>;

// Offsets of members of one type, found in an object, which needs no standard layout.
template <typename Type, typename Class, typename... Types>
Sizes Offsets(const Class& object, Types Class::*... members) {
  static_assert((std::is_same_v<Type, Types> && ...));
  const auto* start = reinterpret_cast<const char*>(&object);
  return {static_cast<size_t>(reinterpret_cast<const char*>(&(object.*members)) - start)...};
}

TEST(Layout, MessageHeaderIsSixteenBytesWithoutGaps) {
  using Head = CComNEHead;
  const Head head;
  EXPECT_EQ(sizeof(Head), 16U);
  EXPECT_EQ(Offsets<uint32_t>(head, &Head::ulHeadWord0, &Head::ulHeadWord1, &Head::ulHeadWord2), (Sizes{0, 4, 12}));
  EXPECT_EQ(Offsets<uint16_t>(head, &Head::usHeadShort, &Head::usMsgLen), (Sizes{8, 10}));
}

TEST(Layout, MessageIsItsHeaderThenBufferAndSize) {
  CComNEMsg message(0);
  const auto* head = static_cast<const CComNEHead*>(&message);
  EXPECT_EQ(static_cast<const void*>(head), static_cast<const void*>(&message));
  EXPECT_EQ(Offsets<char*>(message, &CComNEMsg::m_pMsg), (Sizes{16}));
  EXPECT_EQ(Offsets<unsigned int>(message, &CComNEMsg::m_nMsgBufSize), (Sizes{16 + POINTER}));
  EXPECT_EQ(sizeof(CComNEMsg), 16 + 2 * POINTER);
}

TEST(Layout, CommandTextIsBufferPiecesAndLength) {
  const CCmdStr text;
  const size_t list = sizeof(std::vector<CmdStrPiece>);
  EXPECT_EQ(Offsets<char*>(text, CommandBuffer()), (Sizes{0}));
  EXPECT_EQ(Offsets<std::vector<CmdStrPiece>>(text, CommandPieces()), (Sizes{POINTER}));
  EXPECT_EQ(Offsets<unsigned int>(text, CommandLength()), (Sizes{POINTER + list}));
  EXPECT_EQ(sizeof(CCmdStr), POINTER + list + 2 * sizeof(unsigned int));
  EXPECT_EQ(Offsets<char*>(CmdStrPiece(), &CmdStrPiece::pData), (Sizes{0}));
  EXPECT_EQ(Offsets<unsigned int>(CmdStrPiece(), &CmdStrPiece::nLen), (Sizes{POINTER}));
  EXPECT_EQ(sizeof(CmdStrPiece), POINTER + 2 * sizeof(unsigned int));
}

// The members of CEvtMsg, after the pointer to its virtual operations.
constexpr size_t KEY = POINTER;
constexpr size_t WORDS = KEY + sizeof(std::string);
constexpr size_t COMMAND = (WORDS + 3 * sizeof(uint32_t) + POINTER - 1) / POINTER * POINTER;
constexpr size_t EVENT = COMMAND + sizeof(CCmdStr);

TEST(Layout, EventIsKeyUserDataElementAndCommand) {
  const CEvtMsg event;
  EXPECT_EQ(Offsets<std::string>(event, &CEvtMsg::m_strEvtKey), (Sizes{KEY}));
  EXPECT_EQ(Offsets<unsigned int>(event, &CEvtMsg::m_dwUserData1, &CEvtMsg::m_dwUserData2, &CEvtMsg::m_dwNEID),
            (Sizes{WORDS, WORDS + 4, WORDS + 8}));
  EXPECT_EQ(Offsets<CCmdStr>(event, &CEvtMsg::m_cmd), (Sizes{COMMAND}));
  EXPECT_EQ(sizeof(CEvtMsg), EVENT);
}

template <typename Event>
void ExpectDoneThenTotal() {
  const Event event;
  EXPECT_EQ(Offsets<unsigned int>(event, &Event::m_dwDoneNum, &Event::m_dwTotalNum), (Sizes{EVENT, EVENT + 4}));
  EXPECT_EQ(sizeof(Event), EVENT + 8);
  EXPECT_EQ(static_cast<const void*>(static_cast<const CEvtMsg*>(&event)), static_cast<const void*>(&event));
}

TEST(Layout, ProgressEventsAddDoneAndTotal) {
  ExpectDoneThenTotal<CVNPackGuageEvt>();
  ExpectDoneThenTotal<CVNScriptFileGuageEvt>();
}

TEST(Layout, EndEventAddsResultItemTextCodeAndExtra) {
  using Event = CVNScriptFileEndEvt;
  const Event event;
  const size_t text = sizeof(std::string);
  EXPECT_EQ(Offsets<std::string>(event, &Event::m_strResult, &Event::m_strResultItem, &Event::m_strResultText),
            (Sizes{EVENT, EVENT + text, EVENT + 2 * text}));
  EXPECT_EQ(Offsets<unsigned int>(event, &Event::m_dwResultCode, &Event::m_dwExtra),
            (Sizes{EVENT + 3 * text, EVENT + 3 * text + 4}));
  EXPECT_EQ(sizeof(Event), EVENT + 3 * text + 8);
}

TEST(Layout, Tl1ParserIsElevenTextsTypeAndPosition) {
  using Parser = CTL1NEMsgParse;
  const Parser parser("");
  Sizes expected;
  for (size_t i = 0; i < 11; ++i)
    expected.push_back(i * sizeof(std::string));
  EXPECT_EQ(Offsets<std::string>(parser, &Parser::m_strNEMsg, &Parser::m_strSID, &Parser::m_strDate, &Parser::m_strTime,
                                 &Parser::m_strEcho, &Parser::m_strRspLine, &Parser::m_strTextBlock, &Parser::m_strVerb,
                                 &Parser::m_strRetRspCode, &Parser::m_strCtag, &Parser::m_strAtag),
            expected);
  const size_t texts = 11 * sizeof(std::string);
  EXPECT_EQ(Offsets<int>(parser, &Parser::m_nMsgType), (Sizes{texts}));
  EXPECT_EQ(Offsets<unsigned int>(parser, &Parser::m_nMsgStartPos), (Sizes{texts + 4}));
  EXPECT_EQ(sizeof(Parser), texts + 8);
}

TEST(Layout, LineReaderIsBufferSizeAndPosition) {
  const Vnifstream reader("");
  EXPECT_EQ(Offsets<char*>(reader, LineBuffer()), (Sizes{0}));
  EXPECT_EQ(Offsets<unsigned int>(reader, LineBufferSize(), LinePosition()), (Sizes{POINTER, POINTER + 4}));
  EXPECT_EQ(sizeof(Vnifstream), POINTER + 8);
}

TEST(Layout, ConstructorsOfOneArgumentConvert) {
  const std::string text = "absent";
  const CComNEMsg message = 100U;
  const CTL1NEMsgParse parser = text;
  const Vnifstream reader = text;
  const CPkgFile package = text;
  EXPECT_EQ(message.m_nMsgBufSize, 100U);
  EXPECT_EQ(parser.m_strNEMsg, text);
  EXPECT_EQ(reader.*LineBuffer(), nullptr);
  EXPECT_EQ(package.m_strFilePath, text);
}

TEST(Layout, SoftwareEntryIsTwoTextsAndANumber) {
  const SOFT_INFO entry;
  const size_t text = sizeof(std::string);
  EXPECT_EQ(Offsets<std::string>(entry, &SOFT_INFO::strColumn1, &SOFT_INFO::strColumn2), (Sizes{0, text}));
  EXPECT_EQ(Offsets<unsigned int>(entry, &SOFT_INFO::uiColumn5), (Sizes{2 * text}));
  EXPECT_EQ(sizeof(SOFT_INFO), 2 * text + POINTER);
}

TEST(Layout, PackageIsPathExtraVersionAndEntries) {
  const CPkgFile package("");
  const size_t text = sizeof(std::string);
  EXPECT_EQ(Offsets<std::string>(package, &CPkgFile::m_strFilePath, &CPkgFile::m_strExtra, &CPkgFile::m_strVersion),
            (Sizes{POINTER, POINTER + text, POINTER + 2 * text}));
  EXPECT_EQ(Offsets<std::list<SOFT_INFO*>>(package, &CPkgFile::m_lstSoftInfo), (Sizes{POINTER + 3 * text}));
  EXPECT_EQ(sizeof(CPkgFile), POINTER + 3 * text + sizeof(std::list<SOFT_INFO*>));
}

TEST(Layout, LogLevelAndLocation) {
  EXPECT_TRUE((std::is_same_v<std::underlying_type_t<EN_LOG_LEVEL>, int>));
  EXPECT_EQ(EN_LOG_LEVEL_WARNING, 3);
  EXPECT_EQ(EN_LOG_LEVEL_ERROR, 5);
  EXPECT_EQ(sizeof(LocationInfo), 3 * POINTER);
}

template <typename>
struct ResultOf;
template <typename Result, typename... Arguments>
struct ResultOf<Result (*)(Arguments...)> {
  using Type = Result;
};
template <typename Result, typename Class, typename... Arguments>
struct ResultOf<Result (Class::*)(Arguments...)> {
  using Type = Result;
};
template <typename Result, typename Class, typename... Arguments>
struct ResultOf<Result (Class::*)(Arguments...) const> {
  using Type = Result;
};

template <typename Result, typename... Functions>
constexpr bool AllReturn(Functions...) {
  return (std::is_same_v<Result, typename ResultOf<Functions>::Type> && ...);
}

struct DerivedEvent : CEvtMsg {
  using CEvtMsg::CopyMembersTo;
};

// The symbol of a function names its parameters but not its result.
static_assert(AllReturn<void>(StrTrimLeft, StrTrimRight, StrTrim, StrCollapse, toUpperCase, freeArray, ReplaceString,
                              SplitStringByChar, SplitFilePathAndFileName, GetFileLeftNameAndExName,
                              &ZEP_DIR_HEAD::ToHostOrder, &ZEP_FILE_HEAD::ToHostOrder, &CComNEHead::ToHostOrder,
                              &CComNEHead::ToNetOrder, &CComNEMsg::EmptyMsg, &CComNEMsg::SetMsg, &CComNEMsg::SetBufLen,
                              &CComNEMsg::AddMsg, &CCmdStr::SetMsg, &CCmdStr::AddMsg, &CCmdStr::EmptyMsg,
                              &CPkgFile::ClearSoftInfo, &CTL1NEMsgParse::InitAllPrivate, &DerivedEvent::CopyMembersTo));
static_assert(AllReturn<bool>(GetTL1AttrbuteString, VerifyFilePathAndName, IsTimerReach, ParseTL1SlotID, ParseMMLSlotID,
                              isColdPatch, IsTL1NeID, IsKorvaneNE, IsSccBdName, IsZepv2, IsZep08, IsExistShelfID,
                              &CEvtMsg::IsMyEvt, &CEvtMsg::HandleReport, &CVNPackGuageEvt::HandleReport,
                              &CVNScriptFileGuageEvt::HandleReport, &CVNScriptFileEndEvt::HandleReport,
                              &CVNPackGuageEvt::HandleMMLReport, &CVNPackGuageEvt::HandleTL1LReport,
                              &CVNScriptFileGuageEvt::HandleMMLReport, &CVNScriptFileEndEvt::HandleMMLReport,
                              &CTL1NEMsgParse::NEMsgParse, &CTL1NEMsgParse::ParseMsgEndFlg, &Vnifstream::ReadFile,
                              &Vnifstream::GetLine));
static_assert(AllReturn<int>(strmcmp, strmcmpnocase, VNRemoveFile, VNRemoveDir, &CTL1NEMsgParse::GetNEMsgType,
                             &CCmdStr::AddSnMML));
static_assert(AllReturn<unsigned int>(
    GetUCCheckSum, readZEPFileHead, GetNESlotID, HexStr2Int, convertSlotDC, &CPkgFile::ParsePkgFile,
    &CPkgFile::ParsePkgSoftInfo, &CCmdStr::GetMsgLen, &CVNPackGuageEvt::GetGuage, &CVNScriptFileGuageEvt::GetGuage,
    &CTL1NEMsgParse::GetMsgStartPos,
    static_cast<unsigned int (*)(const std::string&, int&, std::string&, std::string&)>(CheckZEPFileHead),
    static_cast<unsigned int (*)(const std::string&, unsigned int&, unsigned int&, std::string&, unsigned short&,
                                 std::string&)>(CheckZEPFileHead)));
static_assert(AllReturn<std::string>(replaceEnterWithBlank, ToAbsPath, GetCurDateFormated, GetCurTimeFormated,
                                     MakeTimeFormated, WSlotIDi2str, WSlotIDi2Hexstr, convertSlot2strDC,
                                     &CTL1NEMsgParse::GetRetRspCode, &CTL1NEMsgParse::GetCtage, &CTL1NEMsgParse::GetSID,
                                     &CTL1NEMsgParse::GetTextBlock));
static_assert(AllReturn<unsigned short>(WSlotIDstr2i));
static_assert(AllReturn<double>(GetCurTimeMilSec));
static_assert(AllReturn<const char*>(&CCmdStr::GetMsg));
static_assert(AllReturn<CEvtMsg*>(&CEvtMsg::Duplicate, &CVNPackGuageEvt::Duplicate, &CVNScriptFileGuageEvt::Duplicate,
                                  &CVNScriptFileEndEvt::Duplicate));
static_assert(AllReturn<CCmdStr&>(&CCmdStr::operator=));
static_assert(AllReturn<CComNEHead&>(&CComNEHead::operator=));
static_assert(AllReturn<CComNEMsg&>(&CComNEMsg::operator=));
static_assert(AllReturn<Vnifstream&>(&Vnifstream::operator=));

#ifdef __x86_64__
// A pointer to a virtual operation contains the offset of its slot in the table, plus one.
template <typename Member>
size_t SlotOf(Member member) {
  ptrdiff_t encoded = 0;
  std::memcpy(&encoded, &member, sizeof encoded);
  return static_cast<size_t>(encoded - 1) / POINTER;
}

// Its operation has the first slot after those of the base class.
template <typename Base>
struct Extended : Base {
  using Base::Base;
  virtual void Added() {}
};

// The destructor has two slots: one destroys, one deletes.
template <typename Event>
Sizes EventSlots() {
  return {SlotOf(&Event::IsMyEvt), SlotOf(&Event::HandleReport), SlotOf(&Event::Duplicate),
          SlotOf(&Extended<Event>::Added)};
}

TEST(Layout, EventOperationsFollowTheDestructorInOrder) {
  const Sizes slots{2, 3, 4, 5};
  EXPECT_EQ(EventSlots<CEvtMsg>(), slots);
  EXPECT_EQ(EventSlots<CVNPackGuageEvt>(), slots);
  EXPECT_EQ(EventSlots<CVNScriptFileGuageEvt>(), slots);
  EXPECT_EQ(EventSlots<CVNScriptFileEndEvt>(), slots);
}

TEST(Layout, PackageHasOnlyAVirtualDestructor) {
  EXPECT_EQ(SlotOf(&Extended<CPkgFile>::Added), 2U);
}
#endif

}  // namespace
}  // namespace VARNEL_TEST
