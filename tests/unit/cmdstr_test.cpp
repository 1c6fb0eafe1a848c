#include "cmdstr.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include "allocation.h"
#include "growth.h"
#include "private_access.h"
#include "recording_test.h"

namespace VARNEL_TEST {
namespace {

using VARNEL_COMMON::CCmdStr;
using VARNEL_COMMON::CmdStrPiece;

constexpr unsigned int MAXIMUM = 10485760;

VARNEL_PRIVATE_MEMBER(BufLen, CCmdStr, m_nBufLen, unsigned int)
VARNEL_PRIVATE_MEMBER(Pieces, CCmdStr, m_lstAddBuf, std::vector<CmdStrPiece>)

class CmdStr : public RecordingTest {
 protected:
  void Set(size_t length, char filler = 'x') { text.SetMsg(std::string(length, filler).c_str()); }
  void Add(size_t length, char filler = 'y') { text.AddMsg(std::string(length, filler).c_str()); }

  CCmdStr text;
};

TEST_F(CmdStr, FreshObjectIsEmpty) {
  EXPECT_STREQ(text.GetMsg(), "");
  EXPECT_EQ(text.GetMsgLen(), 0U);
  EXPECT_EQ(text.AddSnMML(1), 0);
}

TEST_F(CmdStr, SetMsgReplaces) {
  text.SetMsg("old");
  text.AddMsg("er");
  text.SetMsg("new text");
  EXPECT_STREQ(text.GetMsg(), "new text");
  EXPECT_EQ(text.GetMsgLen(), 8U);
}

TEST_F(CmdStr, SetMsgOfNothingKeepsTheOldText) {
  text.SetMsg("X");
  text.SetMsg("");
  text.SetMsg(nullptr);
  EXPECT_STREQ(text.GetMsg(), "X");
  EXPECT_EQ(text.GetMsgLen(), 1U);
}

TEST_F(CmdStr, SetMsgOfTheOwnText) {
  text.SetMsg("abcdef");
  text.SetMsg(text.GetMsg());
  EXPECT_STREQ(text.GetMsg(), "abcdef");
  text.SetMsg(text.GetMsg() + 3);
  EXPECT_STREQ(text.GetMsg(), "def");
}

TEST_F(CmdStr, SetMsgKeepsTheMaximum) {
  Set(MAXIMUM);
  EXPECT_EQ(text.GetMsgLen(), MAXIMUM);
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(CmdStr, SetMsgCutsBeyondTheMaximum) {
  Set(MAXIMUM + 1);
  EXPECT_EQ(text.GetMsgLen(), MAXIMUM);
  EXPECT_EQ(std::strlen(text.GetMsg()), MAXIMUM);
  EXPECT_EQ(host.lines, Lines{Warning("SetMsg: nDataLen beyond max, nDataLen:10485760", "cmdstr", "SetMsg")});
  EXPECT_EQ(host.filtered.size(), 1U);
}

TEST_F(CmdStr, PiecesAreMergedInOrder) {
  text.AddMsg("ab");
  text.AddMsg("cd");
  EXPECT_EQ(text.GetMsgLen(), 4U);
  EXPECT_STREQ(text.GetMsg(), "abcd");
  EXPECT_EQ(text.GetMsgLen(), 4U);
}

TEST_F(CmdStr, PiecesAreAppendedToTheSetText) {
  text.SetMsg("X");
  text.AddMsg("YZ");
  EXPECT_STREQ(text.GetMsg(), "XYZ");
}

TEST_F(CmdStr, ReadingTwiceMergesOnce) {
  text.AddMsg("ab");
  const char* merged = text.GetMsg();
  host.boundedCopies.FailAt(0);
  EXPECT_EQ(text.GetMsg(), merged);
  EXPECT_EQ(host.boundedCopies.Calls(), 0U);
}

TEST_F(CmdStr, AddMsgOfNothingAddsNoPiece) {
  text.SetMsg("X");
  text.AddMsg(nullptr);
  text.AddMsg("");
  EXPECT_EQ(text.GetMsgLen(), 1U);
  const char* unmerged = text.GetMsg();
  EXPECT_STREQ(unmerged, "X");
}

TEST_F(CmdStr, AddMsgOfTheOwnText) {
  text.SetMsg("abc");
  text.AddMsg(text.GetMsg() + 1);
  text.AddMsg(text.GetMsg());
  EXPECT_STREQ(text.GetMsg(), "abcbcabcbc");
}

TEST_F(CmdStr, AddMsgCutsAtTheMaximum) {
  Set(MAXIMUM - 10);
  Add(20);
  EXPECT_EQ(text.GetMsgLen(), MAXIMUM);
  EXPECT_EQ(std::string(text.GetMsg() + MAXIMUM - 11), "xyyyyyyyyyy");
  EXPECT_EQ(host.lines,
            Lines{Warning("SetMsg: nDataLen beyond max, nDataLen:20, m_nBufLen:10485750", "cmdstr", "AddMsg")});
}

TEST_F(CmdStr, AddMsgFillsUpWithoutWarning) {
  Set(MAXIMUM - 10);
  Add(10);
  EXPECT_EQ(text.GetMsgLen(), MAXIMUM);
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(CmdStr, AddMsgToAFullTextOnlyWarns) {
  Set(MAXIMUM);
  Add(1);
  EXPECT_EQ(text.GetMsgLen(), MAXIMUM);
  EXPECT_EQ(host.lines,
            Lines{Warning("SetMsg: nDataLen beyond max, nDataLen:1, m_nBufLen:10485760", "cmdstr", "AddMsg")});
}

TEST_F(CmdStr, AddMsgRefusesASingleTextBeyondTheMaximum) {
  Add(MAXIMUM + 1);
  EXPECT_EQ(text.GetMsgLen(), 0U);
  text.SetMsg("X");
  Add(MAXIMUM + 1);
  EXPECT_STREQ(text.GetMsg(), "X");
  EXPECT_EQ(host.lines,
            (Lines{Warning("SetMsg: nDataLen beyond max, nDataLen:10485761, m_nBufLen:0", "cmdstr", "AddMsg"),
                   Warning("SetMsg: nDataLen beyond max, nDataLen:10485761, m_nBufLen:1", "cmdstr", "AddMsg")}));
}

TEST_F(CmdStr, BytesAbove7FAreOrdinary) {
  text.SetMsg("\xFF\x80");
  text.AddMsg("\xA3\xA3");
  EXPECT_STREQ(text.GetMsg(), "\xFF\x80\xA3\xA3");
}

TEST_F(CmdStr, EmptyMsgEmptiesSetAndPendingTexts) {
  text.SetMsg("abc");
  text.EmptyMsg();
  EXPECT_STREQ(text.GetMsg(), "");
  text.AddMsg("abc");
  text.EmptyMsg();
  EXPECT_STREQ(text.GetMsg(), "");
  EXPECT_EQ(text.GetMsgLen(), 0U);
}

TEST_F(CmdStr, SerialNumberFollowsTheSemicolon) {
  text.SetMsg("A;\r\n");
  EXPECT_EQ(text.AddSnMML(4660), 1);
  EXPECT_EQ(std::string(text.GetMsg(), 4), std::string("A;\0\x34", 4));
  EXPECT_EQ(text.GetMsgLen(), 4U);
}

TEST_F(CmdStr, SerialNumberKeepsWhatFollowsTheLineEnd) {
  text.AddMsg("A;\r\n");
  text.AddMsg("B");
  EXPECT_EQ(text.AddSnMML(0xFFFF), 1);
  EXPECT_EQ(std::string(text.GetMsg(), 6), std::string("A;\0\xFF"
                                                       "B\0",
                                                       6));
  EXPECT_EQ(text.GetMsgLen(), 5U);
}

TEST_F(CmdStr, SerialNumberNeedsTheLastSemicolonBeforeALineEnd) {
  for (const char* refused : {"A;\r\nB;\r\n", "A;\r\nB;", "A", "A;", "A;\n", "A;\r", "A\r\n", "A; \r\n"}) {
    text.SetMsg(refused);
    EXPECT_EQ(text.AddSnMML(1), 0) << refused;
    EXPECT_STREQ(text.GetMsg(), refused);
  }
}

TEST_F(CmdStr, EarlierSemicolonsDoNotPreventTheSerialNumber) {
  text.SetMsg("A;B;\r\n");
  EXPECT_EQ(text.AddSnMML(7), 1);
  EXPECT_EQ(std::string(text.GetMsg(), 6), std::string("A;B;\0\7", 6));
}

TEST_F(CmdStr, AppendingOverwritesASerialNumber) {
  text.SetMsg("A;\r\n");
  text.AddSnMML(1);
  text.AddMsg("B");
  EXPECT_EQ(std::string(text.GetMsg(), 6), std::string("A;B\0\0\0", 6));
  EXPECT_EQ(text.GetMsgLen(), 5U);
}

TEST_F(CmdStr, CopyHasTheMergedText) {
  text.SetMsg("A");
  text.AddMsg("B");
  CCmdStr copy(text);
  text.SetMsg("other");
  EXPECT_STREQ(copy.GetMsg(), "AB");
}

TEST_F(CmdStr, CopyEndsAtTheFirstNul) {
  text.SetMsg("A;\r\n");
  text.AddSnMML(52);
  CCmdStr copy(text);
  EXPECT_STREQ(copy.GetMsg(), "A;");
  EXPECT_EQ(copy.GetMsgLen(), 2U);
}

TEST_F(CmdStr, AssignmentReplaces) {
  CCmdStr other;
  other.SetMsg("new");
  text.SetMsg("old");
  EXPECT_EQ(&(text = other), &text);
  EXPECT_STREQ(text.GetMsg(), "new");
  EXPECT_STREQ(other.GetMsg(), "new");
}

TEST_F(CmdStr, AssignmentOfAnEmptyTextKeepsTheOldOne) {
  CCmdStr empty;
  text.SetMsg("X");
  text = empty;
  EXPECT_STREQ(text.GetMsg(), "X");
}

TEST_F(CmdStr, SelfAssignmentChangesNothing) {
  text.SetMsg("A");
  text.AddMsg("B");
  CCmdStr& same = text;
  text = same;
  EXPECT_STREQ(text.GetMsg(), "AB");
}

// Text of three letters and two pieces of two, with the given copy of the merge failing.
std::string MergeWithFailure(CCmdStr& text, RecordingHost& host, size_t copy) {
  text.SetMsg("abc");
  text.AddMsg("de");
  text.AddMsg("fg");
  host.boundedCopies.FailAt(copy);
  return {text.GetMsg(), text.GetMsgLen()};
}

TEST_F(CmdStr, EachFailingCopyOfAMergeIsReportedAndLosesOnePiece) {
  const std::string results[] = {std::string("\0\0\0defg", 7), std::string("abc\0\0fg", 7),
                                 std::string("abcde\0\0", 7)};
  for (size_t copy = 1; copy <= 3; ++copy) {
    host.Reset();
    EXPECT_EQ(MergeWithFailure(text, host, copy), results[copy - 1]);
    EXPECT_EQ(host.lines, Lines{Error("ErrorCode:0x22, GetMsg:memcpy_s failed", "cmdstr", "GetMsg")});
    EXPECT_EQ(host.filtered, std::vector<std::string>{"GetMsg:memcpy_s failed"});
  }
  host.Reset();
  EXPECT_EQ(MergeWithFailure(text, host, 4), "abcdefg");
  EXPECT_EQ(host.boundedCopies.Calls(), 3U);
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(CmdStr, NegativeResultOfAFailingCopyIsReported) {
  host.boundedCopyResult = -1;
  MergeWithFailure(text, host, 2);
  EXPECT_EQ(host.lines, Lines{Error("ErrorCode:0xffffffff, GetMsg:memcpy_s failed", "cmdstr", "GetMsg")});
}

TEST_F(CmdStr, FailingCopiesOfSetMsgAndAddMsgAreNotReported) {
  host.boundedCopies.FailAt(1);
  text.SetMsg("abc");
  EXPECT_EQ(std::string(text.GetMsg(), 4), std::string(4, '\0'));
  EXPECT_EQ(text.GetMsgLen(), 3U);
  host.boundedCopies.FailAt(1);
  text.AddMsg("de");
  EXPECT_EQ(text.GetMsgLen(), 5U);
  EXPECT_EQ(std::string(text.GetMsg(), 6), std::string(6, '\0'));
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(CmdStr, BytesLeftByAFailingCopyAreTheText) {
  host.failingCopiesCopy = true;
  host.boundedCopies.FailAt(1);
  text.SetMsg("hello");
  EXPECT_STREQ(text.GetMsg(), "hello");
  host.boundedCopies.FailAt(1);
  text.AddMsg(" world");
  host.boundedCopies.FailAt(2);
  EXPECT_STREQ(text.GetMsg(), "hello world");
  EXPECT_EQ(host.lines, Lines{Error("ErrorCode:0x22, GetMsg:memcpy_s failed", "cmdstr", "GetMsg")});
}

TEST_F(CmdStr, LengthBelowTheTextAbandonsTheMerge) {
  text.SetMsg("abcdef");
  const char* old = text.GetMsg();
  text.AddMsg("gh");
  text.*BufLen() = 4;
  EXPECT_EQ(text.GetMsg(), old);
  EXPECT_STREQ(old, "abcdef");
  EXPECT_EQ(host.lines,
            Lines{Error("ErrorCode:0x3b001400, GetMsg:m_nBufLen < offset,m_nBufLen:4,offset:6", "cmdstr", "GetMsg")});
  text.*BufLen() = 8;
  EXPECT_STREQ(text.GetMsg(), "abcdefgh") << "the piece stayed pending";
}

TEST_F(CmdStr, FreedTextIsWiped) {
  const FreedTextWatch watch("SEKRIT");
  {
    CCmdStr command;
    command.SetMsg("PWD=SEKRIT1;");
    command.SetMsg("PWD=SEKRIT2;");
    command.EmptyMsg();
    command.AddMsg("PWD=SEKRIT3;");
    command.AddMsg("PWD=SEKRIT4;");
    command.GetMsg();
    const CCmdStr copy(command);
    command.SetMsg("PWD=SEKRIT5;");
    command.AddMsg("PWD=SEKRIT6;");
  }
  EXPECT_EQ(watch.Found(), 0U);
}

TEST_F(CmdStr, FreedTextAfterASerialNumberIsWiped) {
  const FreedTextWatch watch("SEKRIT");
  {
    CCmdStr command;
    command.SetMsg("A;\r\nPWD=SEKRIT1");
    ASSERT_EQ(command.AddSnMML(1), 1);
  }
  EXPECT_EQ(watch.Found(), 0U);
}

TEST_F(CmdStr, OnlyTheTextThatAMergeReplacesIsFreedUnwiped) {
  CCmdStr command;
  command.SetMsg("PWD=SEKRIT1;");
  command.AddMsg("PWD=SEKRIT2;");
  const FreedTextWatch watch("SEKRIT");
  command.GetMsg();
  EXPECT_EQ(watch.Found(), 1U);
}

TEST_F(CmdStr, EmptyMsgWipesAnInconsistentText) {
  const FreedTextWatch watch("SEKRIT");
  text.SetMsg("PWD=SEKRIT of 20 byt");
  text.AddMsg("PWD=SEKRIT of 19 by");
  text.*BufLen() = 12;
  text.EmptyMsg();
  EXPECT_EQ(watch.Found(), 0U);
  EXPECT_EQ(text.GetMsgLen(), 0U);
  EXPECT_STREQ(text.GetMsg(), "");
}

TEST_F(CmdStr, PieceWithoutABlockIsSkipped) {
  text.SetMsg("ab");
  text.AddMsg("lost");
  CmdStrPiece& piece = (text.*Pieces()).at(0);
  delete[] piece.pData;
  piece.pData = nullptr;
  text.AddMsg("cd");
  EXPECT_STREQ(text.GetMsg(), "abcd");
  EXPECT_EQ(text.GetMsgLen(), 8U);
  text.AddMsg("lost");
  CmdStrPiece& last = (text.*Pieces()).at(0);
  delete[] last.pData;
  last.pData = nullptr;
  text.EmptyMsg();
  EXPECT_EQ(text.GetMsgLen(), 0U);
}

// A text of 4 GiB and some bytes that needs little memory: the same megabyte is mapped repeatedly.
class HugeText {
 public:
  explicit HugeText(size_t length) : m_size((length / MEGABYTE + 1) * MEGABYTE) {
    const int file = memfd_create("text", MFD_CLOEXEC);
    EXPECT_EQ(ftruncate(file, 2 * MEGABYTE), 0);
    m_text = static_cast<char*>(mmap(nullptr, m_size, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0));
    for (size_t at = 0; at < m_size; at += MEGABYTE)
      Map(at, file, at + MEGABYTE == m_size ? MEGABYTE : 0);
    close(file);
    std::memset(m_text, 'x', MEGABYTE);
    std::memset(m_text + m_size - MEGABYTE, 'y', length % MEGABYTE);
  }
  ~HugeText() { munmap(m_text, m_size); }
  HugeText(const HugeText&) = delete;
  HugeText& operator=(const HugeText&) = delete;
  const char* get() const { return m_text; }

 private:
  static constexpr size_t MEGABYTE = 1 << 20;

  void Map(size_t at, int file, off_t offset) {
    EXPECT_NE(mmap(m_text + at, MEGABYTE, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_FIXED, file, offset), MAP_FAILED);
  }

  size_t m_size;
  char* m_text;
};

TEST_F(CmdStr, LengthsAre32BitNumbers) {
  if (sizeof(size_t) == sizeof(uint32_t)) GTEST_SKIP() << "no text is that long";
  constexpr uint64_t WRAP = uint64_t{1} << 32;
  {
    const HugeText five(static_cast<size_t>(WRAP + 5));
    text.SetMsg(five.get());
    text.AddMsg(five.get());
    EXPECT_STREQ(text.GetMsg(), "xxxxxxxxxx");
  }
  const HugeText empty(static_cast<size_t>(WRAP));
  text.SetMsg(empty.get());
  text.AddMsg(empty.get());
  EXPECT_STREQ(text.GetMsg(), "xxxxxxxxxx");
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(CmdStr, AllocationFailuresLeaveTheTextAsItWas) {
  const size_t live = LiveAllocations();
  {
    CCmdStr command;
    command.SetMsg("abc");
    command.AddMsg("de");
    const auto unchanged = [&] { EXPECT_EQ(command.GetMsgLen(), 5U); };
    EXPECT_EQ(FailEachAllocation([&] { command.GetMsg(); }, unchanged), 1U);
    EXPECT_EQ(FailEachAllocation([&] { CCmdStr{command}; }, unchanged), 1U);
    EXPECT_EQ(FailEachAllocation([&] { command.SetMsg("xyz"); }, unchanged), 1U);
    command.SetMsg("abcde");
    EXPECT_EQ(FailEachAllocation([&] { command.AddMsg("fgh"); }, unchanged), 2U);
    EXPECT_STREQ(command.GetMsg(), "abcdefgh");
  }
  EXPECT_EQ(LiveAllocations(), live);
}

TEST_F(CmdStr, ThrowingLogServiceLeavesThePiecesPendingAndLeaksNothing) {
  const size_t live = LiveAllocations();
  {
    CCmdStr command;
    command.SetMsg("SEKRIT ");
    command.AddMsg("SEKRIT");
    host.boundedCopies.FailAt(2);
    host.logThrows = true;
    const FreedTextWatch watch("SEKRIT");
    EXPECT_THROW(command.GetMsg(), std::runtime_error);
    EXPECT_EQ(watch.Found(), 0U);
    host.logThrows = false;
    EXPECT_STREQ(command.GetMsg(), "SEKRIT SEKRIT");
  }
  host.Reset();
  EXPECT_EQ(LiveAllocations(), live);
}

TEST_F(CmdStr, AppendingManySmallPiecesIsLinear) {
  const auto append = [](size_t pieces) {
    CCmdStr command;
    for (size_t i = 0; i < pieces; ++i)
      command.AddMsg("0123456789");
    EXPECT_EQ(std::strlen(command.GetMsg()), pieces * 10);
  };
  EXPECT_LT(Growth(
                65536, [](size_t pieces) { return pieces; }, append),
            LINEAR_GROWTH);
}

}  // namespace
}  // namespace VARNEL_TEST
