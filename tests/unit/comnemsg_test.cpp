#include "comnemsg.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <type_traits>

#include "allocation.h"
#include "recording_test.h"

namespace VARNEL_TEST {
namespace {

using VARNEL_COMMON::CComNEHead;
using VARNEL_COMMON::CComNEMsg;

constexpr unsigned int LONGEST = 65534;
constexpr unsigned int HUGE_LENGTH = 0xFFFFFFFF;

void FillHead(CComNEHead& head) {
  head.ulHeadWord0 = 0x01020304;
  head.ulHeadWord1 = 0x0A0B0C0D;
  head.usHeadShort = 0x1122;
  head.usMsgLen = 0x0010;
  head.ulHeadWord2 = 0x55667788;
}

void ExpectHead(const CComNEHead& head, unsigned int length) {
  EXPECT_EQ(head.ulHeadWord0, 0x01020304U);
  EXPECT_EQ(head.ulHeadWord1, 0x0A0B0C0DU);
  EXPECT_EQ(head.usHeadShort, 0x1122);
  EXPECT_EQ(head.usMsgLen, length);
  EXPECT_EQ(head.ulHeadWord2, 0x55667788U);
}

void ExpectZeroHead(const CComNEHead& head) {
  EXPECT_EQ(head.ulHeadWord0, 0U);
  EXPECT_EQ(head.ulHeadWord1, 0U);
  EXPECT_EQ(head.usHeadShort, 0);
  EXPECT_EQ(head.usMsgLen, 0);
  EXPECT_EQ(head.ulHeadWord2, 0U);
}

std::string Bytes(const CComNEHead& head) {
  return {reinterpret_cast<const char*>(&head), sizeof head};
}

TEST(ComNEHead, StartsAllZero) {
  alignas(CComNEHead) char memory[sizeof(CComNEHead)];
  std::memset(memory, 0xEE, sizeof memory);
  ExpectZeroHead(*new (memory) CComNEHead());
}

TEST(ComNEHead, HasTheWireLayout) {
  static_assert(sizeof(CComNEHead) == 16);
  static_assert(std::is_standard_layout_v<CComNEHead> && !std::is_polymorphic_v<CComNEHead>);
  CComNEHead head;
  FillHead(head);
  head.ToNetOrder();
  EXPECT_EQ(Bytes(head), std::string("\x01\x02\x03\x04\x0A\x0B\x0C\x0D\x11\x22\x00\x10\x55\x66\x77\x88", 16));
}

TEST(ComNEHead, BothConversionsAreTheSameAndRestore) {
  CComNEHead there, back;
  FillHead(there);
  FillHead(back);
  there.ToNetOrder();
  back.ToHostOrder();
  EXPECT_EQ(Bytes(there), Bytes(back));
  there.ToHostOrder();
  back.ToNetOrder();
  ExpectHead(there, 0x10);
  ExpectHead(back, 0x10);
}

TEST(ComNEHead, ReceivedBytesAreReadAsFields) {
  CComNEHead head;
  std::memcpy(static_cast<void*>(&head), "\xFF\xFE\xFD\xFC\x00\x00\x00\x01\x80\x00\xFF\xFE\x7F\xFF\xFF\xFF", 16);
  head.ToHostOrder();
  EXPECT_EQ(head.ulHeadWord0, 0xFFFEFDFCU);
  EXPECT_EQ(head.ulHeadWord1, 1U);
  EXPECT_EQ(head.usHeadShort, 0x8000);
  EXPECT_EQ(head.usMsgLen, 0xFFFE);
  EXPECT_EQ(head.ulHeadWord2, 0x7FFFFFFFU);
}

TEST(ComNEHead, AssignmentCopiesEveryField) {
  CComNEHead source, target;
  FillHead(source);
  EXPECT_EQ(&(target = source), &target);
  ExpectHead(target, 0x10);
  CComNEHead& same = target;
  EXPECT_EQ(&(target = same), &target);
  ExpectHead(target, 0x10);
}

TEST(ComNEHead, CopiesNeedNonConstSources) {
  static_assert(std::is_assignable_v<CComNEHead&, CComNEHead&> &&
                !std::is_assignable_v<CComNEHead&, const CComNEHead&>);
  static_assert(std::is_assignable_v<CComNEMsg&, CComNEMsg&> && !std::is_assignable_v<CComNEMsg&, const CComNEMsg&>);
  static_assert(std::is_constructible_v<CComNEMsg, CComNEMsg&> &&
                !std::is_constructible_v<CComNEMsg, const CComNEMsg&>);
}

class ComNEMsg : public RecordingTest {
 protected:
  static std::string Body(const CComNEMsg& message) { return {message.m_pMsg, message.usMsgLen}; }

