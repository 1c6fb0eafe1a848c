#include <gtest/gtest.h>

#include <cctype>

#include "foreign_locale.h"
#include "publicdata.h"
#include "str.h"
#include "test_clock.h"
#include "zepv2data.h"

namespace VARNEL_TEST {
namespace {

using namespace VARNEL_COMMON;

TEST(LocaleOfTheProcess, SlotsBoardsAndStampsDoNotDependOnIt) {
  const TurkishLocale locale;
  if (!locale.IsSet()) GTEST_SKIP() << "no localedef here";
  ASSERT_NE(std::isalpha(0xE1), 0) << "the C library does follow it";
  EXPECT_EQ(WSlotIDi2Hexstr(0x0A1F), "a-1f");
  EXPECT_EQ(WSlotIDstr2i("1234"), 1234);
  EXPECT_EQ(HexStr2Int("0X00fF"), 255U);
  EXPECT_EQ(HexStr2Int("0xF\xE1"), 0U);
  EXPECT_EQ(convertSlot2strDC(50000, 0xFFFF05), "6553505");
  EXPECT_EQ(convertSlotDC("123405"), 1234U << 8 | 5);
  EXPECT_EQ(GetNESlotID(319), 0x671U);
  EXPECT_TRUE(IsSccBdName("xSCCx"));
  EXPECT_FALSE(IsSccBdName("vcu\xE1"));
  EXPECT_TRUE(IsKorvaneNE(50000, "KVA4210"));
  const TestTimeZone zone("UTC0");
  EXPECT_EQ(MakeTimeFormated(1794744309), "2026-11-15 12:05:09");
}

}  // namespace
}  // namespace VARNEL_TEST
