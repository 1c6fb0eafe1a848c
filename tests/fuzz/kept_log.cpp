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

void LogProcess::ForceLog(const char* /*module*/, EN_LOG_LEVEL /*level*/, const std::string& text,
                          const LocationInfo& location) {
  Keep(text, location);
}

void LogProcess::ForceLog(const char* /*module*/, EN_LOG_LEVEL /*level*/, const char* text,
                          const LocationInfo& location) {
  Keep(text, location);
}
