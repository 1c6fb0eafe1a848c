#include <sys/time.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <ctime>

#include <ace/OS_NS_time.h>
#include <ace/Time_Value.h>

#include "checked_math.h"
#include "str.h"

namespace VARNEL_COMMON {

namespace {

std::tm LocalTime(time_t seconds) {
  const int callersErrno = errno;
  std::tm local = {};
  ACE_OS::localtime_r(&seconds, &local);
  errno = callersErrno;  // a missing time zone file changes it
  return local;
}

// A stamp while it is written.
class Stamp {
 public:
  // Adds a number as a stream of that width and fill character "0" writes it: a sign comes behind the zeros.
  Stamp& Number(int number, size_t width) {
    char digits[11];
    const char* end = std::to_chars(digits, digits + sizeof digits, number).ptr;
    for (auto length = static_cast<size_t>(end - digits); length < width; ++length)
      *m_end++ = '0';
    m_end = std::copy(static_cast<const char*>(digits), end, m_end);
    return *this;
  }

  Stamp& Separator(char c) {
    *m_end++ = c;
    return *this;
  }

  Stamp& Year(const std::tm& local) { return Number(CheckedAdd(local.tm_year, 1900), 4); }
  Stamp& Month(const std::tm& local) { return Number(CheckedAdd(local.tm_mon, 1), 2); }

  std::string Text() const { return {m_text, static_cast<size_t>(m_end - m_text)}; }

 private:
  char m_text[6 * 11 + 5];  // six numbers of any size and what stands between them
  char* m_end = m_text;
};

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
  const std::tm local = LocalTime(std::time(nullptr));
  return Stamp().Year(local).Month(local).Number(local.tm_mday, 2).Text();
}

std::string MakeTimeFormated(long seconds) {
  const std::tm local = LocalTime(seconds);
  Stamp stamp;
  stamp.Year(local).Separator('-').Month(local).Separator('-').Number(local.tm_mday, 2).Separator(' ');
  stamp.Number(local.tm_hour, 2).Separator(':').Number(local.tm_min, 2).Separator(':').Number(local.tm_sec, 2);
  return stamp.Text();
}

std::string GetCurTimeFormated() {
  return MakeTimeFormated(std::time(nullptr));
}

}  // namespace VARNEL_COMMON
