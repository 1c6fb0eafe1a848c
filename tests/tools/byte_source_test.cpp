#include "byte_source.h"

#include <sys/resource.h>

#include <chrono>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "scripted_element.h"
#include "temp_folder.h"

namespace VARNEL_TEST {

namespace {

using std::chrono::milliseconds;
using Status = ByteSource::Status;

// An element that plays its script beside the test. The test has to connect.
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

SourceOptions File(const std::string& path, double timeout = 0) {
  SourceOptions options;
  options.file = path;
  options.timeout = timeout;
  return options;
}

SourceOptions Growing(const std::string& path, double timeout) {
  SourceOptions options = File(path, timeout);
  options.follow = true;
  return options;
}

SourceOptions Connection(const std::string& address, double timeout) {
  SourceOptions options;
  options.address = address;
  options.timeout = timeout;
  return options;
}

// Reads until something other than data comes; gives all of the data.
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
  const auto source = MakeByteSource(File(m_folder.Write("file", bytes)), Limit::WholeRun);
  Status last = Status::Data;
  EXPECT_EQ(bytes, ReadAll(*source, last));
  EXPECT_EQ(Status::End, last);
  EXPECT_EQ("", source->Error());
}

TEST_F(ByteSourceTest, FailsForAFileThatIsNotThere) {
  const auto source = MakeByteSource(File(m_folder.Path("absent")), Limit::WholeRun);
  ExpectLastRead(Status::Failed, "No such file or directory", *source);
}

TEST_F(ByteSourceTest, EndsTheWholeRunThoughBytesKeepComing) {
  const auto source = MakeByteSource(File("/dev/zero", 0.05), Limit::WholeRun);
  std::string bytes;
  Status status = Status::Data;
  while ((status = source->Read(bytes)) == Status::Data)
    ASSERT_FALSE(bytes.empty());
  EXPECT_EQ(Status::TimedOut, status);
  EXPECT_EQ("the time is over after 0.05 seconds", source->Error());
}

TEST_F(ByteSourceTest, DoesNotTakeASlowReaderForSilence) {
  const auto source = MakeByteSource(File("/dev/zero", 0.02), Limit::Silence);
  std::string bytes;
  for (int i = 0; i < 3; ++i) {
    ASSERT_EQ(Status::Data, source->Read(bytes)) << source->Error();
    std::this_thread::sleep_for(milliseconds(40));
  }
}

TEST_F(ByteSourceTest, TimesOutWhenNothingComes) {
  const auto source = MakeByteSource(Growing(m_folder.Write("file", "text"), 0.2), Limit::Silence);
  std::string bytes;
  ASSERT_EQ(Status::Data, source->Read(bytes));
  EXPECT_EQ("text", bytes);
  ExpectLastRead(Status::TimedOut, "nothing came for 0.2 seconds", *source);
}

TEST_F(ByteSourceTest, LetsTheTimeOfSilenceBeginAnewWithEachByte) {
  ElementScript script;
  script.bytes = std::string(25, 'x');
  script.pieceSize = 1;
  script.pause = milliseconds(100);
  const RunningElement element(script);
  const auto source = MakeByteSource(Connection("127.0.0.1:" + element.Port(), 2), Limit::Silence);
  Status last = Status::Data;
  EXPECT_EQ(script.bytes, ReadAll(*source, last));
  EXPECT_EQ(Status::End, last) << source->Error();
}

TEST_F(ByteSourceTest, ComesBackWithoutBytesAtEachTick) {
  const auto source = MakeByteSource(Growing(m_folder.Write("file", ""), 0.3), Limit::Silence, milliseconds(5));
  std::string bytes;
  int ticks = 0;
  Status status = Status::Data;
  for (; (status = source->Read(bytes)) == Status::Data; ++ticks)
    ASSERT_EQ("", bytes);
  EXPECT_EQ(Status::TimedOut, status);
  EXPECT_GE(ticks, 1);
  EXPECT_LE(ticks, 60);
}

TEST_F(ByteSourceTest, WaitsWithoutBurningTime) {
  const auto source = MakeByteSource(Growing(m_folder.Write("file", "x"), 0.5), Limit::WholeRun);
  Status last = Status::Data;
  const milliseconds before = ProcessorTime();
  EXPECT_EQ("x", ReadAll(*source, last));
  EXPECT_EQ(Status::TimedOut, last);
  EXPECT_LT((ProcessorTime() - before).count(), 100);
}

TEST_F(ByteSourceTest, ReadsAShortenedFileFromItsBeginning) {
  const std::string path = m_folder.Write("file", "long text");
  const auto source = MakeByteSource(Growing(path, 50), Limit::Silence);
  std::string bytes;
  ASSERT_EQ(Status::Data, source->Read(bytes));
  std::ofstream(path, std::ios::trunc) << "new";
  ASSERT_EQ(Status::Data, source->Read(bytes)) << source->Error();
  EXPECT_EQ("new", bytes);
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
  const auto source = MakeByteSource(Connection("[::1]:" + element->Port(), 50), Limit::WholeRun);
  Status last = Status::Data;
  EXPECT_EQ("text", ReadAll(*source, last));
  EXPECT_EQ(Status::End, last) << source->Error();
}

TEST_F(ByteSourceTest, RefusesAnAddressWithoutAPort) {
  EXPECT_THROW(MakeByteSource(Connection("host", 0), Limit::WholeRun), CLI::ValidationError);
}

TEST_F(ByteSourceTest, FollowsNoStandardInput) {
  EXPECT_THROW(MakeByteSource(Growing("-", 0), Limit::WholeRun), CLI::ValidationError);
}

}  // namespace VARNEL_TEST
