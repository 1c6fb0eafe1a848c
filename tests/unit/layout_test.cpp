// What programs built against the headers rely on: where members stand, which classes have virtual operations, and in
// which order. The heads of software files have zep_head_layout_test.cpp.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <list>
#include <new>
#include <string>
#include <type_traits>
#include <vector>

#include "allocation.h"
#include "private_access.h"
#include "varnel_common.h"

namespace VARNEL_TEST {
namespace {

using namespace VARNEL_COMMON;
using namespace std::string_literals;

VARNEL_PRIVATE_MEMBER(CommandBuffer, CCmdStr, m_pCmdBuf, char*)
VARNEL_PRIVATE_MEMBER(CommandPieces, CCmdStr, m_lstAddBuf, std::vector<CmdStrPiece>)
VARNEL_PRIVATE_MEMBER(CommandLength, CCmdStr, m_nBufLen, unsigned int)
VARNEL_PRIVATE_MEMBER(LineBuffer, Vnifstream, m_pBuffer, char*)
VARNEL_PRIVATE_MEMBER(LineBufferSize, Vnifstream, m_uiSize, unsigned int)
VARNEL_PRIVATE_MEMBER(LinePosition, Vnifstream, m_uiPos, unsigned int)

constexpr size_t POINTER = sizeof(void*);

// Offsets of members as they are found in an object, which needs no standard layout.
template <typename Class, typename... Types>
std::vector<size_t> Offsets(const Class& object, Types Class::*... members) {
  const auto* start = reinterpret_cast<const char*>(&object);
  return {static_cast<size_t>(reinterpret_cast<const char*>(&(object.*members)) - start)...};
}

using Sizes = std::vector<size_t>;

TEST(Layout, OnlyEventsAndPackagesHaveVirtualOperations) {
  EXPECT_TRUE(std::is_polymorphic_v<CEvtMsg>);
  EXPECT_TRUE(std::is_polymorphic_v<CPkgFile>);
  EXPECT_FALSE(std::is_polymorphic_v<CCmdStr>);
  EXPECT_FALSE(std::is_polymorphic_v<CmdStrPiece>);
  EXPECT_FALSE(std::is_polymorphic_v<CComNEHead>);
  EXPECT_FALSE(std::is_polymorphic_v<CComNEMsg>);
  EXPECT_FALSE(std::is_polymorphic_v<CTL1NEMsgParse>);
  EXPECT_FALSE(std::is_polymorphic_v<SOFT_INFO>);
  EXPECT_FALSE(std::is_polymorphic_v<Vnifstream>);
  EXPECT_TRUE(std::has_virtual_destructor_v<CEvtMsg>);
  EXPECT_TRUE(std::has_virtual_destructor_v<CPkgFile>);
}

TEST(Layout, MessageHeadIsSixteenBytesWithoutGaps) {
  EXPECT_EQ(sizeof(CComNEHead), 16U);
  EXPECT_TRUE(std::is_standard_layout_v<CComNEHead>);
  EXPECT_EQ(
      (Sizes{offsetof(CComNEHead, ulHeadWord0), offsetof(CComNEHead, ulHeadWord1), offsetof(CComNEHead, usHeadShort),
             offsetof(CComNEHead, usMsgLen), offsetof(CComNEHead, ulHeadWord2)}),
      (Sizes{0, 4, 8, 10, 12}));
  EXPECT_TRUE((std::is_same_v<decltype(CComNEHead::ulHeadWord0), uint32_t>));
  EXPECT_TRUE((std::is_same_v<decltype(CComNEHead::ulHeadWord1), uint32_t>));
  EXPECT_TRUE((std::is_same_v<decltype(CComNEHead::usHeadShort), uint16_t>));
  EXPECT_TRUE((std::is_same_v<decltype(CComNEHead::usMsgLen), uint16_t>));
  EXPECT_TRUE((std::is_same_v<decltype(CComNEHead::ulHeadWord2), uint32_t>));
}

TEST(Layout, MessageIsItsHeadThenBufferAndSize) {
  CComNEMsg message(0);
  const auto* head = static_cast<const CComNEHead*>(&message);
  EXPECT_EQ(static_cast<const void*>(head), static_cast<const void*>(&message));
  EXPECT_EQ(Offsets(message, &CComNEMsg::m_pMsg, &CComNEMsg::m_nMsgBufSize), (Sizes{16, 16 + POINTER}));
  EXPECT_EQ(sizeof(CComNEMsg), 16 + 2 * POINTER);
}

TEST(Layout, CommandTextIsBufferPiecesAndLength) {
  const CCmdStr text;
  const size_t list = sizeof(std::vector<CmdStrPiece>);
  EXPECT_EQ(Offsets(text, CommandBuffer(), CommandPieces(), CommandLength()), (Sizes{0, POINTER, POINTER + list}));
  EXPECT_EQ(sizeof(CCmdStr), POINTER + list + POINTER);
  EXPECT_EQ((Sizes{offsetof(CmdStrPiece, pData), offsetof(CmdStrPiece, nLen), sizeof(CmdStrPiece)}),
            (Sizes{0, POINTER, 2 * POINTER}));
}

// The members of CEvtMsg, behind the pointer to its virtual operations.
constexpr size_t KEY = POINTER;
constexpr size_t WORDS = KEY + sizeof(std::string);
constexpr size_t COMMAND = (WORDS + 3 * sizeof(uint32_t) + POINTER - 1) / POINTER * POINTER;
constexpr size_t EVENT = COMMAND + sizeof(CCmdStr);

TEST(Layout, EventIsKeyUserDataElementAndCommand) {
  const CEvtMsg event;
  EXPECT_EQ(Offsets(event, &CEvtMsg::m_strEvtKey, &CEvtMsg::m_dwUserData1, &CEvtMsg::m_dwUserData2, &CEvtMsg::m_dwNEID,
                    &CEvtMsg::m_cmd),
            (Sizes{KEY, WORDS, WORDS + 4, WORDS + 8, COMMAND}));
  EXPECT_EQ(sizeof(CEvtMsg), EVENT);
}

template <typename Event>
void ExpectDoneThenTotal() {
  const Event event;
  EXPECT_EQ(Offsets(event, &Event::m_dwDoneNum, &Event::m_dwTotalNum), (Sizes{EVENT, EVENT + 4}));
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
  EXPECT_EQ(Offsets(event, &Event::m_strResult, &Event::m_strResultItem, &Event::m_strResultText),
            (Sizes{EVENT, EVENT + text, EVENT + 2 * text}));
  EXPECT_EQ(Offsets(event, &Event::m_dwResultCode, &Event::m_dwExtra), (Sizes{EVENT + 3 * text, EVENT + 3 * text + 4}));
  EXPECT_EQ(sizeof(Event), EVENT + 3 * text + 8);
}

TEST(Layout, Tl1ParserIsElevenTextsTypeAndPosition) {
  using Parser = CTL1NEMsgParse;
  const Parser parser("");
  Sizes expected;
  for (size_t i = 0; i < 11; ++i)
    expected.push_back(i * sizeof(std::string));
  EXPECT_EQ(Offsets(parser, &Parser::m_strNEMsg, &Parser::m_strSID, &Parser::m_strDate, &Parser::m_strTime,
                    &Parser::m_strEcho, &Parser::m_strRspLine, &Parser::m_strTextBlock, &Parser::m_strVerb,
                    &Parser::m_strRetRspCode, &Parser::m_strCtag, &Parser::m_strAtag),
            expected);
  const size_t texts = 11 * sizeof(std::string);
  EXPECT_EQ(Offsets(parser, &Parser::m_nMsgType, &Parser::m_nMsgStartPos), (Sizes{texts, texts + 4}));
  EXPECT_EQ(sizeof(Parser), texts + 8);
}

TEST(Layout, LineReaderIsBufferSizeAndPosition) {
  const Vnifstream reader("");
  EXPECT_TRUE(std::is_standard_layout_v<Vnifstream>);
  EXPECT_EQ(Offsets(reader, LineBuffer(), LineBufferSize(), LinePosition()), (Sizes{0, POINTER, POINTER + 4}));
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
  EXPECT_EQ(Offsets(entry, &SOFT_INFO::strColumn1, &SOFT_INFO::strColumn2), (Sizes{0, text}));
  EXPECT_EQ(Offsets(entry, &SOFT_INFO::uiColumn5), (Sizes{2 * text}));
  EXPECT_EQ(sizeof(SOFT_INFO), 2 * text + POINTER);
}

TEST(Layout, PackageIsPathExtraVersionAndEntries) {
  const CPkgFile package("");
  const size_t text = sizeof(std::string);
  EXPECT_EQ(Offsets(package, &CPkgFile::m_strFilePath, &CPkgFile::m_strExtra, &CPkgFile::m_strVersion),
            (Sizes{POINTER, POINTER + text, POINTER + 2 * text}));
  EXPECT_EQ(Offsets(package, &CPkgFile::m_lstSoftInfo), (Sizes{POINTER + 3 * text}));
  EXPECT_EQ(sizeof(CPkgFile), POINTER + 3 * text + sizeof(std::list<SOFT_INFO*>));
}

#if defined(__GXX_ABI_VERSION) && defined(__x86_64__)
// A pointer to a virtual operation holds where its slot stands in the table, plus one.
template <typename Member>
size_t SlotOf(Member member) {
  ptrdiff_t encoded = 0;
  std::memcpy(&encoded, &member, sizeof encoded);
  EXPECT_EQ(static_cast<size_t>(encoded - 1) % POINTER, 0U);
  return static_cast<size_t>(encoded - 1) / POINTER;
}

using Slot = void (*)();

Slot SlotAt(const void* object, size_t index) {
  const Slot* table = nullptr;
  std::memcpy(&table, object, sizeof table);
  return table[index];
}

// The destructor has two: one that destroys, one that deletes.
constexpr size_t DESTROY = 0, DELETE = 1, IS_MY_EVT = 2, HANDLE_REPORT = 3, DUPLICATE = 4;

// Shows how many slots a class takes up: a new operation stands behind them.
template <typename Base>
struct Extended : Base {
  using Base::Base;
  virtual void Added() {}
};

TEST(Layout, EventOperationsFollowTheDestructorInOrder) {
  EXPECT_EQ(SlotOf(&CEvtMsg::IsMyEvt), IS_MY_EVT);
  EXPECT_EQ(SlotOf(&CEvtMsg::HandleReport), HANDLE_REPORT);
  EXPECT_EQ(SlotOf(&CEvtMsg::Duplicate), DUPLICATE);
  EXPECT_EQ(SlotOf(&Extended<CEvtMsg>::Added), DUPLICATE + 1);
}

template <typename Event>
void ExpectOverrides() {
  EXPECT_EQ(SlotOf(&Event::IsMyEvt), IS_MY_EVT);
  EXPECT_EQ(SlotOf(&Event::HandleReport), HANDLE_REPORT);
  EXPECT_EQ(SlotOf(&Event::Duplicate), DUPLICATE);
  EXPECT_EQ(SlotOf(&Extended<Event>::Added), DUPLICATE + 1);
  const CEvtMsg base;
  const Event event;
  for (const size_t own : {DESTROY, DELETE, HANDLE_REPORT, DUPLICATE})
    EXPECT_NE(SlotAt(&event, own), SlotAt(&base, own)) << own;
  EXPECT_EQ(SlotAt(&event, IS_MY_EVT), SlotAt(&base, IS_MY_EVT));
}

TEST(Layout, EventsOverrideAllButIsMyEvt) {
  ExpectOverrides<CVNPackGuageEvt>();
  ExpectOverrides<CVNScriptFileGuageEvt>();
  ExpectOverrides<CVNScriptFileEndEvt>();
}

// Leaves a trace of each call, so that a slot called by its number tells which function it holds.
class Traced : public CEvtMsg {
 public:
  explicit Traced(std::string& trace) : m_trace(trace) {}
  ~Traced() override { m_trace += "destructor "; }
  bool IsMyEvt(const char* report) override {
    m_trace += "IsMyEvt "s + report + ' ';
    return true;
  }
  bool HandleReport(const char* report) override {
    m_trace += "HandleReport "s + report + ' ';
    return false;
  }
  CEvtMsg* Duplicate() override {
    m_trace += "Duplicate ";
    return this;
  }