  // Body, its NUL, length and buffer size.
  static void ExpectBody(const CComNEMsg& message, const std::string& body, unsigned int bufferSize) {
    EXPECT_EQ(message.m_nMsgBufSize, bufferSize);
    ASSERT_EQ(message.usMsgLen, body.size());
    EXPECT_EQ(Body(message), body);
    EXPECT_EQ(message.m_pMsg[body.size()], '\0');
  }

  static void Set(CComNEMsg& message, const std::string& body) {
    message.SetMsg(body.data(), static_cast<unsigned int>(body.size()));
  }
  static void Add(CComNEMsg& message, const std::string& body) {
    message.AddMsg(body.data(), static_cast<unsigned int>(body.size()));
  }

  // A body of bytes that all differ from their neighbours.
  static std::string Pattern(size_t length) {
    std::string text(length, '\0');
    for (size_t i = 0; i < length; ++i)
      text[i] = static_cast<char>(i % 251 + 1);
    return text;
  }

  static void DropBuffer(CComNEMsg& message) {
    delete[] message.m_pMsg;
    message.m_pMsg = nullptr;
  }

  // Leaves free memory of this size that is not zero.
  static void DirtyHeap(size_t size) {
    const std::unique_ptr<char[]> block(new char[size]);
    std::memset(block.get(), 'x', size);
  }

