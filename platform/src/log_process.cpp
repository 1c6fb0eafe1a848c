#include "platform/log_process.h"

#include <cxxabi.h>
#include <spdlog/sinks/stdout_sinks.h>
#include <spdlog/spdlog.h>

#include <string>
#include <string_view>

namespace {

spdlog::level::level_enum SpdlogLevel(EN_LOG_LEVEL level) {
  if (level >= EN_LOG_LEVEL_ERROR) return spdlog::level::err;
  return level >= EN_LOG_LEVEL_WARNING ? spdlog::level::warn : spdlog::level::info;
}

// Never destroyed: lines may still be written while the process exits.
spdlog::sinks::sink& StandardError() {
  static auto& sink = []() -> spdlog::sinks::sink& {
    auto* created = new spdlog::sinks::stderr_sink_mt;
    created->set_pattern("[%Y-%m-%d %H:%M:%S.%e] [%n] [%l] [%s:%!:%#] %v");
    return *created;
  }();
  return sink;
}

// Example: a line feed becomes "\x0a". No text can add a line to the log or control a terminal.
std::string Escaped(std::string_view text) {
  constexpr char DIGITS[] = "0123456789abcdef";
  std::string escaped;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < ' ' || byte == 0x7F) {
      escaped.append("\\x").append(1, DIGITS[byte >> 4]).append(1, DIGITS[byte & 0xF]);
    } else {
      escaped += c;
    }
  }
  return escaped;
}

void WriteTo(spdlog::sinks::sink& sink, const spdlog::details::log_msg& line) {
  try {
    sink.log(line);
    sink.flush();
  } catch (const abi::__forced_unwind&) {
    throw;  // the cancellation of a thread must not be caught
  } catch (...) {
    // A sink that cannot write must not stop the operation that reports.
  }
}

// Lines are written to the sinks directly: the level of the logger must not suppress them.
void Write(const char* module, EN_LOG_LEVEL level, std::string_view text, const LocationInfo& location) {
  const spdlog::source_loc source(location.Module(), location.Line(), location.Function());
  const std::string escaped = Escaped(text);
  const spdlog::details::log_msg line(source, module, SpdlogLevel(level), escaped);
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
