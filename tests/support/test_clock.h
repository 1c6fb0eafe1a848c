#ifndef VARNEL_TESTS_TEST_CLOCK_H
#define VARNEL_TESTS_TEST_CLOCK_H

#include <sys/time.h>

#include <ctime>
#include <string>

namespace VARNEL_TEST {

/// Replaces time() and gettimeofday() of the whole test program. The system's clock is read unless one is set.
class TestClock {
 public:
  /// Both calls from here on give fixed readings, each its own, until the object is gone.
  TestClock(time_t seconds, timeval timeOfDay);
  /// gettimeofday() fails.
  explicit TestClock(time_t seconds);
  ~TestClock();
  TestClock(const TestClock&) = delete;
  TestClock& operator=(const TestClock&) = delete;
};

/// Sets the time zone of the process while it lives.
class TestTimeZone {
 public:
  explicit TestTimeZone(const char* zone);
  ~TestTimeZone();
  TestTimeZone(const TestTimeZone&) = delete;
  TestTimeZone& operator=(const TestTimeZone&) = delete;

 private:
  bool m_wasSet;
  std::string m_before;
};

}  // namespace VARNEL_TEST

#endif
