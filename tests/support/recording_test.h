#ifndef VARNEL_TESTS_RECORDING_TEST_H
#define VARNEL_TESTS_RECORDING_TEST_H

#include <gtest/gtest.h>

#include "recording_host.h"

namespace VARNEL_TEST {

/// A fixture that starts and ends with a fresh recording host.
class RecordingTest : public ::testing::Test {
 protected:
  RecordingTest() { host.Reset(); }
  ~RecordingTest() override { host.Reset(); }

  RecordingHost& host = RecordingHost::Instance();
};

using Lines = std::vector<LogLine>;

}  // namespace VARNEL_TEST

#endif
