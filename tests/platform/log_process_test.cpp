#include "platform/log_process.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <spdlog/sinks/base_sink.h>
#include <spdlog/spdlog.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <memory>
#include <mutex>
#include <new>
#include <stdexcept>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

namespace VARNEL_TEST {
namespace {

constexpr char MODULE[] = "some_module";

struct Line {
  spdlog::level::level_enum level;
  std::string text;
  std::string logger = MODULE;
  std::string sourceModule = "str";
  std::string function = "ToAbsPath";
  int line = 265;
};

bool operator==(const Line& a, const Line& b) {
  const auto fields = [](const Line& line) {
    return std::tie(line.level, line.text, line.logger, line.sourceModule, line.function, line.line);
  };
  return fields(a) == fields(b);
}

std::ostream& operator<<(std::ostream& out, const Line& line) {
  return out << line.logger << ' ' << line.level << ' ' << line.sourceModule << "::" << line.function << ':'
             << line.line << " \"" << line.text << '"';
}

using Lines = std::vector<Line>;

class Recorder : public spdlog::sinks::base_sink<std::mutex> {
 public:
  Lines lines;
  size_t flushes = 0;

 protected:
  void sink_it_(const spdlog::details::log_msg& message) override {
    const auto& source = message.source;
    lines.push_back({message.level, std::string(message.payload.data(), message.payload.size()),
                     std::string(message.logger_name.data(), message.logger_name.size()), source.filename,
                     source.funcname, source.line});
  }
  void flush_() override { ++flushes; }
};

template <typename Failure>
class Broken : public Recorder {
 public:
  explicit Broken(Failure failure) : m_failure(failure) {}

 private:
  void sink_it_(const spdlog::details::log_msg&) override { throw m_failure; }

  Failure m_failure;
};

template <typename Failure>
spdlog::sink_ptr MakeBroken(Failure failure) {
  return std::make_shared<Broken<Failure>>(failure);
}

class LogService : public ::testing::Test {
 protected:
  ~LogService() override { spdlog::drop_all(); }

  std::shared_ptr<spdlog::logger> Register(std::vector<spdlog::sink_ptr> sinks, const char* name = MODULE) {
    auto logger = std::make_shared<spdlog::logger>(name, sinks.begin(), sinks.end());
    spdlog::register_logger(logger);
    return logger;
  }

