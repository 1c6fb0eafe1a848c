#include "zepv2data.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <csignal>
#include <sstream>
#include <string>

#include "allocation.h"
#include "foreign_locale.h"
#include "recording_test.h"
#include "util/checked_math.h"

namespace VARNEL_TEST {
namespace {

using VARNEL_COMMON::convertSlot2strDC;
using VARNEL_COMMON::convertSlotDC;
using VARNEL_COMMON::HexStr2Int;
using VARNEL_COMMON::IsExistShelfID;
using VARNEL_COMMON::IsZep08;
using VARNEL_COMMON::IsZepv2;
using VARNEL_COMMON::WSlotIDi2Hexstr;
using VARNEL_COMMON::WSlotIDi2str;
using VARNEL_COMMON::WSlotIDstr2i;

class WordSlot : public RecordingTest {};

struct WordText {
  unsigned short word;
  const char* text;
};

TEST_F(WordSlot, DecimalTexts) {
  const WordText rows[] = {{0x0000, "0"},   {0x0001, "1"},   {0x0007, "7"},     {0x00FF, "255"},   {0x0100, "1-0"},
                           {0x0300, "3-0"}, {0x0305, "3-5"}, {0x0A1F, "10-31"}, {0xFF00, "255-0"}, {0xFFFF, "255-255"}};
  for (const auto& [word, text] : rows)
    EXPECT_EQ(WSlotIDi2str(word), text) << word;
}

TEST_F(WordSlot, HexadecimalTexts) {
  const WordText rows[] = {{0x0000, "0"},   {0x000A, "a"},    {0x001F, "1f"},   {0x0100, "1-0"},
                           {0x0305, "3-5"}, {0x0A1F, "a-1f"}, {0xFF00, "ff-0"}, {0xFFFF, "ff-ff"}};
  for (const auto& [word, text] : rows)
    EXPECT_EQ(WSlotIDi2Hexstr(word), text) << word;
}

struct TextWord {
  std::string text;
  unsigned int word;
};

TEST_F(WordSlot, ReadingTexts) {
  const TextWord rows[] = {
      {"7", 7},
      {"3-5", 0x0305},
      {"10-31", 0x0A1F},
      {"305", 305},
      {"3-", 0x0300},
      {"3-300", 0x042C},
      {"1-256", 0x0200},
      {"x-5", 0},
      {"a-1f", 0},
      {"", 0},
      {"abc", 0},
      {"-", 0},
      {"70000", 65535},
      {"65535", 65535},
      {"65536", 65535},
      {"007", 7},
      {"+7", 7},
      {" \t\n\v\f\r7 x", 7},
      {"  3 -  5,", 0x0305},
      {"3x5-", 0x0305},
      {"3 5-", 0x0300},
      {"256-1", 0x0001},
      {"259-1", 0x0301},
      {"255-65535", 0xFEFF},
      {"70000-5", 0xFF00},
      {"3-70000", 0x02FF},
      {"3-x", 0x0300},
      {"3--5", 0x02FB},
      {"-5", 0xFB00},
      {"-1-1", 0xFF01},
      {"7\xFF", 7},
      {"\xA0"
       "7",
       0},
  };
  for (const auto& [text, word] : rows)
    EXPECT_EQ(WSlotIDstr2i(text), word) << ::testing::PrintToString(text);
}

TEST_F(WordSlot, NulIsAnOrdinaryCharacter) {
  EXPECT_EQ(WSlotIDstr2i(std::string("3\0005-", 4)), 0x0305) << "a separator as good as another";
  EXPECT_EQ(WSlotIDstr2i(std::string("\0007", 2)), 0);
  EXPECT_EQ(WSlotIDstr2i(std::string("7\0-5", 4)), 0x0700 + 0xFFFB - 0x10000);
}

TEST_F(WordSlot, EveryWordIsReadBackFromItsText) {
  for (unsigned int word = 0; word <= 0xFFFF; ++word) {
    const auto slotId = static_cast<unsigned short>(word);
    ASSERT_EQ(WSlotIDstr2i(WSlotIDi2str(slotId)), slotId);
  }
}

TEST_F(WordSlot, DashAnywhereMeansAShelf) {
  for (const char* text : {"3-5", "-", "3-", "-5", "abc -"})
    EXPECT_TRUE(IsExistShelfID(text)) << text;
  for (const char* text : {"305", "",
                           "3\xAD"
                           "5",
                           "3_5"})
    EXPECT_FALSE(IsExistShelfID(text)) << text;
  EXPECT_FALSE(IsExistShelfID("3\0-5"));
}

TEST_F(WordSlot, NothingIsLogged) {
  WSlotIDi2str(0x0305);
  WSlotIDi2Hexstr(0x0305);
  WSlotIDstr2i("x-y");
  HexStr2Int("x");
  EXPECT_EQ(host.lines, Lines{});
}

TEST(Generation, Thresholds) {
  const struct {
    int code;
    bool isZep08, isZepv2;
  } rows[] = {{INT_MIN, false, false}, {-1, false, false},   {0, false, false},    {50798, false, false},
              {50799, false, false},   {50800, true, false}, {52099, true, false}, {52100, true, true},
              {52101, true, true},     {INT_MAX, true, true}};
  for (const auto& [code, isZep08, isZepv2] : rows) {
    EXPECT_EQ(IsZep08(code), isZep08) << code;
    EXPECT_EQ(IsZepv2(code), isZepv2) << code;
  }
}

TEST(HexNumber, Accepted) {
  const TextWord rows[] = {{"0x1A", 26},
                           {"0X00ff", 255},
                           {"0x0", 0},
                           {"0xf", 15},
                           {"0xABCDEF01", 0xABCDEF01},
                           {"0xabcdef01", 0xABCDEF01},
                           {"0xFFFFFFFF", 4294967295U},
                           {"0x12345678", 0x12345678},
                           {"0x123456789", 0x12345678},
                           {"0x12345678zz", 0x12345678},
                           {"0x12345678 ", 0x12345678},
                           {"0x1234567", 0x1234567},
                           {std::string("0x12345678\0\xFF", 12), 0x12345678},
                           {"0x80000000" + std::string(100000, 'x'), 0x80000000}};
  for (const auto& [text, number] : rows)
    EXPECT_EQ(HexStr2Int(text), number) << text.substr(0, 20);
}

TEST(HexNumber, Refused) {
  const std::string rows[] = {"",
                              "0",
                              "0x",
                              "0X",
                              "1A",
                              "zz",
                              "0x1G",
                              "0x1 ",
                              " 0x1",
                              "1x1",
                              "0y1",
                              "x01",
                              "0x-1",
                              "0x+1",
                              "0x0x1",
                              "0x1234567g",
                              "0xg2345678",
                              "0x1234567 8",
                              "0x1\xFF",
                              "0x\xB1",
                              "0x@",
                              "0x`",
                              "0x/",
                              "0x:",
                              std::string("0x1\0", 4),
                              std::string("\0x1", 3)};
  for (const std::string& text : rows)
    EXPECT_EQ(HexStr2Int(text), 0U) << ::testing::PrintToString(text);
}

TEST(HexNumber, EveryByteAsADigit) {
  const std::string digits = "0123456789abcdef", capitals = "0123456789ABCDEF";
  for (int byte = 0; byte < 256; ++byte) {
    const char c = static_cast<char>(byte);
    const size_t value = std::min(digits.find(c), capitals.find(c));
    EXPECT_EQ(HexStr2Int(std::string("0x1") + c), value == std::string::npos ? 0 : 16 + value) << byte;
  }
}

class DcSlot : public RecordingTest {};

TEST_F(DcSlot, Texts) {
  const struct {
    unsigned int generation;
    int board;
    const char* text;
  } rows[] = {
      {0, 0x0000, "0"},
      {50000, 0x0000, "0"},
      {52100, 0x0000, "0"},
      {0xFFFFFFFF, 0x0000, "0"},
      {50000, 0x0007, "7"},
      {52100, 0x0007, "7"},
      {50000, 0x0105, "1-5"},
      {52100, 0x0105, "1-5"},
      {50000, 0x01FF, "1-255"},
      {50000, 0x0200, "200"},
      {50000, 0x0305, "305"},
      {50000, 0x0A1F, "1031"},
      {50000, 0x0A64, "10100"},
      {50000, 0xFFFF, "255255"},
      {52099, 0x0305, "305"},
      {52100, 0x0305, "3-5"},
      {0x7FFFFFFF, 0x0305, "3-5"},
      {0x80000000, 0x0305, "305"},
      {0xFFFFFFFF, 0x0305, "305"},
      {50000, 0x10305, "25905"},
      {50000, 0x10000, "25600"},
      {52100, 0x10305, "3-5"},
      {52100, 0x10000, "0"},
      {50000, INT_MAX, "65535255"},
      {50000, 0x01000305, "305"},
      {50000, 0x01000000, "000"},
      {50000, -1, "255-255"},
      {50000, INT_MIN, "0"},
      {50000, INT_MIN + 0x305, "3-5"},
  };
  for (const auto& [generation, board, text] : rows)
    EXPECT_EQ(convertSlot2strDC(generation, board), text) << generation << ' ' << board;
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(DcSlot, ReadingTexts) {
  const TextWord rows[] = {
      {"", 0},
      {"7", 0x0007},
      {"99", 99},
      {"3-5", 0x0305},
      {"30-5", 0x1E05},
      {"305-", 0x3100},
      {"105", 0x0069},
      {"199", 0x00C7},
      {"200", 0x0200},
      {"305", 0x0305},
      {"1000", 0x0A00},
      {"1031", 0x0A1F},
      {"10100", 0x6500},
      {"00199", 199},
      {"00200", 0x0200},
      {"12345678901", static_cast<unsigned int>((123456789ULL << 8) + 1)},
      {"99999999999", static_cast<unsigned int>((999999999ULL << 8) + 99)},
      {"123456789012", 65535},
      {"000000000200", 200},
      {"abc", 0},
      {"300a", 0x1E00},
      {"300ab", 300U << 8},
      {"300 5", 300U << 8 | 5},
      {"300+5", 300U << 8 | 5},
      {" 305", 0x0305},
      {"305 ", 0x1E05},
      {"+305", 0x0305},
      {"305\xFF", 0x1E05},
  };
  for (const auto& [text, word] : rows)
    EXPECT_EQ(convertSlotDC(text), word) << ::testing::PrintToString(text);
  EXPECT_EQ(host.lines, Lines{});
}

TEST_F(DcSlot, NulEndsTheReadTextButNotTheLength) {
  EXPECT_EQ(convertSlotDC(std::string("305\0-7", 6)), (305U << 8) - 7) << "the dash is not seen, the slot is";
  EXPECT_EQ(convertSlotDC(std::string("150\0-7", 6)), 150U) << "what follows does not make it larger";
  EXPECT_EQ(convertSlotDC(std::string("305\0", 4)), 0x1E05U) << "the slot is cut";
  EXPECT_EQ(convertSlotDC(std::string("305\0\0", 5)), 305U << 8);
  EXPECT_EQ(convertSlotDC(std::string("305\0zzzzzzzz", 12)), 305U) << "too long";
  EXPECT_EQ(convertSlotDC(std::string("7\0zz", 4)), 7U);
  EXPECT_EQ(convertSlotDC(std::string("\000305", 4)), 0U);
}

TEST_F(DcSlot, EveryWordWithATwoDigitSlotIsReadBack) {
  for (const unsigned int generation : {0U, 50000U, 52099U, 52100U}) {
    for (int board = 0; board <= 0xFFFF; ++board) {
      if ((board & 0xFF) > 99) continue;
      ASSERT_EQ(convertSlotDC(convertSlot2strDC(generation, board)), static_cast<unsigned int>(board)) << generation;
    }
  }
}

TEST_F(DcSlot, FailingFormatIsReportedAndRepeatsTheShelf) {
  host.formats.FailAt(1);
  EXPECT_EQ(convertSlot2strDC(50000, 0x0305), "33");
  host.formats.FailAt(1);
  EXPECT_EQ(convertSlot2strDC(0xFFFFFFFF, 0x10305), "259259");
  EXPECT_EQ(host.lines,
            (Lines{Error("ErrorCode:0xffffffff, convertSlot2strDC.snprintf_s failed, neid:50000, Bdid:773", "zepv2data",
                         "convertSlot2strDC"),
                   Error("ErrorCode:0xffffffff, convertSlot2strDC.snprintf_s failed, neid:4294967295, Bdid:66309",
                         "zepv2data", "convertSlot2strDC")}));
  EXPECT_EQ(host.lines.at(0).line, 265);
  EXPECT_EQ(host.filtered.at(0), "convertSlot2strDC.snprintf_s failed, neid:50000, Bdid:773");
}

TEST_F(DcSlot, DashedTextsAreNotFormatted) {
  host.formats.FailAt(1);
  EXPECT_EQ(convertSlot2strDC(50000, 0x0105), "1-5");
  EXPECT_EQ(convertSlot2strDC(52100, 0x0305), "3-5");
  EXPECT_EQ(host.formats.Calls(), 0U);
}

Lines CopyFailed() {
  return {Error("ErrorCode:0x22, convertSlotDC.strncpy_s failed", "zepv2data", "convertSlotDC")};
}

TEST_F(DcSlot, ShelfWhoseCopyFailsIsZero) {
  host.boundedCopies.FailAt(1);
  EXPECT_EQ(convertSlotDC("305"), 5U);
  EXPECT_EQ(host.boundedCopies.Calls(), 2U);
  EXPECT_EQ(host.lines, CopyFailed());
  EXPECT_EQ(host.lines.at(0).line, 228);
  EXPECT_EQ(host.filtered, std::vector<std::string>{"convertSlotDC.strncpy_s failed"});
}

TEST_F(DcSlot, SlotWhoseCopyFailsIsTheShelfAgain) {
  host.boundedCopies.FailAt(2);
  EXPECT_EQ(convertSlotDC("305"), 0x0303U);
  EXPECT_EQ(host.boundedCopies.Calls(), 2U);
  EXPECT_EQ(host.lines, CopyFailed());
  EXPECT_EQ(host.lines.at(0).line, 236);
}

TEST_F(DcSlot, TextsOfTheOtherFormAreNotCopied) {
  for (const char* text : {"7", "3-5", "199", "123456789012"})
    convertSlotDC(text);
  EXPECT_EQ(host.boundedCopies.Calls(), 0U);
}

using SlotDeathTest = DcSlot;

TEST_F(SlotDeathTest, SumOfTheLargestShelfAndALargeSlotEndsTheProcess) {
  EXPECT_EQ(convertSlotDC("838860799"), 0x7FFFFF00U + 99);
  EXPECT_EQ(host.boundedCopies.Calls(), 2U);
  EXPECT_EXIT(
      {
        host.boundedCopies.FailAt(2);
        convertSlotDC("838860799");
      },
      testing::KilledBySignal(SIGABRT), "");
}

TEST_F(SlotDeathTest, SumOfTheLowestShelfAndANegativeSlotEndsTheProcess) {
  EXPECT_EQ(convertSlotDC("838860800"), 0x80000000U);
  EXPECT_EXIT(convertSlotDC(std::string("8388608\0-1", 10)), testing::KilledBySignal(SIGABRT), "");
}

TEST(CheckedMathDeathTest, SumsWithinTheRangeAreReturned) {
  using VARNEL_UTIL::CheckedAdd;
  EXPECT_EQ(CheckedAdd(INT_MAX - 1, 1), INT_MAX);
  EXPECT_EQ(CheckedAdd(INT_MIN + 1, -1), INT_MIN);
  EXPECT_EQ(CheckedAdd(INT_MAX, INT_MIN), -1);
  EXPECT_EQ(CheckedAdd(INT_MIN, 0), INT_MIN);
}

TEST(CheckedMathDeathTest, OverflowEndsTheProcess) {
  using VARNEL_UTIL::CheckedAdd;
  EXPECT_EXIT(CheckedAdd(INT_MAX, 1), testing::KilledBySignal(SIGABRT), "");
  EXPECT_EXIT(CheckedAdd(INT_MIN, -1), testing::KilledBySignal(SIGABRT), "");
  EXPECT_EXIT(CheckedAdd(INT_MAX, INT_MAX), testing::KilledBySignal(SIGABRT), "");
  EXPECT_EXIT(CheckedAdd(INT_MIN, INT_MIN), testing::KilledBySignal(SIGABRT), "");
}

TEST_F(DcSlot, ResultsDoNotDependOnTheGlobalLocale) {
  const GroupingLocale locale;
  std::ostringstream grouped;
  grouped << 1234;
  ASSERT_EQ(grouped.str(), "1.234") << "a stream does follow it";
  EXPECT_EQ(WSlotIDi2str(0xFFFF), "255-255");
  EXPECT_EQ(WSlotIDstr2i("1234"), 1234);
  EXPECT_EQ(WSlotIDstr2i("1.234"), 1);
  EXPECT_EQ(convertSlot2strDC(50000, INT_MAX), "65535255");
  EXPECT_EQ(convertSlotDC("123405"), 1234U << 8 | 5);
  host.formats.FailAt(1);
  convertSlot2strDC(50000, 0x10305);
  EXPECT_EQ(host.lines.at(0).text, "ErrorCode:0xffffffff, convertSlot2strDC.snprintf_s failed, neid:50000, Bdid:66309");
}

TEST_F(DcSlot, NoAllocationForUsualTexts) {
  const std::string texts[] = {"3-5", "305", "10-31"};
  const AllocationGuard guard;
  for (const std::string& text : texts)
    convertSlotDC(text);
  convertSlot2strDC(50000, 0x0305);
  WSlotIDi2Hexstr(0x0A1F);
  EXPECT_EQ(guard.Count(), 0U);
}

}  // namespace
}  // namespace VARNEL_TEST
