#include <sys/time.h>

#include <charconv>
#include <ctime>

#include <ace/OS_NS_time.h>
#include <ace/Time_Value.h>

#include "checked_math.h"
#include "str.h"

namespace VARNEL_COMMON {

namespace {

std::tm LocalTime(time_t seconds) {
  std::tm local = {};
  ACE_OS::localtime_r(&seconds, &local);
  return local;
}

// Appends a number as a stream of width `width` and fill character "0" writes it: a sign comes behind the zeros.
void AppendPadded(std::string& text, int number, size_t width) {
  char digits[11];
  const char* end = std::to_chars(digits, digits + sizeof digits, number).ptr;
  const auto length = static_cast<size_t>(end - digits);
  if (length < width) text.append(width - length, '0');
  text.append(digits, length);
}

void AppendDate(std::string& text, const std::tm& local, const char* separator) {
  AppendPadded(text, CheckedAdd(local.tm_year, 1900), 4);
  AppendPadded(text.append(separator), CheckedAdd(local.tm_mon, 1), 2);
  AppendPadded(text.append(separator), local.tm_mday, 2);
}

}  // namespace

double GetCurTimeMilSec() {
  const time_t seconds = std::time(nullptr);
  timeval now;
  const ACE_Time_Value time = gettimeofday(&now, nullptr) == -1 ? ACE_Time_Value(-1, 0) : ACE_Time_Value(now);
  return static_cast<double>(time.usec()) / 1000000.0 + static_cast<double>(seconds);
}

bool IsTimerReach(unsigned int last, unsigned int now, unsigned int period) {
  return now != 0 && now / period != last / period;
}

std::string GetCurDateFormated() {
  std::string text;
  AppendDate(text, LocalTime(std::time(nullptr)), "");
  return text;
}

std::string MakeTimeFormated(long seconds) {
  const std::tm local = LocalTime(seconds);
  std::string text;
  AppendDate(text, local, "-");
  AppendPadded(text.append(" "), local.tm_hour, 2);
  AppendPadded(text.append(":"), local.tm_min, 2);
  AppendPadded(text.append(":"), local.tm_sec, 2);
  return text;
}

std::string GetCurTimeFormated() {
  return MakeTimeFormated(std::time(nullptr));
}

}  // namespace VARNEL_COMMON
