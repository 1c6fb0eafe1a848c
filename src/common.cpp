#include "common.h"

#include <charconv>

#include "platform/log_process.h"
#include "platform/ns_util.h"

namespace VARNEL_COMMON {

namespace {

constexpr char LOG_MODULE[] = "transcommon_log";

std::string Hexadecimal(int code) {
  char digits[8];
  const auto end = std::to_chars(digits, digits + sizeof digits, static_cast<unsigned int>(code), 16).ptr;
  return {digits, end};
}

void Filter(std::string& text) {
  NS_UTIL::CDCLogFilter::getInstance()->replaceAllSensInfo(text);
}

}  // namespace

void LogWarning(const LogSite& site, std::string text) {
  Filter(text);
  const LocationInfo location(site.module, site.function, site.line);
  LogProcess::ForceLog(LOG_MODULE, EN_LOG_LEVEL_WARNING, text, location);
}

void LogError(const LogSite& site, int code, std::string message) {
  Filter(message);
  const std::string line = StrCat("ErrorCode:0x", Hexadecimal(code), ", ", message);
  const LocationInfo location(site.module, site.function, site.line);
  LogProcess::ForceLog(LOG_MODULE, EN_LOG_LEVEL_ERROR, line.c_str(), location);
}

}  // namespace VARNEL_COMMON
