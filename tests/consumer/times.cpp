#include <varnel_common/str.h>

#include <cstdlib>
#include <ctime>
#include <iostream>

#include "families.h"

using namespace VARNEL_COMMON;

void UseTimes() {
  setenv("TZ", "UTC0", 1);
  tzset();
  std::cout << MakeTimeFormated(0) << ' ' << GetCurTimeFormated().size() << ' ' << GetCurDateFormated().size() << '\n';
  const auto before = static_cast<double>(std::time(nullptr));
  std::cout << (GetCurTimeMilSec() >= before) << IsTimerReach(9, 11, 10) << IsTimerReach(1, 9, 10) << '\n';
}
