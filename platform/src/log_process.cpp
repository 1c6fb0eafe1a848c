#include "platform/log_process.h"

#include <spdlog/sinks/stdout_sinks.h>
#include <spdlog/spdlog.h>

#include <exception>
#include <new>
#include <string_view>

namespace {

spdlog::level::level_enum SpdlogLevel(EN_LOG_LEVEL level) {
  if (level >= EN_LOG_LEVEL_ERROR) return spdlog::level::err;
  return level >= EN_LOG_LEVEL_WARNING ? spdlog::level::warn : spdlog::level::info;
}

// Never destroyed: lines may still be written while the process winds down.
spdlog::sinks::sink& StandardError() {
  static auto& sink = []() -> spdlog::sinks::sink& {
    auto* created = new spdlog::sinks::stderr_sink_mt;
    created->set_pattern("[%Y-%m-%d %H:%M:%S.%e] [%n] [%l] [%s:%!:%#] %v");
    return *created;
  }();
  return sink;
}

void WriteTo(spdlog::sinks::sink& sink, const spdlog::details::log_msg& line) {
  try {
    sink.log(line);
    sink.flush();
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception&) {
    // A sink that cannot write must not stop the operation that is being reported on.
  }
}

// Lines go to the sinks themselves: a logger's level would hold them back, and they are to be written unconditionally.
void Write(const char* module, EN_LOG_LEVEL level, std::string_view text, const LocationInfo& location) {
  const spdlog::source_loc source(location.Module(), location.Line(), location.Function());
  const spdlog::details::log_msg line(source, module, SpdlogLevel(level),
                                      spdlog::string_view_t(text.data(), text.size()));
  const auto logger = spdlog::get(module);
  if (logger == nullptr) return WriteTo(StandardError(), line);
  for (const auto& sink : logger->sinks())
    WriteTo(*sink, line);
}

}  // namespace

LocationInfo::LocationInfo(const char* module, const char* function, int line)
    : m_module(module), m_function(function), m_line(line) {}

const char* LocationInfo::Module() const {
  return m_module;
}

const char* LocationInfo::Function() const {
  return m_function;
}

int LocationInfo::Line() const {
  return m_line;
}

void LogProcess::ForceLog(const char* module, EN_LOG_LEVEL level, const std::string& text,
                          const LocationInfo& location) {
  Write(module, level, text, location);
}

void LogProcess::ForceLog(const char* module, EN_LOG_LEVEL level, const char* text, const LocationInfo& location) {
  Write(module, level, text, location);
}
