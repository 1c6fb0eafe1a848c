#include "slot_text.h"

#include <zepv2data.h>

#include <gtest/gtest.h>

namespace VARNEL_TEST {

namespace {

using Notes = std::vector<std::string>;

struct Accepted {
  const char* text;
  int word;
};

void ExpectWords(std::initializer_list<Accepted> accepted) {
  for (const auto& [text, word] : accepted) {
    const SlotReading reading = ReadSlotText(text);
    EXPECT_EQ("", reading.error) << text;
    EXPECT_EQ(word, reading.word ? int{*reading.word} : -1) << text;
  }
}

void ExpectError(const std::string& error, std::initializer_list<std::string_view> texts) {
  for (const std::string_view text : texts) {
    const SlotReading reading = ReadSlotText(text);
    EXPECT_EQ(error, reading.error) << text;
    EXPECT_FALSE(reading.word) << text;
    EXPECT_FALSE(reading.plainNumber) << text;
  }
}

TEST(SlotText, ReadsEveryForm) {
  ExpectWords({{"3-5", 0x0305},
               {"0-7", 7},
               {"255-255", 0xFFFF},
               {"7", 7},
               {"007", 7},
               {"105", 105},
               {"199", 199},
               {"200", 0x0200},
               {"305", 0x0305},
               {"1031", 0x0A1F},
               {"25599", 0xFF63},
               {"0x0", 0},
               {"0x305", 0x0305},
               {"0Xffff", 0xFFFF},
               {"SLOT-7", 7},
               {"FAC-1-SLOT-3-5", 0x0305},
               {"SLOT-305", 305},
               {" \t3-5\r\n", 0x0305}});
}

TEST(SlotText, HexadecimalWordsMayHaveLeadingZeros) {
  ExpectWords({{"0x00000000305", 0x0305}, {"0x000000000000000000000000", 0}});
}

TEST(SlotText, TextMayFollowASlot) {
  ExpectWords({{"3-5,PORT=1", 0x0305},
               {"3-5-1", 0x0305},
               {"7;", 7},
               {"SLOT-3-12,ABC", 0x030C},
               {"SLOT-3-5-1", 0x0305},
               {"\"SLOT-3:CR,EQPT\"", 3},
               {"SLOT-3 failed", 3}});
}

TEST(SlotText, RefusesTextsThatTheLibraryReadsAsZero) {
  ExpectError("does not begin with a shelf or slot number",
              {"abc", "-5", "-", "+3", "a-1f", "SLOT-", "SLOT-x", "SLOT--5", "slot-3-5", "\xFF\x80"});
  ExpectError("has no slot number after 3-", {"3-", "3-x", "3--5", "3- 5", "SLOT-3-A", "SLOT-3-"});
  ExpectError("has invalid text after the slot number",
              {"3 5", "3 - 5", "3-5x", "7a", "0b1", "1e3", "SLOT-0x5", "3.5"});
  ExpectError("is empty", {"", " \t\r\n"});
  ExpectError("contains a NUL", {std::string_view("3\0005", 3), std::string_view("\0", 1)});
}

TEST(SlotText, RefusesMalformedAndLargeHexadecimalWords) {
  ExpectError("is not 0x and hexadecimal digits", {"0x", "0X", "0x1g", "0x-1", "0x1 2", "0xSLOT-3"});
  ExpectError("is above 0xffff", {"0x10000", "0x00010000", "0xffffffff", "0x123456789012345678901234567890"});
}

TEST(SlotText, RefusesShelvesAndSlotsThatDoNotFit) {
  ExpectError("shelf 256 is above 255", {"256-5", "SLOT-256-5"});
  ExpectError("shelf 99999999999999999999 is above 255", {"99999999999999999999-1"});
  ExpectError("slot 256 does not fit", {"255-256"});
  ExpectError("slot 65536 does not fit", {"0-65536", "SLOT-65536"});
  ExpectError("is too large for the DC form (the largest shelf is 255)",
              {"25600", "65535", "65536", "70000", "12345678901", "99999999999999999999"});
}

TEST(SlotText, ShelvesThatWrapInTheLibraryDoNotFit) {
  ASSERT_EQ(0x0305u, VARNEL_COMMON::convertSlotDC("1677721905"));
  ExpectError("is too large for the DC form (the largest shelf is 255)", {"1677721905"});
}

TEST(SlotText, SlotAbove255CarriesWithANote) {
  const SlotReading reading = ReadSlotText("3-300");
  EXPECT_EQ(0x042C, reading.word);
  EXPECT_EQ(Notes{"slot 300 is above 255 and carries into the shelf"}, reading.notes);
}

TEST(SlotText, DcFormNamesThePlainReading) {
  EXPECT_EQ(Notes{"as a plain number it is slot 305: 1-49, the word 0x0131"}, ReadSlotText("305").notes);
}

TEST(SlotText, DcFormNamesTheSlotOfThreeDigits) {
  EXPECT_EQ((Notes{"as a plain number it is slot 10100: 39-116, the word 0x2774",
                   "old generations also write it for 10-100, the word 0x0a64"}),
            ReadSlotText("10100").notes);
  EXPECT_EQ(Notes{"old generations also write it for 255-100, the word 0xff64"}, ReadSlotText("255100").notes);
  EXPECT_EQ(Notes{"as a plain number it is slot 2256: 8-208, the word 0x08d0"}, ReadSlotText("2256").notes);
}

TEST(SlotText, UnambiguousTextsHaveNoNotes) {
  for (const char* text : {"3-5", "7", "99", "0x0305", "SLOT-3-5", "SLOT-3-5-1", "SLOT-3-5,A-B", "1-150"})
    EXPECT_EQ(Notes{}, ReadSlotText(text).notes) << text;
}

TEST(SlotText, NotesThatTheLibraryReadsTheSlotAsTheShelf) {
  const SlotReading reading = ReadSlotText("SLOT-5:ABC-DEF");
  EXPECT_EQ(5, reading.word);
  EXPECT_EQ(Notes{"the text contains a later -, therefore the library reads it as shelf 5, slot 0"}, reading.notes);
}

TEST(SlotText, OnlyAPlainNumberHasAnNeSlotNumber) {
  EXPECT_EQ(305, ReadSlotText(" 305 ").plainNumber);
  EXPECT_EQ(0, ReadSlotText("0").plainNumber);
  for (const char* text : {"305,", "3-5", "0x305", "SLOT-305"})
    EXPECT_FALSE(ReadSlotText(text).plainNumber) << text;
}

// Slots 200 to 255 without a shelf are read in the DC form.
TEST(SlotText, ReadsBackEveryTextThatTheLibraryWrites) {
  for (unsigned int number = 0; number <= 0xFFFF; ++number) {
    const auto word = static_cast<uint16_t>(number);
    const std::string dashed = VARNEL_COMMON::WSlotIDi2str(word);
    const unsigned int expected = VARNEL_COMMON::convertSlotDC(dashed);
    ASSERT_EQ(expected, ReadSlotText(dashed).word) << dashed;
    ASSERT_EQ(number < 200 || number > 255, expected == number) << dashed;
  }
}

TEST(SlotText, DcTextIsForShelvesFrom2OnOfOldGenerations) {
  EXPECT_EQ("305", DcText(OLD_GENERATION, 0x0305));
  EXPECT_EQ("305", DcText(52099, 0x0305));
  EXPECT_EQ(std::nullopt, DcText(52100, 0x0305));
  EXPECT_EQ(std::nullopt, DcText(OLD_GENERATION, 0x01FF));
  EXPECT_EQ("200", DcText(-1, 0x0200));
}

}  // namespace

}  // namespace VARNEL_TEST
