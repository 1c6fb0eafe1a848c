#include "test_clock.h"

#include <cerrno>
#include <cstdlib>
#include <optional>

namespace {

struct Readings {
  time_t seconds;
  std::optional<timeval> timeOfDay;
};

std::optional<Readings> g_readings;

timespec SystemClock() {
  timespec now;
  clock_gettime(CLOCK_REALTIME, &now);
  return now;
}

}  // namespace

extern "C" time_t time(time_t* result) noexcept {
  const time_t seconds = g_readings ? g_readings->seconds : SystemClock().tv_sec;
  if (result != nullptr) *result = seconds;
  return seconds;
}

extern "C" int gettimeofday(timeval* result, void* /*zone*/) noexcept {
  if (!g_readings) {
    const timespec now = SystemClock();
    *result = {now.tv_sec, static_cast<suseconds_t>(now.tv_nsec / 1000)};
    return 0;
  }
  if (!g_readings->timeOfDay) {
    *result = {7, 250000};  // visible if a caller uses it as a reading
    errno = EFAULT;
    return -1;
  }
  *result = *g_readings->timeOfDay;
  return 0;
}

namespace VARNEL_TEST {

TestClock::TestClock(time_t seconds, timeval timeOfDay) {
  g_readings = Readings{seconds, timeOfDay};
}

TestClock::TestClock(time_t seconds) {
  g_readings = Readings{seconds, std::nullopt};
}

TestClock::~TestClock() {
  g_readings.reset();
}

TestTimeZone::TestTimeZone(const char* zone) {
  const char* before = std::getenv("TZ");
  m_wasSet = before != nullptr;
  if (m_wasSet) m_before = before;
  setenv("TZ", zone, 1);
  tzset();
}

TestTimeZone::~TestTimeZone() {
  if (m_wasSet) {
    setenv("TZ", m_before.c_str(), 1);
  } else {
    unsetenv("TZ");
  }
  tzset();
}

}  // namespace VARNEL_TEST
