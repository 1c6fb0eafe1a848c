#include <gtest/gtest.h>

#include <string>

#include "allocation.h"
#include "exact_text.h"
#include "foreign_locale.h"
#include "growth.h"
#include "str.h"

namespace VARNEL_TEST {
namespace {

using VARNEL_COMMON::ParseMMLSlotID;
using VARNEL_COMMON::ParseTL1SlotID;

constexpr unsigned short KEPT_SHELF = 77;
constexpr unsigned short KEPT_SLOT = 88;

struct Row {
  const char* text;
  unsigned short shelf, slot;
};

// The outputs for each text, which is accepted.
template <typename Parser, size_t COUNT>
void ExpectParsed(Parser parse, const Row (&rows)[COUNT]) {
  for (const Row& row : rows) {
    unsigned short shelf = KEPT_SHELF, slot = KEPT_SLOT;
    EXPECT_TRUE(parse(ExactText(row.text), shelf, slot)) << row.text;
    EXPECT_EQ(shelf, row.shelf) << row.text;
    EXPECT_EQ(slot, row.slot) << row.text;
  }
}

template <typename Parser>
void ExpectRefused(Parser parse, const char* text) {
  unsigned short shelf = KEPT_SHELF, slot = KEPT_SLOT;
  EXPECT_FALSE(parse(text, shelf, slot)) << (text == nullptr ? "null" : text);
  EXPECT_EQ(shelf, KEPT_SHELF);
  EXPECT_EQ(slot, KEPT_SLOT);
}

TEST(SlotParsing, Tl1Slots) {
  ExpectParsed(ParseTL1SlotID, {{"FAC-1-SLOT-3-5", 3, 5},
                                {"SLOT-3-12,ABC", 3, 12},
                                {"SLOT-5:ABC-DEF", 5, 0},
                                {"SLOT-1-SLOT-2-3", 1, 0},
                                {"SLOTSLOT-3-5", 3, 5},
                                {"SLOT--SLOT-7-3", 0, KEPT_SLOT},
                                {"SLOT-3-5-7", 3, 5},
                                {"SLOT-70000-5", 65535, KEPT_SLOT},
                                {"SLOT-3-70000", 3, 65535},
                                {"SLOT- 3 - 5", 3, 5},
                                {"SLOT-x-5", 0, KEPT_SLOT},
                                {"SLOT-3-", 3, KEPT_SLOT},
                                {"SLOT-3 -", 3, KEPT_SLOT},
                                {"SLOT--5", 65531, KEPT_SLOT}});
}

TEST(SlotParsing, Tl1SlotsWithoutAShelf) {
  ExpectParsed(ParseTL1SlotID, {{"SLOT-7", KEPT_SHELF, 7},
                                {"A-B-SLOT-7,X", KEPT_SHELF, 7},
                                {"SLOT-ABC", KEPT_SHELF, 0},
                                {"SLOT-70000", KEPT_SHELF, 65535},
                                {"SLOT-+7", KEPT_SHELF, 7}});
}

TEST(SlotParsing, MissingTl1SlotLeavesBothOutputs) {
  ExpectParsed(ParseTL1SlotID, {{"SLOT-", KEPT_SHELF, KEPT_SLOT},
                                {"FAC-1-SLOT-", KEPT_SHELF, KEPT_SLOT},
                                {"SLOT- \t\r\n", KEPT_SHELF, KEPT_SLOT}});
}

TEST(SlotParsing, TextsWithoutATl1SlotAreRefused) {
  for (const char* text :
       {static_cast<const char*>(nullptr), "", "PORT-1", "SLOT3-5", "SLOT", "slot-3-5", "SLOT -3-5", "SLO", "-SLOT"})
    ExpectRefused(ParseTL1SlotID, text);
}

TEST(SlotParsing, MmlSlots) {
  ExpectParsed(ParseMMLSlotID, {{"2-14", 2, 14},
                                {"14", KEPT_SHELF, 14},
                                {"5-", 5, KEPT_SLOT},
                                {"", KEPT_SHELF, KEPT_SLOT},
                                {" \t", KEPT_SHELF, KEPT_SLOT},
                                {"-", 0, KEPT_SLOT},
                                {"x", KEPT_SHELF, 0},
                                {"x-5", 0, KEPT_SLOT},
                                {"5-x", 5, 0},
                                {"2x14-", 2, 14},
                                {"2 14-", 2, 4},
                                {" 2 - 14 ", 2, 14},
                                {"2-14-6", 2, 14},
                                {"65536", KEPT_SHELF, 65535},
                                {"65536-1", 65535, KEPT_SLOT},
                                {"1-65536", 1, 65535},
                                {"\xA0"
                                 "2-14",
                                 0, KEPT_SLOT},
                                {"2\xFF"
                                 "14-",
                                 2, 14}});
}

TEST(SlotParsing, MmlSlotOfNullIsRefused) {
  ExpectRefused(ParseMMLSlotID, nullptr);
}

TEST(SlotParsing, ShelfAndSlotMayBeTheSameVariable) {
  unsigned short both = 7;
  EXPECT_TRUE(ParseMMLSlotID("3-5", both, both));
  EXPECT_EQ(both, 5);
}

TEST(SlotParsing, ResultsDoNotDependOnTheGlobalLocale) {
  const GroupingLocale locale;
  ExpectParsed(ParseTL1SlotID, {{"SLOT-1.234", KEPT_SHELF, 1}, {"SLOT-1.234-5", 1, 234}});
  ExpectParsed(ParseMMLSlotID, {{"1.234", KEPT_SHELF, 1}, {"1234-5", 1234, 5}});
}

TEST(SlotParsing, NothingIsAllocated) {
  unsigned short shelf, slot;
  const AllocationGuard guard;
  ParseTL1SlotID("FAC-1-SLOT-3-5", shelf, slot);
  ParseMMLSlotID("2-14", shelf, slot);
  EXPECT_EQ(guard.Count(), 0U);
}

TEST(SlotParsing, LongTextsTakeLinearTime) {
  const auto nearlyFound = [](size_t size) {
    std::string text;
    for (size_t i = 0; i < size; ++i)
      text += "SLOT";
    return text + "SLOT-" + std::string(size, '0') + "7-" + std::string(size, ' ') + "5";
  };
  unsigned short shelf = 0, slot = 0;
  const double growth =
      Growth(20000, nearlyFound, [&](const std::string& text) { ParseTL1SlotID(text.c_str(), shelf, slot); });
  EXPECT_LT(growth, LINEAR_GROWTH);
  EXPECT_EQ(shelf, 7);
  EXPECT_EQ(slot, 5);
}

}  // namespace
}  // namespace VARNEL_TEST
