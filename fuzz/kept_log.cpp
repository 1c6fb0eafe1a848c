#include "kept_log.h"

#include <platform/log_process.h>

namespace {

constexpr size_t MOST_LINES = 10000;

void Keep(const std::string& text, const LocationInfo& location) {
  auto& lines = VARNEL_FUZZ::KeptLog();
  if (lines.size() == MOST_LINES) lines.clear();
  lines.push_back({location.Function(), text});
}

}  // namespace

namespace VARNEL_FUZZ {

std::vector<KeptLine>& KeptLog() {
  static std::vector<KeptLine> lines;
  return lines;
}

}  // namespace VARNEL_FUZZ

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

void LogProcess::ForceLog(const char* /*module*/, EN_LOG_LEVEL /*level*/, const std::string& text,
                          const LocationInfo& location) {
  Keep(text, location);
}

void LogProcess::ForceLog(const char* /*module*/, EN_LOG_LEVEL /*level*/, const char* text,
                          const LocationInfo& location) {
  Keep(text, location);
}
