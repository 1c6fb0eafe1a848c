#include "common.h"

#include <gtest/gtest.h>

#include <climits>

#include "allocation.h"
#include "foreign_locale.h"
#include "recording_test.h"

namespace VARNEL_TEST {
namespace {

using VARNEL_COMMON::LogError;
using VARNEL_COMMON::LogWarning;
using VARNEL_COMMON::StrCat;

class Log : public RecordingTest {};

TEST_F(Log, ModuleConstants) {
  EXPECT_EQ(VARNEL_COMMON::CALL_FUNCTION_RETURN_ERROR, "Call Function return Error:");
  EXPECT_EQ(VARNEL_COMMON::EMPTY_TEXT, "");
}

TEST_F(Log, WarningIsOneLineOfLevel3ByTheStringOverload) {
  LogWarning({"cmdstr", "SetMsg", 17}, StrCat("SetMsg: nDataLen beyond max, nDataLen:", 10485760U));
  EXPECT_EQ(host.lines, Lines{Warning("SetMsg: nDataLen beyond max, nDataLen:10485760", "cmdstr", "SetMsg")});
  EXPECT_EQ(host.lines.at(0).line, 17);
}

TEST_F(Log, ErrorIsOneLineOfLevel5ByThePointerOverload) {
  LogError({"cmdstr", "GetMsg", 23}, 0x3B001400, StrCat("GetMsg:m_nBufLen < offset,m_nBufLen:", 12U, ",offset:", 20U));
  EXPECT_EQ(host.lines,
            Lines{Error("ErrorCode:0x3b001400, GetMsg:m_nBufLen < offset,m_nBufLen:12,offset:20", "cmdstr", "GetMsg")});
  EXPECT_EQ(host.lines.at(0).line, 23);
}

TEST_F(Log, NegativeCodeIsItsTwosComplement) {
  LogError({"str", "f", 1}, -1, "m");
  LogError({"str", "f", 1}, INT_MIN, "m");
  EXPECT_EQ(host.lines,
            (Lines{Error("ErrorCode:0xffffffff, m", "str", "f"), Error("ErrorCode:0x80000000, m", "str", "f")}));
}

TEST_F(Log, CodesHaveNoLeadingZerosAndLowerCaseDigits) {
  LogError({"str", "f", 1}, 0, "m");
  LogError({"str", "f", 1}, 34, "m");
  LogError({"str", "f", 1}, 0xABCDEF, "m");
  EXPECT_EQ(host.lines, (Lines{Error("ErrorCode:0x0, m", "str", "f"), Error("ErrorCode:0x22, m", "str", "f"),
                               Error("ErrorCode:0xabcdef, m", "str", "f")}));
}

TEST_F(Log, WholeWarningGoesThroughTheFilter) {
  LogWarning({"str", "f", 1}, StrCat("SECRET number ", 5U));
  EXPECT_EQ(host.filtered, std::vector<std::string>{"SECRET number 5"});
  EXPECT_EQ(host.lines, Lines{Warning("###### number 5", "str", "f")});
}

TEST_F(Log, OnlyTheMessageOfAnErrorGoesThroughTheFilter) {
  LogError({"str", "f", 1}, 7, StrCat("SECRET number ", 5U));
  EXPECT_EQ(host.filtered, std::vector<std::string>{"SECRET number 5"});
  EXPECT_EQ(host.lines, Lines{Error("ErrorCode:0x7, ###### number 5", "str", "f")});
}

TEST_F(Log, NulEndsAnErrorButNotAWarning) {
  const std::string text("a\0b", 3);
  LogWarning({"str", "f", 1}, text);
  LogError({"str", "f", 1}, 7, text);
  EXPECT_EQ(host.filtered, (std::vector<std::string>{text, text}));
  EXPECT_EQ(host.lines, (Lines{Warning(text, "str", "f"), Error("ErrorCode:0x7, a", "str", "f")}));
}

TEST_F(Log, NumbersDoNotDependOnTheGlobalLocale) {
  const GroupingLocale locale;
  LogWarning({"str", "f", 1}, StrCat("n:", 10485760U));
  LogError({"str", "f", 1}, 0x3B001400, StrCat("n:", 4294967295U));
  EXPECT_EQ(host.lines,
            (Lines{Warning("n:10485760", "str", "f"), Error("ErrorCode:0x3b001400, n:4294967295", "str", "f")}));
}

TEST_F(Log, MemoryExhaustionPropagates) {
  const size_t failures = FailEachAllocation([] { LogError({"str", "f", 1}, 7, std::string(100, 'x')); }, [] {});
  EXPECT_GT(failures, 0U);
}

}  // namespace
}  // namespace VARNEL_TEST
