#include "library_log.h"

#include <spdlog/sinks/base_sink.h>
#include <spdlog/spdlog.h>

#include <iostream>
#include <memory>
#include <mutex>

#include "output.h"

namespace {

class StandardErrorSink : public spdlog::sinks::base_sink<std::mutex> {
  void sink_it_(const spdlog::details::log_msg& line) override {
    std::cout.flush();
    std::cerr << "varnel: library " << (line.level == spdlog::level::err ? "error" : "warning") << ": "
              << Escaped({line.payload.data(), line.payload.size()}) << " [" << line.source.filename << ' '
              << line.source.funcname << "]\n";
  }
  void flush_() override { std::cerr.flush(); }
};

}  // namespace

void RouteLibraryLog(bool visible) {
  const auto logger = std::make_shared<spdlog::logger>("transcommon_log");
  if (visible) logger->sinks().push_back(std::make_shared<StandardErrorSink>());
  spdlog::register_logger(logger);
}
