#include "byte_source.h"

#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "address.h"
#include "scripted_element.h"
#include "temp_folder.h"

namespace VARNEL_TEST {

namespace {

using std::chrono::milliseconds;
using Status = ByteSource::Status;

// An element that plays its script while the test runs. The test has to connect.
class RunningElement {
 public:
  explicit RunningElement(const ElementScript& script, const char* host = "127.0.0.1")
      : m_element(host), m_thread([this, script] { m_element.Serve(script); }) {}
  ~RunningElement() { m_thread.join(); }
  RunningElement(const RunningElement&) = delete;
  RunningElement& operator=(const RunningElement&) = delete;

  std::string Port() const { return std::to_string(m_element.Port()); }

 private:
  ScriptedElement m_element;
  std::thread m_thread;
};

SourceOptions File(const std::string& path) {
  SourceOptions options;
  options.files = {path};
  return options;
}

SourceOptions Growing(const std::string& path) {
  SourceOptions options = File(path);
  options.follow = true;
  return options;
}

SourceOptions Connection(const std::string& address) {
  SourceOptions options;
  options.address = address;
  return options;
}

SourceOptions WithTimeout(SourceOptions options, double seconds) {
  options.timeout = seconds;
  return options;
}

SourceOptions WithIdle(SourceOptions options, double seconds) {
  options.idle = seconds;
  return options;
}

// The only source of some options, with its limits.
class OnlySource {
 public:
  explicit OnlySource(const SourceOptions& options, milliseconds tick = milliseconds(0))
      : m_limits(options), m_source(MakeByteSource(options, options.Names().front(), m_limits, tick)) {}

  ByteSource* operator->() const { return m_source.get(); }
  ByteSource& operator*() const { return *m_source; }