  Lines CopyFailed(const std::string& text, const std::string& function) const {
    return {Error("ErrorCode:0x22, " + text, "comnemsg", function)};
  }
};

TEST_F(ComNEMsg, ConstructorTakesTheSizeOfTheBuffer) {
  const struct {
    unsigned int asked, given;
  } sizes[] = {{0, 1024},      {1, 1},         {100, 100},     {1024, 1024},        {65533, 65533},
               {65534, 65534}, {65535, 65534}, {70000, 65534}, {HUGE_LENGTH, 65534}};
  for (const auto& [asked, given] : sizes) {
    const CComNEMsg message(asked);
    EXPECT_EQ(message.m_nMsgBufSize, given) << asked;
    EXPECT_EQ(message.m_pMsg[0], '\0') << asked;
    ExpectZeroHead(message);
  }
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(ComNEMsg, HeaderIsFirstInMemory) {
  CComNEMsg message(0);
  EXPECT_EQ(static_cast<void*>(static_cast<CComNEHead*>(&message)), static_cast<void*>(&message));
  EXPECT_EQ(reinterpret_cast<char*>(&message.m_pMsg) - reinterpret_cast<char*>(&message), 16);
}

TEST_F(ComNEMsg, SetMsgReplacesAndTerminates) {
  CComNEMsg message(0);
  Set(message, "a longer body");
  Set(message, std::string("a\0\xFF", 3));
  ExpectBody(message, std::string("a\0\xFF", 3), 1024);
  Set(message, "");
  ExpectBody(message, "", 1024);
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(ComNEMsg, SetMsgOfNullChangesNothing) {
  CComNEMsg message(0);
  Set(message, "kept");
  message.SetMsg(nullptr, 10);
  message.SetMsg(nullptr, HUGE_LENGTH);
  ExpectBody(message, "kept", 1024);
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(ComNEMsg, SetMsgLeavesTheOtherFields) {
  CComNEMsg message(0);
  FillHead(message);
  Set(message, "abc");
  ExpectHead(message, 3);
}

TEST_F(ComNEMsg, SetMsgGrowsIfTheNulDoesNotFit) {
  const struct {
    unsigned int buffer;
    size_t body;
    unsigned int after;
  } rows[] = {{100, 99, 100},        {100, 100, 1124},   {100, 101, 1125}, {1, 0, 1},
              {1, 1, 1025},          {0, 1023, 1024},    {0, 1024, 2048},  {65534, 65533, 65534},
              {65534, 65534, 66558}, {0, LONGEST, 66558}};
  for (const auto& row : rows) {
    CComNEMsg message(row.buffer);
    Set(message, Pattern(row.body));
    ExpectBody(message, Pattern(row.body), row.after);
  }
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(ComNEMsg, SetMsgCutsAndWarnsWithTheMaximum) {
  CComNEMsg message(0);
  Set(message, Pattern(70000));
  ExpectBody(message, Pattern(LONGEST), 66558);
  EXPECT_EQ(host.lines, Lines{Warning("SetMsg: nDataLen beyond max, nDataLen:65534", "comnemsg", "SetMsg")});
  EXPECT_EQ(host.filtered, std::vector<std::string>{"SetMsg: nDataLen beyond max, nDataLen:65534"});
}

TEST_F(ComNEMsg, SetMsgOfOneByteTooManyCuts) {
  CComNEMsg message(LONGEST);
  Set(message, Pattern(LONGEST + 1));
  ExpectBody(message, Pattern(LONGEST), 66558);
  EXPECT_EQ(host.lines.size(), 1U);
}

TEST_F(ComNEMsg, SetMsgKeepsABufferForTheLongestBody) {
  CComNEMsg message(0);
  Set(message, Pattern(LONGEST));
  const char* buffer = message.m_pMsg;
  Set(message, Pattern(70000));
  EXPECT_EQ(message.m_pMsg, buffer);
  ExpectBody(message, Pattern(LONGEST), 66558);
}

TEST_F(ComNEMsg, HugeLengthsReadOnlyTheLongestBody) {
  const std::unique_ptr<char[]> source(new char[LONGEST]);
  std::memcpy(source.get(), Pattern(LONGEST).data(), LONGEST);
  for (const unsigned int claimed : {HUGE_LENGTH, HUGE_LENGTH - 1, 0x80000000U, LONGEST + 1}) {
    CComNEMsg message(0);
    message.SetMsg(source.get(), claimed);
    ExpectBody(message, Pattern(LONGEST), 66558);
    for (const unsigned int length : {1U, 2U, 1024U, 65533U}) {
      Set(message, std::string(length, 'x'));
      message.AddMsg(source.get(), claimed);
      ExpectBody(message, std::string(length, 'x') + Pattern(LONGEST - length), 66558);
      EXPECT_EQ(host.lines.back(), Warning("AddMsg: nDataLen beyond max, nDataLen:" + std::to_string(claimed) +
                                               ", nBufLen:" + std::to_string(length),
                                           "comnemsg", "AddMsg"));
    }
  }
}

TEST_F(ComNEMsg, SetMsgWithoutABufferIsReported) {
  CComNEMsg message(0);
  Set(message, "old");
  DropBuffer(message);
  Set(message, "new");
  EXPECT_EQ(message.usMsgLen, 0);
  EXPECT_EQ(message.m_pMsg, nullptr);
  EXPECT_EQ(host.lines, Lines{Error("ErrorCode:0x3b001400, SetMsg:m_pMsg==NULL", "comnemsg", "SetMsg")});
  EXPECT_EQ(host.boundedCopies.Calls(), 1U) << "no copy without a buffer";
}

TEST_F(ComNEMsg, SetMsgWithoutABufferAllocatesOneIfItGrows) {
  CComNEMsg message(0);
  DropBuffer(message);
  Set(message, Pattern(2000));
  ExpectBody(message, Pattern(2000), 3024);
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(ComNEMsg, SetMsgWhoseCopyFailsKeepsTheBytesAndSetsTheLength) {
  CComNEMsg message(0);
  Set(message, "old bytes");
  host.boundedCopies.FailAt(1);
  Set(message, "newer");
  ExpectBody(message, "old b", 1024);
  EXPECT_EQ(host.lines, CopyFailed("SetMsg:memcpy_s failed", "SetMsg"));
  EXPECT_EQ(host.filtered, std::vector<std::string>{"SetMsg:memcpy_s failed"});
}

TEST_F(ComNEMsg, SetMsgWhoseCopyFailsLeavesZerosInANewBuffer) {
  CComNEMsg message(0);
  host.boundedCopies.FailAt(1);
  host.boundedCopyResult = -1;
  DirtyHeap(4024);
  Set(message, Pattern(3000));
  ExpectBody(message, std::string(3000, '\0'), 4024);
  EXPECT_EQ(host.lines, Lines{Error("ErrorCode:0xffffffff, SetMsg:memcpy_s failed", "comnemsg", "SetMsg")});
}

TEST_F(ComNEMsg, BytesLeftByAFailingCopyAreTheBody) {
  CComNEMsg message(4);
  host.failingCopiesCopy = true;
  for (size_t copy = 1; copy <= 2; ++copy) {
    host.boundedCopies.FailAt(1);
    Set(message, Pattern(3000));  // the first time into a new buffer
    ExpectBody(message, Pattern(3000), 4024);
  }
  for (size_t failing = 1; failing <= 2; ++failing) {
    host.boundedCopies.FailAt(failing);  // the second time after the copy into the new buffer
    Add(message, std::string(1000, 'x'));
  }
  ExpectBody(message, Pattern(3000) + std::string(2000, 'x'), 6024);
  EXPECT_EQ(host.lines.size(), 4U);
}

TEST_F(ComNEMsg, SetBufLenOnlyEnlarges) {
  CComNEMsg message(0);
  Set(message, Pattern(1000));
  FillHead(message);
  message.usMsgLen = 1000;
  DirtyHeap(2001);
  message.SetBufLen(2000);
  ExpectBody(message, Pattern(1000), 2000);
  ExpectHead(message, 1000);
  EXPECT_EQ(message.m_pMsg[2000], '\0');
  const char* buffer = message.m_pMsg;
  for (const unsigned int length : {500U, 1999U, 0U})
    message.SetBufLen(length);
  EXPECT_EQ(message.m_pMsg, buffer);
  EXPECT_EQ(message.m_nMsgBufSize, 2000U);
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(ComNEMsg, SetBufLenKeepsTheWholeOldBuffer) {
  CComNEMsg message(0);
  const std::string held = Pattern(1024);
  std::memcpy(message.m_pMsg, held.data(), held.size());
  message.SetBufLen(2000);
  EXPECT_EQ(std::string(message.m_pMsg, 1024), held);
  EXPECT_EQ(message.usMsgLen, 0);
}

TEST_F(ComNEMsg, SetBufLenOfTheSizeItselfAddsSpaceForTheNul) {
  CComNEMsg message(100);
  Set(message, "abc");
  message.SetBufLen(100);
  ExpectBody(message, "abc", 100);
  message.m_pMsg[100] = 'x';
  EXPECT_EQ(host.boundedCopies.Calls(), 2U) << "the second moved the buffer";
}

TEST_F(ComNEMsg, SetBufLenCutsAndWarnsWithTheMaximum) {
  for (const unsigned int length : {LONGEST + 1, 70000U, HUGE_LENGTH}) {
    host.Reset();
    CComNEMsg message(0);
    Set(message, "abc");
    message.SetBufLen(length);
    ExpectBody(message, "abc", LONGEST);
    EXPECT_EQ(message.m_pMsg[LONGEST], '\0');
    EXPECT_EQ(host.lines, Lines{Warning("AddStrToMsg: nDataLen beyond max, nDataLen:65534", "comnemsg", "SetBufLen")});
    EXPECT_EQ(host.filtered.size(), 1U);
  }
}

TEST_F(ComNEMsg, SetBufLenOfTheMaximumDoesNotWarn) {
  CComNEMsg message(0);
  message.SetBufLen(LONGEST);
  EXPECT_EQ(message.m_nMsgBufSize, LONGEST);
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(ComNEMsg, SetBufLenWhoseCopyFailsKeepsBufferAndSize) {
  CComNEMsg message(0);
  Set(message, "abc");
  const char* buffer = message.m_pMsg;
  const size_t live = LiveAllocations();
  host.boundedCopies.FailAt(1);
  message.SetBufLen(2000);
  EXPECT_EQ(message.m_pMsg, buffer);
  ExpectBody(message, "abc", 1024);
  EXPECT_EQ(host.lines, CopyFailed("SetBufLen.memcpy_s failed", "SetBufLen"));
  host.Reset();
  EXPECT_LE(LiveAllocations(), live);
}

TEST_F(ComNEMsg, AddMsgAppends) {
  CComNEMsg message(0);
  Add(message, "abc");
  Add(message, std::string("\0\xFF", 2));
  Add(message, "d");
  ExpectBody(message,
             std::string("abc\0\xFF"
                         "d",
                         6),
             1024);
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(ComNEMsg, AddMsgOfNothingChangesNothing) {
  CComNEMsg message(0);
  Set(message, Pattern(1023));
  message.AddMsg(nullptr, 10);
  message.AddMsg(nullptr, HUGE_LENGTH);
  message.AddMsg("x", 0);
  ExpectBody(message, Pattern(1023), 1024);
  EXPECT_EQ(host.lines, Lines{});
  EXPECT_EQ(host.boundedCopies.Calls(), 1U);
}

TEST_F(ComNEMsg, AddMsgGrowsIfTheNulDoesNotFit) {
  const struct {
    size_t body, added;
    unsigned int after;
  } rows[] = {{1000, 23, 1024}, {1000, 24, 2048}, {0, 1024, 2048}, {1023, 1, 2048}, {10, 65524, 66558}};
  for (const auto& row : rows) {
    CComNEMsg message(0);
    const std::string whole = Pattern(row.body + row.added);
    Set(message, whole.substr(0, row.body));
    Add(message, whole.substr(row.body));
    ExpectBody(message, whole, row.after);
  }
}

TEST_F(ComNEMsg, AddMsgCutsWhatDoesNotFit) {
  CComNEMsg message(0);
  Set(message, Pattern(65530));
  Add(message, "0123456789");
  ExpectBody(message, Pattern(65530) + "0123", 66554);
  Add(message, "more");
  ExpectBody(message, Pattern(65530) + "0123", 66554);
  EXPECT_EQ(host.lines,
            (Lines{Warning("AddMsg: nDataLen beyond max, nDataLen:10, nBufLen:65530", "comnemsg", "AddMsg"),
                   Warning("AddMsg: nDataLen beyond max, nDataLen:4, nBufLen:65534", "comnemsg", "AddMsg")}));
  EXPECT_EQ(host.filtered.size(), 2U);
}

TEST_F(ComNEMsg, AddMsgThatJustFitsDoesNotWarn) {
  CComNEMsg message(0);
  Set(message, Pattern(65530));
  Add(message, "0123");
  ExpectBody(message, Pattern(65530) + "0123", 66554);
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(ComNEMsg, AddMsgToTheLargestLengthAddsNothing) {
  CComNEMsg message(0);
  message.usMsgLen = 65535;
  Add(message, "x");
  EXPECT_EQ(message.usMsgLen, 65535);
  EXPECT_EQ(message.m_nMsgBufSize, 1024U);
  EXPECT_EQ(host.lines, Lines{Warning("AddMsg: nDataLen beyond max, nDataLen:1, nBufLen:65535", "comnemsg", "AddMsg")});
}

TEST_F(ComNEMsg, AddMsgWhoseCopyFailsWhileGrowingAppendsNothing) {
  CComNEMsg message(0);
  Set(message, Pattern(1000));
  const char* buffer = message.m_pMsg;
  const size_t live = LiveAllocations();
  host.boundedCopies.FailAt(1);
  Add(message, Pattern(100));
  EXPECT_EQ(message.m_pMsg, buffer);
  ExpectBody(message, Pattern(1000), 1024);
  EXPECT_EQ(host.boundedCopies.Calls(), 1U);
  EXPECT_EQ(host.lines, CopyFailed("AddMsg.memcpy_s failed", "AddMsg"));
  host.Reset();
  EXPECT_LE(LiveAllocations(), live);
}

TEST_F(ComNEMsg, AddMsgWhoseCopyOfTheDataFailsSetsTheLength) {
  CComNEMsg message(0);
  Set(message, "abcdefgh");
  Set(message, "ab");
  host.boundedCopies.FailAt(1);
  Add(message, "XYZ");
  ExpectBody(message, std::string("ab\0de", 5), 1024);
  EXPECT_EQ(host.lines, CopyFailed("AddMsg.memcpy_s failed", "AddMsg"));
}

TEST_F(ComNEMsg, AddMsgWhoseCopyOfTheDataFailsAfterGrowingSetsTheLength) {
  CComNEMsg message(0);
  Set(message, Pattern(1000));
  DirtyHeap(2124);
  host.boundedCopies.FailAt(2);
  Add(message, Pattern(100));
  ExpectBody(message, Pattern(1000) + std::string(100, '\0'), 2124);
  EXPECT_EQ(host.lines, CopyFailed("AddMsg.memcpy_s failed", "AddMsg"));
}

TEST_F(ComNEMsg, AddMsgWithoutABufferIsReported) {
  CComNEMsg message(0);
  Set(message, "old");
  DropBuffer(message);
  Add(message, "new");
  EXPECT_EQ(message.m_pMsg, nullptr);
  EXPECT_EQ(message.usMsgLen, 3);
  ASSERT_EQ(host.lines.size(), 1U);
  EXPECT_EQ(host.lines[0].text, "ErrorCode:0x16, AddMsg.memcpy_s failed");
}

TEST_F(ComNEMsg, EmptyMsgZeroesTheWholeBuffer) {
  CComNEMsg message(0);
  FillHead(message);
  std::memset(message.m_pMsg, 'x', 1024);
  message.usMsgLen = 5;
  message.EmptyMsg();
  EXPECT_EQ(std::string(message.m_pMsg, 1024), std::string(1024, '\0'));
  EXPECT_EQ(message.m_nMsgBufSize, 1024U);
  ExpectHead(message, 0);
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(ComNEMsg, EmptyMsgWithoutABufferClearsTheLength) {
  CComNEMsg message(0);
  Set(message, "abc");
  DropBuffer(message);
  message.EmptyMsg();
  EXPECT_EQ(message.usMsgLen, 0);
}

TEST_F(ComNEMsg, CopyHasASeparateBuffer) {
  CComNEMsg source(5000);
  FillHead(source);
  Set(source, "abc");
  CComNEMsg copy(source);
  ExpectBody(copy, "abc", 1024);
  ExpectHead(copy, 3);
  Set(source, "xyz");
  ExpectBody(copy, "abc", 1024);
}

TEST_F(ComNEMsg, CopyOfALongBodyGrows) {
  for (const size_t length : {size_t{1023}, size_t{1024}, size_t{LONGEST}}) {
    CComNEMsg source(0);
    Set(source, Pattern(length));
    const CComNEMsg copy(source);
    ExpectBody(copy, Pattern(length), static_cast<unsigned int>(length < 1024 ? 1024 : length + 1024));
  }
}

TEST_F(ComNEMsg, CopyWhoseBoundedCopyFailsSetsTheLength) {
  CComNEMsg source(0);
  FillHead(source);
  Set(source, Pattern(2000));
  host.boundedCopies.FailAt(1);
  const CComNEMsg copy(source);
  ExpectHead(copy, 2000);
  ExpectBody(copy, std::string(2000, '\0'), 3024);
  EXPECT_EQ(host.lines, CopyFailed("SetMsg:memcpy_s failed", "SetMsg"));
}

TEST_F(ComNEMsg, AssignmentUsesTheExistingBuffer) {
  CComNEMsg source(0), target(3000);
  FillHead(source);
  Set(source, Pattern(2000));
  const char* buffer = target.m_pMsg;
  EXPECT_EQ(&(target = source), &target);
  EXPECT_EQ(target.m_pMsg, buffer);
  ExpectBody(target, Pattern(2000), 3000);
  ExpectHead(target, 2000);
}

TEST_F(ComNEMsg, AssignmentWhoseBoundedCopyFailsKeepsTheBytes) {
  CComNEMsg source(0), target(0);
  FillHead(source);
  Set(source, "abc");
  Set(target, "old bytes");
  host.boundedCopies.FailAt(1);
  target = source;
  ExpectHead(target, 3);
  ExpectBody(target, "old", 1024);
  EXPECT_EQ(host.lines, CopyFailed("SetMsg:memcpy_s failed", "SetMsg"));
}

TEST_F(ComNEMsg, AssignmentToItselfDoesNothing) {
  CComNEMsg message(0);
  FillHead(message);
  Set(message, "abc");
  CComNEMsg& same = message;
  EXPECT_EQ(&(message = same), &message);
  ExpectBody(message, "abc", 1024);
  ExpectHead(message, 3);
  EXPECT_EQ(host.boundedCopies.Calls(), 1U);
}

TEST_F(ComNEMsg, AssignmentFromOneWithoutABufferCopiesTheHeader) {
  CComNEMsg source(0), target(0);
  DropBuffer(source);
  FillHead(source);
  Set(target, "abc");
  target = source;
  ExpectHead(target, 0x10);
  const CComNEMsg copy(source);
  ExpectHead(copy, 0x10);
  EXPECT_STREQ(copy.m_pMsg, "");
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(ComNEMsg, AssignmentToOneWithoutABufferIsReported) {
  CComNEMsg source(0), target(0);
  FillHead(source);
  Set(source, "abc");
  DropBuffer(target);
  target = source;
  ExpectHead(target, 0);
  EXPECT_EQ(host.lines, Lines{Error("ErrorCode:0x3b001400, SetMsg:m_pMsg==NULL", "comnemsg", "SetMsg")});
}

TEST_F(ComNEMsg, AssignmentOfTheLargestLengthIsCut) {
  CComNEMsg source(0), target(0);
  Set(source, Pattern(LONGEST));
  source.usMsgLen = 65535;
  target = source;
  ExpectBody(target, Pattern(LONGEST), 66558);
  EXPECT_EQ(host.lines, Lines{Warning("SetMsg: nDataLen beyond max, nDataLen:65534", "comnemsg", "SetMsg")});
}

TEST_F(ComNEMsg, DataInTheOwnBody) {
  const std::string body = Pattern(1000);
  for (const size_t at : {size_t{0}, size_t{1}, size_t{400}, size_t{999}}) {
    const auto length = static_cast<unsigned int>(body.size() - at);
    CComNEMsg set(0), added(5000), grown(1001);
    for (CComNEMsg* message : {&set, &added, &grown})
      Set(*message, body);
    set.SetMsg(set.m_pMsg + at, length);
    ExpectBody(set, body.substr(at), 1024);
    added.AddMsg(added.m_pMsg + at, length);
    ExpectBody(added, body + body.substr(at), 5000);
    grown.AddMsg(grown.m_pMsg + at, length);
    ExpectBody(grown, body + body.substr(at), static_cast<unsigned int>(2 * 1000 - at + 1024));
  }
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(ComNEMsg, DataThatExtendsBeyondTheBodyInTheBuffer) {
  CComNEMsg message(0);
  Set(message, Pattern(600));
  Set(message, "abc");
  const std::string expected = "abc" + std::string(message.m_pMsg + 1, 500);
  message.AddMsg(message.m_pMsg + 1, 500);
  ExpectBody(message, expected, 1024);
}

TEST_F(ComNEMsg, DataInTheOwnBufferThatTheNewBodyOutgrows) {
  CComNEMsg message(100);
  std::memcpy(message.m_pMsg, Pattern(100).data(), 100);
  message.SetMsg(message.m_pMsg, 100);
  ExpectBody(message, Pattern(100), 1124);
}

TEST_F(ComNEMsg, DataInTheOwnHeader) {
  CComNEMsg message(0);
  FillHead(message);
  message.usMsgLen = 0;
  const std::string head = Bytes(message);
  message.SetMsg(&message, 16);
  ExpectBody(message, head, 1024);
}

TEST_F(ComNEMsg, DestructionFreesTheBuffer) {
  const size_t live = LiveAllocations();
  {
    CComNEMsg message(0);
    Set(message, Pattern(5000));
    message.SetBufLen(20000);
    Add(message, Pattern(30000));
    CComNEMsg copy(message);
    copy = message;
  }
  EXPECT_EQ(LiveAllocations(), live);
}

// Runs `operation` on a message with each of its allocations failing: the message stays as it was and nothing leaks.
template <typename Operation>
size_t FailAllocations(Operation operation) {
  CComNEMsg message(0);
  FillHead(message);
  message.SetMsg("body", 4);
  const char* buffer = message.m_pMsg;
  RecordingHost::Instance().Reset();
  const size_t live = LiveAllocations();
  return FailEachAllocation([&] { operation(message); },
                            [&] {
                              RecordingHost::Instance().Reset();
                              EXPECT_EQ(LiveAllocations(), live);
                              EXPECT_EQ(message.m_pMsg, buffer);
                              EXPECT_EQ(message.m_nMsgBufSize, 1024U);
                              ExpectHead(message, 4);
                              EXPECT_STREQ(message.m_pMsg, "body");
                            });
}

TEST_F(ComNEMsg, EachFailingAllocationLeavesTheMessage) {
  const std::string data = Pattern(70000);
  CComNEMsg other(0);
  other.SetMsg(data.data(), 3000);
  EXPECT_EQ(FailAllocations([&](CComNEMsg& message) { message.SetMsg(data.data(), 2000); }), 1U);
  EXPECT_EQ(FailAllocations([&](CComNEMsg& message) { message.SetMsg(message.m_pMsg, 1024); }), 2U);
  EXPECT_EQ(FailAllocations([&](CComNEMsg& message) { message.AddMsg(data.data(), 2000); }), 1U);
  EXPECT_EQ(FailAllocations([&](CComNEMsg& message) { message.AddMsg(message.m_pMsg, 1024); }), 2U);
  EXPECT_EQ(FailAllocations([](CComNEMsg& message) { message.SetBufLen(2000); }), 1U);
  EXPECT_EQ(FailAllocations([&](CComNEMsg& message) { message = other; }), 1U);
  EXPECT_GT(FailAllocations([&](CComNEMsg& message) { message.SetMsg(data.data(), 70000); }), 1U);
  EXPECT_GT(FailAllocations([&](CComNEMsg& message) { message.AddMsg(data.data(), 70000); }), 1U);
  EXPECT_GT(FailAllocations([](CComNEMsg& message) { message.SetBufLen(70000); }), 1U);
}

TEST_F(ComNEMsg, EachFailingAllocationOfAConstructorPropagates) {
  CComNEMsg source(0);
  Set(source, Pattern(3000));
  const size_t live = LiveAllocations();
  EXPECT_EQ(FailEachAllocation([] { const CComNEMsg message(0); }, [&] { EXPECT_EQ(LiveAllocations(), live); }), 1U);
  EXPECT_EQ(FailEachAllocation([&] { const CComNEMsg copy(source); }, [&] { EXPECT_EQ(LiveAllocations(), live); }), 2U);
}

}  // namespace
}  // namespace VARNEL_TEST
