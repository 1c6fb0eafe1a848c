#ifndef VARNEL_TESTS_TEST_CLOCK_H
#define VARNEL_TESTS_TEST_CLOCK_H

#include <sys/time.h>

#include <ctime>
#include <string>

namespace VARNEL_TEST {

/// Replaces time() and gettimeofday() of the whole test program. The system's clock is read unless one is set.
class TestClock {
 public:
  /// While this object exists, both calls return fixed readings, which may differ.
  TestClock(time_t seconds, timeval timeOfDay);
  /// gettimeofday() fails.
  explicit TestClock(time_t seconds);
  ~TestClock();
  TestClock(const TestClock&) = delete;
  TestClock& operator=(const TestClock&) = delete;
};

/// Sets the time zone of the process while it exists.
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