  std::shared_ptr<Recorder> recorder = std::make_shared<Recorder>();
  const LocationInfo location{"str", "ToAbsPath", 265};
};

TEST_F(LogService, LocationIsAPlainValue) {
  const LocationInfo copy = location;
  EXPECT_STREQ(copy.Module(), "str");
  EXPECT_STREQ(copy.Function(), "ToAbsPath");
  EXPECT_EQ(copy.Line(), 265);
}

TEST_F(LogService, LineGoesToTheLoggerOfTheModule) {
  const auto other = std::make_shared<Recorder>();
  Register({recorder});
  Register({other}, "other_module");
  LogProcess::ForceLog(MODULE, EN_LOG_LEVEL_WARNING, std::string("a warning"), location);
  LogProcess::ForceLog(MODULE, EN_LOG_LEVEL_ERROR, "an error", location);
  EXPECT_EQ(recorder->lines, (Lines{{spdlog::level::warn, "a warning"}, {spdlog::level::err, "an error"}}));
  EXPECT_EQ(recorder->flushes, 2U);
  EXPECT_EQ(other->lines, Lines{});
}

TEST_F(LogService, BothOverloadsTakeBothLevels) {
  Register({recorder});
  LogProcess::ForceLog(MODULE, EN_LOG_LEVEL_WARNING, "a warning", location);
  LogProcess::ForceLog(MODULE, EN_LOG_LEVEL_ERROR, std::string("an error"), location);
  EXPECT_EQ(recorder->lines, (Lines{{spdlog::level::warn, "a warning"}, {spdlog::level::err, "an error"}}));
}

TEST_F(LogService, HostLevelsAreMappedToTheNearestBelow) {
  Register({recorder});
  for (const int level : {-1, 0, 2, 4, 6, 100})
    LogProcess::ForceLog(MODULE, static_cast<EN_LOG_LEVEL>(level), "x", location);
  EXPECT_EQ(recorder->lines, (Lines{{spdlog::level::info, "x"},
                                    {spdlog::level::info, "x"},
                                    {spdlog::level::info, "x"},
                                    {spdlog::level::warn, "x"},
                                    {spdlog::level::err, "x"},
                                    {spdlog::level::err, "x"}}));
}

TEST_F(LogService, NoLevelSuppressesALine) {
  recorder->set_level(spdlog::level::off);
  Register({recorder})->set_level(spdlog::level::off);
  LogProcess::ForceLog(MODULE, EN_LOG_LEVEL_WARNING, "x", location);
  EXPECT_EQ(recorder->lines, (Lines{{spdlog::level::warn, "x"}}));
}

TEST_F(LogService, EverySinkGetsTheLine) {
  const auto second = std::make_shared<Recorder>();
  Register({recorder, second});
  LogProcess::ForceLog(MODULE, EN_LOG_LEVEL_ERROR, "x", location);
  EXPECT_EQ(recorder->lines, (Lines{{spdlog::level::err, "x"}}));
  EXPECT_EQ(second->lines, (Lines{{spdlog::level::err, "x"}}));
}

TEST_F(LogService, LoggerWithoutSinksDropsTheLine) {
  Register({});
  ::testing::internal::CaptureStderr();
  LogProcess::ForceLog(MODULE, EN_LOG_LEVEL_ERROR, "x", location);
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

TEST_F(LogService, FailingSinkAffectsNeitherOtherSinksNorTheCaller) {
  const auto second = std::make_shared<Recorder>();
  Register({recorder, MakeBroken(spdlog::spdlog_ex("the disk is full")), MakeBroken(std::bad_alloc()), MakeBroken(1),
            second});
  LogProcess::ForceLog(MODULE, EN_LOG_LEVEL_ERROR, "x", location);
  EXPECT_EQ(recorder->lines, (Lines{{spdlog::level::err, "x"}}));
  EXPECT_EQ(second->lines, (Lines{{spdlog::level::err, "x"}}));
}

// A sink that is a cancellation point, like writing to a file.
class Cancelled : public Recorder {
 private:
  void sink_it_(const spdlog::details::log_msg&) override {
    pthread_cancel(pthread_self());
    pthread_testcancel();
  }
};

TEST_F(LogService, CancellationIsNotCaught) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the exception that cancels a thread has no object, which the sanitizer reports";
#endif
  Register({std::make_shared<Cancelled>()});
  bool goesOn = false;
  std::thread([&] {
    LogProcess::ForceLog(MODULE, EN_LOG_LEVEL_ERROR, "x", location);
    goesOn = true;
  }).join();
  EXPECT_FALSE(goesOn);
}

TEST_F(LogService, TextIsNotInterpretedAsAFormat) {
  Register({recorder});
  const std::vector<const char*> texts{"", "{} {0} {:d}", "%s%n", "\xFF\x80", " ~\\x0a"};
  Lines expected;
  for (const char* text : texts) {
    LogProcess::ForceLog(MODULE, EN_LOG_LEVEL_ERROR, text, location);
    expected.push_back({spdlog::level::err, text});
  }
  EXPECT_EQ(recorder->lines, expected);
}

TEST_F(LogService, ControlCharactersAreEscaped) {
  Register({recorder});
  const std::string text("a\0b\nc\r\td\x1B\x1F\x7F", 11);
  LogProcess::ForceLog(MODULE, EN_LOG_LEVEL_WARNING, text, location);
  LogProcess::ForceLog(MODULE, EN_LOG_LEVEL_WARNING, text.c_str(), location);
  EXPECT_EQ(recorder->lines,
            (Lines{{spdlog::level::warn, R"(a\x00b\x0ac\x0d\x09d\x1b\x1f\x7f)"}, {spdlog::level::warn, "a"}}));
}

// The written lines, with each time stamp as "[0000-00-00 00:00:00.000]".
std::string WithoutTimes(std::string written) {
  constexpr size_t STAMP_LENGTH = sizeof "[0000-00-00 00:00:00.000]" - 1;
  for (size_t line = 0; line < written.size(); line = written.find('\n', line) + 1) {
    for (size_t i = line; i < line + STAMP_LENGTH && i < written.size(); ++i)
      if (std::isdigit(static_cast<unsigned char>(written[i])) != 0) written[i] = '0';
  }
  return written;
}

TEST_F(LogService, WithoutALoggerStandardErrorGetsOneLine) {
  const std::string text = "the text {goes} on";
  ::testing::internal::CaptureStderr();
  LogProcess::ForceLog("unregistered", EN_LOG_LEVEL_WARNING, text, location);
  LogProcess::ForceLog("unregistered", EN_LOG_LEVEL_ERROR, "ErrorCode:0x22, text", location);
  EXPECT_EQ(WithoutTimes(::testing::internal::GetCapturedStderr()),
            "[0000-00-00 00:00:00.000] [unregistered] [warning] [str:ToAbsPath:265] " + text +
                "\n[0000-00-00 00:00:00.000] [unregistered] [error] [str:ToAbsPath:265] ErrorCode:0x22, text\n");
}

TEST_F(LogService, ClosedStandardErrorIsIgnored) {
  const int standardError = dup(STDERR_FILENO);
  close(STDERR_FILENO);
  EXPECT_NO_THROW(LogProcess::ForceLog("unregistered", EN_LOG_LEVEL_ERROR, "x", location));
  dup2(standardError, STDERR_FILENO);
  close(standardError);
}

TEST_F(LogService, ThreadsNeitherLoseNorMixLines) {
  constexpr int THREADS = 4;
  constexpr int LINES = 500;
  Register({recorder});
  ::testing::internal::CaptureStderr();
  std::vector<std::thread> threads;
  for (int thread = 0; thread < THREADS; ++thread) {
    threads.emplace_back([this, thread] {
      for (int i = 0; i < LINES; ++i) {
        LogProcess::ForceLog(MODULE, EN_LOG_LEVEL_WARNING, std::to_string(thread), location);
        LogProcess::ForceLog("unregistered", EN_LOG_LEVEL_WARNING, "text", location);
      }
    });
  }
  for (std::thread& thread : threads)
    thread.join();
  const std::string written = ::testing::internal::GetCapturedStderr();
  EXPECT_EQ(std::count(written.begin(), written.end(), '\n'), THREADS * LINES);
  for (int thread = 0; thread < THREADS; ++thread)
    EXPECT_EQ(
        std::count(recorder->lines.begin(), recorder->lines.end(), Line{spdlog::level::warn, std::to_string(thread)}),
        LINES);
}

}  // namespace
}  // namespace VARNEL_TEST