 private:
  std::string& m_trace;
};

template <typename Function>
Function CallOf(const CEvtMsg& event, size_t slot) {
  return reinterpret_cast<Function>(SlotAt(&event, slot));
}

TEST(Layout, SlotsHoldWhatTheirPlaceSays) {
  using Destructor = void (*)(CEvtMsg*);
  using Question = bool (*)(CEvtMsg*, const char*);
  using Copy = CEvtMsg* (*)(CEvtMsg*);
  std::string trace;
  const size_t live = LiveAllocations();
  CEvtMsg* event = new Traced(trace);
  EXPECT_TRUE(CallOf<Question>(*event, IS_MY_EVT)(event, "a"));
  EXPECT_FALSE(CallOf<Question>(*event, HANDLE_REPORT)(event, "b"));
  EXPECT_EQ(CallOf<Copy>(*event, DUPLICATE)(event), event);
  CallOf<Destructor>(*event, DELETE)(event);
  EXPECT_EQ(trace, "IsMyEvt a HandleReport b Duplicate destructor ");
  trace = {};
  trace.shrink_to_fit();
  EXPECT_EQ(LiveAllocations(), live) << "the second slot also frees";

  alignas(Traced) unsigned char memory[sizeof(Traced)];
  CEvtMsg* placed = new (memory) Traced(trace);
  CallOf<Destructor>(*placed, DESTROY)(placed);
  EXPECT_EQ(trace, "destructor ");
}

TEST(Layout, PackageHasNoOperationButItsDestructor) {
  EXPECT_EQ(SlotOf(&Extended<CPkgFile>::Added), DELETE + 1);
}
#endif

}  // namespace
}  // namespace VARNEL_TEST
