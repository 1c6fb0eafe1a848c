#ifndef VARNEL_TESTS_LOGGED_TEST_H
#define VARNEL_TESTS_LOGGED_TEST_H

#include <gtest/gtest.h>
#include <spdlog/sinks/base_sink.h>
#include <spdlog/spdlog.h>
#include <unistd.h>

#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace VARNEL_TEST {

/// Keeps log lines as "level module::function text".
class LogKeeper : public spdlog::sinks::base_sink<std::mutex> {
 public:
  std::vector<std::string> lines;

 protected:
  void sink_it_(const spdlog::details::log_msg& message) override {
    const auto level = spdlog::level::to_string_view(message.level);
    lines.push_back(std::string(level.data(), level.size()) + ' ' + message.source.filename +
                    "::" + message.source.funcname + ' ' + std::string(message.payload.data(), message.payload.size()));
  }
  void flush_() override {}
};

/// For the library over the bundled platform, with a logger of the program. A call that blocks ends the process.
class LoggedTest : public ::testing::Test {
 protected:
  using Lines = std::vector<std::string>;

  LoggedTest() {
    spdlog::register_logger(std::make_shared<spdlog::logger>("transcommon_log", m_keeper));
    alarm(20);
  }
  ~LoggedTest() override {
    alarm(0);
    spdlog::drop_all();
  }

  const Lines& Log() const { return m_keeper->lines; }

 private:
  const std::shared_ptr<LogKeeper> m_keeper = std::make_shared<LogKeeper>();
};

}  // namespace VARNEL_TEST

#endif