 private:
  TimeLimits m_limits;
  std::unique_ptr<ByteSource> m_source;
};

// Reads until the status is not Data; returns all data.
std::string ReadAll(ByteSource& source, Status& last) {
  std::string all, bytes;
  while ((last = source.Read(bytes)) == Status::Data)
    all += bytes;
  return all;
}

void ExpectLastRead(Status expected, const std::string& error, ByteSource& source) {
  std::string bytes = "old";
  EXPECT_EQ(expected, source.Read(bytes));
  EXPECT_EQ("", bytes);
  EXPECT_EQ(error, source.Error());
}

milliseconds ProcessorTime() {
  rusage usage = {};
  getrusage(RUSAGE_THREAD, &usage);
  const auto time = [](const timeval& value) { return milliseconds(value.tv_sec * 1000 + value.tv_usec / 1000); };
  return time(usage.ru_utime) + time(usage.ru_stime);
}

class ByteSourceTest : public testing::Test {
 protected:
  TempFolder m_folder;
};

}  // namespace

TEST_F(ByteSourceTest, ReadsAFileToItsEnd) {
  const std::string bytes(200000, 'x');
  const OnlySource source(File(m_folder.Write("file", bytes)));
  Status last = Status::Data;
  EXPECT_EQ(bytes, ReadAll(*source, last));
  EXPECT_EQ(Status::End, last);
  EXPECT_EQ("", source->Error());
}

TEST_F(ByteSourceTest, FailsForAMissingFile) {
  const OnlySource source(File(m_folder.Path("absent")));
  ExpectLastRead(Status::Failed, "No such file or directory", *source);
}

TEST_F(ByteSourceTest, EndsTheRunAtItsLimitAlthoughBytesKeepArriving) {
  const OnlySource source(WithTimeout(File("/dev/zero"), 0.05));
  std::string bytes;
  Status status = Status::Data;
  while ((status = source->Read(bytes)) == Status::Data)
    ASSERT_FALSE(bytes.empty());
  EXPECT_EQ(Status::TimedOut, status);
  EXPECT_EQ("time limit reached after 0.05 seconds", source->Error());
}

TEST_F(ByteSourceTest, ASlowReaderIsNotIdle) {
  const OnlySource source(WithIdle(File("/dev/zero"), 0.02));
  std::string bytes;
  for (int i = 0; i < 3; ++i) {
    ASSERT_EQ(Status::Data, source->Read(bytes)) << source->Error();
    std::this_thread::sleep_for(milliseconds(40));
  }
}

TEST_F(ByteSourceTest, TimesOutWithoutInput) {
  const OnlySource source(WithIdle(Growing(m_folder.Write("file", "text")), 0.2));
  std::string bytes;
  ASSERT_EQ(Status::Data, source->Read(bytes));
  EXPECT_EQ("text", bytes);
  ExpectLastRead(Status::TimedOut, "no input for 0.2 seconds", *source);
}

TEST_F(ByteSourceTest, RestartsTheIdleTimeWithEachByte) {
  ElementScript script;
  script.bytes = std::string(25, 'x');
  script.pieceSize = 1;
  script.pause = milliseconds(100);
  const RunningElement element(script);
  const OnlySource source(WithIdle(Connection("127.0.0.1:" + element.Port()), 2));
  Status last = Status::Data;
  EXPECT_EQ(script.bytes, ReadAll(*source, last));
  EXPECT_EQ(Status::End, last) << source->Error();
}

TEST_F(ByteSourceTest, ReturnsWithoutBytesAtEachTick) {
  const OnlySource source(WithIdle(Growing(m_folder.Write("file", "")), 0.3), milliseconds(5));
  std::string bytes;
  int ticks = 0;
  Status status = Status::Data;
  for (; (status = source->Read(bytes)) == Status::Data; ++ticks)
    ASSERT_EQ("", bytes);
  EXPECT_EQ(Status::TimedOut, status);
  EXPECT_GE(ticks, 1);
  EXPECT_LE(ticks, 60);
}

TEST_F(ByteSourceTest, WaitsWithoutUsingTheProcessor) {
  const OnlySource source(WithTimeout(Growing(m_folder.Write("file", "x")), 0.5));
  Status last = Status::Data;
  const milliseconds before = ProcessorTime();
  EXPECT_EQ("x", ReadAll(*source, last));
  EXPECT_EQ(Status::TimedOut, last);
  EXPECT_LT((ProcessorTime() - before).count(), 100);
}

TEST_F(ByteSourceTest, ReadsATruncatedFileFromItsStart) {
  const std::string path = m_folder.Write("file", "long text");
  const OnlySource source(WithIdle(Growing(path), 50));
  std::string bytes;
  ASSERT_EQ(Status::Data, source->Read(bytes));
  std::ofstream(path, std::ios::trunc) << "new";
  ASSERT_EQ(Status::Restarted, source->Read(bytes)) << source->Error();
  ASSERT_EQ(Status::Data, source->Read(bytes)) << source->Error();
  EXPECT_EQ("new", bytes);
}

TEST_F(ByteSourceTest, ReadsARenamedFileToItsEndAndThenItsReplacement) {
  const std::string path = m_folder.Write("file", "one");
  const OnlySource source(WithIdle(Growing(path), 50));
  std::string bytes;
  ASSERT_EQ(Status::Data, source->Read(bytes));
  std::ofstream(path, std::ios::app) << " and more";
  ASSERT_EQ(0, std::rename(path.c_str(), m_folder.Path("old").c_str()));
  std::ofstream(path) << "two";
  ASSERT_EQ(Status::Data, source->Read(bytes)) << source->Error();
  EXPECT_EQ(" and more", bytes);
  ASSERT_EQ(Status::Restarted, source->Read(bytes)) << source->Error();
  ASSERT_EQ(Status::Data, source->Read(bytes)) << source->Error();
  EXPECT_EQ("two", bytes);
}

TEST_F(ByteSourceTest, ConnectsToAnIpv6Address) {
  ElementScript script;
  script.bytes = "text";
  std::optional<RunningElement> element;
  try {
    element.emplace(script, "::1");
  } catch (const std::runtime_error& error) {
    GTEST_SKIP() << error.what();
  }
  const OnlySource source(WithTimeout(Connection("[::1]:" + element->Port()), 50));
  Status last = Status::Data;
  EXPECT_EQ("text", ReadAll(*source, last));
  EXPECT_EQ(Status::End, last) << source->Error();
}

TEST(Address, NeedsHostAndPort) {
  for (const char* good : {"host:1", "10.0.0.7:telnet", "[::1]:3083"})
    EXPECT_EQ("", CheckAddress(good)) << good;
  for (const char* bad : {"", "host", "host:", ":1", "[::1]", "::1:3083"})
    EXPECT_NE("", CheckAddress(bad)) << bad;
}

TEST_F(ByteSourceTest, FollowsOneFileOnly) {
  SourceOptions two = Growing("one");
  two.files.emplace_back("two");
  for (const SourceOptions& options : {Growing("-"), two})
    EXPECT_THROW(OnlySource{options}, CLI::ValidationError);
}

TEST_F(ByteSourceTest, FollowedFilesAndConnectionsAreLive) {
  EXPECT_FALSE(File("file").IsLive("file"));
  EXPECT_TRUE(Growing("file").IsLive("file"));
  EXPECT_TRUE(Connection("host:7").IsLive("host:7"));
}

}  // namespace VARNEL_TEST
