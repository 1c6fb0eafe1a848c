#include "common.h"

#include <gtest/gtest.h>

#include <climits>

#include "allocation.h"
#include "foreign_locale.h"
#include "recording_test.h"

namespace VARNEL_TEST {
namespace {

using VARNEL_COMMON::Compose;
using VARNEL_COMMON::ReportError;
using VARNEL_COMMON::ReportWarning;

class Report : public RecordingTest {};

TEST_F(Report, ModuleConstants) {
  EXPECT_EQ(VARNEL_COMMON::CALL_FUNCTION_RETURN_ERROR, "Call Function return Error:");
  EXPECT_EQ(VARNEL_COMMON::EMPTY_TEXT, "");
}

TEST_F(Report, WarningIsOneLevel3LineThroughTheStringOverload) {
  ReportWarning({"cmdstr", "SetMsg", 17}, Compose("SetMsg: nDataLen beyond max, nDataLen:", 10485760U));
  EXPECT_EQ(host.lines, Lines{Warning("SetMsg: nDataLen beyond max, nDataLen:10485760", "cmdstr", "SetMsg")});
  EXPECT_EQ(host.lines.at(0).line, 17);
}

TEST_F(Report, ErrorIsOneLevel5LineThroughThePointerOverload) {
  ReportError({"cmdstr", "GetMsg", 23}, 0x3B001400,
              Compose("GetMsg:m_nBufLen < offset,m_nBufLen:", 12U, ",offset:", 20U));
  EXPECT_EQ(host.lines,
            Lines{Error("ErrorCode:0x3b001400, GetMsg:m_nBufLen < offset,m_nBufLen:12,offset:20", "cmdstr", "GetMsg")});
  EXPECT_EQ(host.lines.at(0).line, 23);
}

TEST_F(Report, NegativeCodeIsItsTwosComplement) {
  ReportError({"str", "f", 1}, -1, "m");
  ReportError({"str", "f", 1}, INT_MIN, "m");
  EXPECT_EQ(host.lines,
            (Lines{Error("ErrorCode:0xffffffff, m", "str", "f"), Error("ErrorCode:0x80000000, m", "str", "f")}));
}

TEST_F(Report, CodesHaveNoLeadingZerosAndLowerCaseDigits) {
  ReportError({"str", "f", 1}, 0, "m");
  ReportError({"str", "f", 1}, 34, "m");
  ReportError({"str", "f", 1}, 0xABCDEF, "m");
  EXPECT_EQ(host.lines, (Lines{Error("ErrorCode:0x0, m", "str", "f"), Error("ErrorCode:0x22, m", "str", "f"),
                               Error("ErrorCode:0xabcdef, m", "str", "f")}));
}

TEST_F(Report, WholeWarningGoesThroughTheFilter) {
  ReportWarning({"str", "f", 1}, Compose("SECRET number ", 5U));
  EXPECT_EQ(host.filtered, std::vector<std::string>{"SECRET number 5"});
  EXPECT_EQ(host.lines, Lines{Warning("###### number 5", "str", "f")});
}

TEST_F(Report, OnlyTheMessageOfAnErrorGoesThroughTheFilter) {
  ReportError({"str", "f", 1}, 7, Compose("SECRET number ", 5U));
  EXPECT_EQ(host.filtered, std::vector<std::string>{"SECRET number 5"});
  EXPECT_EQ(host.lines, Lines{Error("ErrorCode:0x7, ###### number 5", "str", "f")});
}

TEST_F(Report, NulEndsAnErrorButNotAWarning) {
  const std::string text("a\0b", 3);
  ReportWarning({"str", "f", 1}, text);
  ReportError({"str", "f", 1}, 7, text);
  EXPECT_EQ(host.filtered, (std::vector<std::string>{text, text}));
  EXPECT_EQ(host.lines, (Lines{Warning(text, "str", "f"), Error("ErrorCode:0x7, a", "str", "f")}));
}

TEST_F(Report, NumbersDoNotFollowTheGlobalLocale) {
  const GroupingLocale locale;
  ReportWarning({"str", "f", 1}, Compose("n:", 10485760U));
  ReportError({"str", "f", 1}, 0x3B001400, Compose("n:", 4294967295U));
  EXPECT_EQ(host.lines,
            (Lines{Warning("n:10485760", "str", "f"), Error("ErrorCode:0x3b001400, n:4294967295", "str", "f")}));
}

TEST_F(Report, MemoryExhaustionPropagates) {
  const size_t failures = FailEachAllocation([] { ReportError({"str", "f", 1}, 7, std::string(100, 'x')); }, [] {});
  EXPECT_GT(failures, 0U);
}

}  // namespace
}  // namespace VARNEL_TEST
