#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "foreign_locale.h"
#include "publicdata.h"
#include "recording_test.h"

namespace VARNEL_TEST {
namespace {

using VARNEL_COMMON::GetNESlotID;
using VARNEL_COMMON::IsTL1NeID;

class NeSlotId : public RecordingTest {
 protected:
  static LogLine CopyFailed() {
    return Error("ErrorCode:0x22, GetNESlotID.strncpy_s failed", "publicdata", "GetNESlotID");
  }
};

TEST_F(NeSlotId, ThreeDigitsBecomeTheirCharacterCodes) {
  const struct {
    unsigned short number;
    unsigned int id;
  } rows[] = {{100, 0x630}, {109, 0x630}, {110, 0x631}, {305, 0x670}, {319, 0x671}, {999, 0x739}};
  for (const auto& [number, id] : rows)
    EXPECT_EQ(GetNESlotID(number), id) << number;
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(NeSlotId, OtherNumbersAreUnchanged) {
  for (const unsigned int number : {0U, 7U, 10U, 99U, 1000U, 9999U, 10000U, 65535U})
    EXPECT_EQ(GetNESlotID(static_cast<unsigned short>(number)), number);
}

TEST_F(NeSlotId, FailingFormatIsReportedAndReturnsTheNumber) {
  host.formats.FailAt(1);
  EXPECT_EQ(GetNESlotID(305), 305U);
  EXPECT_EQ(host.lines, Lines{Error("ErrorCode:0xffffffff, GetNESlotID.snprintf_s failed, SlotId305", "publicdata",
                                    "GetNESlotID")});
  EXPECT_EQ(host.lines.at(0).line, 528);
  EXPECT_EQ(host.filtered, std::vector<std::string>{"GetNESlotID.snprintf_s failed, SlotId305"});
  EXPECT_EQ(host.boundedCopies.Calls(), 0U);
}

TEST_F(NeSlotId, ShelfWhoseCopyFailsIsZero) {
  host.boundedCopies.FailAt(1);
  EXPECT_EQ(GetNESlotID(319), unsigned{'1'});
  EXPECT_EQ(host.lines, Lines{CopyFailed()});
  EXPECT_EQ(host.lines.at(0).line, 543);
  EXPECT_EQ(host.boundedCopies.Calls(), 2U);
}

TEST_F(NeSlotId, SlotWhoseCopyFailsIsTheShelfAgain) {
  host.boundedCopies.FailAt(2);
  EXPECT_EQ(GetNESlotID(319), unsigned{'3' << 5 | '3'});
  EXPECT_EQ(host.lines, Lines{CopyFailed()});
  EXPECT_EQ(host.lines.at(0).line, 550);
}

TEST_F(NeSlotId, LogLinesDoNotDependOnTheGlobalLocale) {
  const GroupingLocale locale;
  host.formats.FailAt(1);
  EXPECT_EQ(GetNESlotID(65535), 65535U);
  EXPECT_EQ(host.lines.at(0).text, "ErrorCode:0xffffffff, GetNESlotID.snprintf_s failed, SlotId65535");
}

TEST(NeId, Tl1ElementsHaveMoreThan24Bits) {
  for (const unsigned int id : {0U, 1U, 0xFFFFFEU, 0xFFFFFFU})
    EXPECT_FALSE(IsTL1NeID(id)) << id;
  for (const unsigned int id : {0x1000000U, 0x1000001U, 0x80000000U, 0xFFFFFFFFU})
    EXPECT_TRUE(IsTL1NeID(id)) << id;
}

}  // namespace
}  // namespace VARNEL_TEST
