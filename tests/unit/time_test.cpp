#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <cmath>
#include <csignal>
#include <ctime>
#include <iomanip>
#include <locale>
#include <random>
#include <sstream>
#include <string>

#include "foreign_locale.h"
#include "str.h"
#include "test_clock.h"

namespace VARNEL_TEST {
namespace {

using VARNEL_COMMON::GetCurDateFormated;
using VARNEL_COMMON::GetCurTimeFormated;
using VARNEL_COMMON::GetCurTimeMilSec;
using VARNEL_COMMON::IsTimerReach;
using VARNEL_COMMON::MakeTimeFormated;

constexpr char CENTRAL_EUROPE[] = "CET-1CEST,M3.5.0,M10.5.0/3";
constexpr char NEWFOUNDLAND[] = "NST3:30NDT,M3.2.0,M11.1.0";
constexpr char NEPAL[] = "NPT-5:45";

// The last second whose year is an int, in UTC.
constexpr int64_t END_OF_YEARS = 67767976233532799;

std::ostringstream ZeroFilled() {
  std::ostringstream out;
  out.imbue(std::locale::classic());
  out << std::setfill('0');
  return out;
}

std::tm Local(time_t seconds) {
  std::tm local = {};
  localtime_r(&seconds, &local);
  return local;
}

std::string DateByStream(time_t seconds) {
  const std::tm local = Local(seconds);
  std::ostringstream out = ZeroFilled();
  out << std::setw(4) << local.tm_year + 1900 << std::setw(2) << local.tm_mon + 1 << std::setw(2) << local.tm_mday;
  return out.str();
}

std::string StampByStream(time_t seconds) {
  const std::tm local = Local(seconds);
  std::ostringstream out = ZeroFilled();
  out << std::setw(4) << local.tm_year + 1900 << "-" << std::setw(2) << local.tm_mon + 1 << "-" << std::setw(2)
      << local.tm_mday << " " << std::setw(2) << local.tm_hour << ":" << std::setw(2) << local.tm_min << ":"
      << std::setw(2) << local.tm_sec;
  return out.str();
}

// Where long has 32 bits, those that it holds are read.
struct Stamp {
  int64_t seconds;
  const char* text;
};

template <size_t COUNT>
void ExpectStamps(const char* zone, const Stamp (&stamps)[COUNT]) {
  const TestTimeZone set(zone);
  for (const auto& [wide, text] : stamps) {
    const auto seconds = static_cast<long>(wide);
    if (seconds != wide) continue;
    EXPECT_EQ(MakeTimeFormated(seconds), text) << zone << ' ' << seconds;
  }
}

TEST(TimeStamp, Utc) {
  ExpectStamps("UTC0", {{0, "1970-01-01 00:00:00"},
                        {-1, "1969-12-31 23:59:59"},
                        {946684800, "2000-01-01 00:00:00"},
                        {1709208000, "2024-02-29 12:00:00"},
                        {1794744309, "2026-11-15 12:05:09"},
                        {2147483647, "2038-01-19 03:14:07"},
                        {2147483648, "2038-01-19 03:14:08"}});
}

TEST(TimeStamp, SummerTimeOfCentralEurope) {
  ExpectStamps(CENTRAL_EUROPE, {{1774745999, "2026-03-29 01:59:59"},
                                {1774746000, "2026-03-29 03:00:00"},
                                {1792889999, "2026-10-25 02:59:59"},
                                {1792890000, "2026-10-25 02:00:00"},
                                {1792893600, "2026-10-25 03:00:00"},
                                {1794744309, "2026-11-15 13:05:09"}});
}

TEST(TimeStamp, ZonesOfHalfAndQuarterHours) {
  ExpectStamps("IST-5:30", {{0, "1970-01-01 05:30:00"}, {-19801, "1969-12-31 23:59:59"}});
  ExpectStamps(NEPAL, {{0, "1970-01-01 05:45:00"}});
  ExpectStamps(NEWFOUNDLAND, {{1794744309, "2026-11-15 08:35:09"}, {1774746000, "2026-03-28 22:30:00"}});
}

TEST(TimeStamp, YearsOfOtherThanFourDigits) {
  ExpectStamps("UTC0", {{253402300799, "9999-12-31 23:59:59"},
                        {253402300800, "10000-01-01 00:00:00"},
                        {-30610224000, "1000-01-01 00:00:00"},
                        {-30610224001, "0999-12-31 23:59:59"},
                        {-62135596801, "0000-12-31 23:59:59"},
                        {-62167219200, "0000-01-01 00:00:00"},
                        {-62167219201, "00-1-12-31 23:59:59"},
                        {-93724128000, "-1000-01-01 00:00:00"},
                        {END_OF_YEARS, "2147483647-12-31 23:59:59"},
                        {-67768040609740800, "-2147481748-01-01 00:00:00"}});
}

TEST(TimeStamp, EveryStampAgreesWithAStream) {
  std::mt19937_64 random(51);
  for (const char* zone : {"UTC0", CENTRAL_EUROPE, NEWFOUNDLAND, NEPAL}) {
    const TestTimeZone set(zone);
    for (int i = 0; i < 20000; ++i) {
      const auto wide = static_cast<int64_t>(random());
      const auto seconds = static_cast<long>(wide >> (8 + random() % 30));
      ASSERT_EQ(MakeTimeFormated(seconds), StampByStream(seconds)) << zone << ' ' << seconds;
    }
  }
}

// The breakdown fails, and the fields that it left are shown: the time of the day, with unset month and day.
TEST(TimeStamp, FailingBreakdownIsFormattedNevertheless) {
  if (sizeof(time_t) == sizeof(int32_t)) GTEST_SKIP() << "no breakdown fails";
  const TestTimeZone set("UTC0");
  for (const long seconds : {LONG_MAX, LONG_MIN}) {
    errno = 0;
    const std::string expected = StampByStream(seconds);
    ASSERT_EQ(errno, EOVERFLOW);
    errno = 77;
    EXPECT_EQ(MakeTimeFormated(seconds), expected);
    EXPECT_EQ(errno, 77);
  }
}

TEST(TimeStampDeathTest, YearBeyondIntEndsTheProcess) {
  if (sizeof(time_t) == sizeof(int32_t)) GTEST_SKIP() << "no year is";
  const TestTimeZone set("UTC0");
  EXPECT_EXIT(MakeTimeFormated(static_cast<long>(END_OF_YEARS + 1)), testing::KilledBySignal(SIGABRT), "");
}

TEST(TimeStamp, CurrentDateAndTimeComeFromTheClock) {
  const TestTimeZone set(CENTRAL_EUROPE);
  const TestClock clock(1794744309, timeval{});
  EXPECT_EQ(GetCurDateFormated(), "20261115");
  EXPECT_EQ(GetCurTimeFormated(), "2026-11-15 13:05:09");
}

TEST(TimeStamp, CurrentDateIsLocal) {
  const TestClock clock(1798757999 + 3600, timeval{});
  {
    const TestTimeZone set("UTC0");
    EXPECT_EQ(GetCurDateFormated(), "20261231");
  }
  const TestTimeZone set(CENTRAL_EUROPE);
  EXPECT_EQ(GetCurDateFormated(), "20270101");
}

TEST(TimeStamp, EveryDateAgreesWithAStream) {
  std::mt19937_64 random(52);
  const TestTimeZone set(CENTRAL_EUROPE);
  for (int i = 0; i < 20000; ++i) {
    const auto now = static_cast<time_t>(static_cast<int64_t>(random() >> (21 + random() % 12)) - 70000000000);
    const TestClock clock(now, timeval{});
    ASSERT_EQ(GetCurDateFormated(), DateByStream(now)) << now;
    ASSERT_EQ(GetCurTimeFormated(), StampByStream(now)) << now;
  }
}

TEST(TimeStamp, TextsDoNotDependOnTheGlobalLocale) {
  const TestTimeZone set("UTC0");
  const TestClock clock(1794744309, timeval{});
  const GroupingLocale locale;
  EXPECT_EQ(GetCurDateFormated(), "20261115");
  EXPECT_EQ(GetCurTimeFormated(), "2026-11-15 12:05:09");
}

TEST(CurrentSeconds, SecondsAndFractionComeFromTwoClocks) {
  const struct {
    timeval timeOfDay;
    double result;
  } rows[] = {{{1000, 0}, 1000.0},           {{1000, 1}, 1000.000001},  {{1000, 250000}, 1000.25},
              {{1000, 999999}, 1000.999999}, {{1001, 250000}, 1000.25}, {{5, 500000}, 1000.5},
              {{1000, 1500000}, 1000.5}};
  for (const auto& [timeOfDay, result] : rows) {
    const TestClock clock(1000, timeOfDay);
    EXPECT_EQ(GetCurTimeMilSec(), result) << timeOfDay.tv_sec << ' ' << timeOfDay.tv_usec;
  }
}

TEST(CurrentSeconds, FailingClockReturnsNoFraction) {
  const TestClock clock(1794744309);
  EXPECT_EQ(GetCurTimeMilSec(), 1794744309.0);
}

TEST(CurrentSeconds, IntegerPartIsTheTimeAtTheStart) {
  for (int i = 0; i < 1000; ++i) {
    const time_t before = std::time(nullptr);
    const double seconds = std::floor(GetCurTimeMilSec());
    const time_t after = std::time(nullptr);
    ASSERT_GE(seconds, static_cast<double>(before));
    ASSERT_LE(seconds, static_cast<double>(after));
  }
}

TEST(TimerReach, MultipleOfThePeriodAfterLast) {
  const struct {
    unsigned int last, now, period;
    bool isReached;
  } rows[] = {{5, 0, 10, false},
              {0, 0, 10, false},
              {9, 10, 10, true},
              {10, 19, 10, false},
              {9, 11, 10, true},
              {1, 9, 10, false},
              {10, 20, 10, true},
              {10, 10, 10, false},
              {0, 9, 10, false},
              {0, 10, 10, true},
              {0, 35, 10, true},
              {UINT_MAX, 3, 10, true},
              {9, 3, 10, false},
              {25, 5, 10, true},
              {5, 6, 1, true},
              {6, 6, 1, false},
              {UINT_MAX, 0, 10, false},
              {0, UINT_MAX, UINT_MAX, true},
              {0, UINT_MAX - 1, UINT_MAX, false}};
  for (const auto& row : rows)
    EXPECT_EQ(IsTimerReach(row.last, row.now, row.period), row.isReached)
        << row.last << ' ' << row.now << ' ' << row.period;
}

TEST(TimerReach, EverySmallCounterAgreesWithTheMultiples) {
  for (unsigned int period = 1; period < 12; ++period) {
    for (unsigned int last = 0; last < 40; ++last) {
      bool isReached = false;
      for (unsigned int now = last + 1; now < 60; ++now) {
        isReached |= now % period == 0;
        ASSERT_EQ(IsTimerReach(last, now, period), isReached) << last << ' ' << now << ' ' << period;
      }
    }
  }
}

}  // namespace
}  // namespace VARNEL_TEST
