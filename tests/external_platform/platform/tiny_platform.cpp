#include "tiny_platform.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "platform/annex_k.h"
#include "platform/kelp_os.h"
#include "platform/log_process.h"
#include "platform/ns_util.h"

std::vector<std::string>& CollectedLines() {
  static std::vector<std::string> lines;
  return lines;
}

int& FileCalls() {
  static int calls = 0;
  return calls;
}

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

void LogProcess::ForceLog(const char* module, EN_LOG_LEVEL level, const std::string& text, const LocationInfo&) {
  CollectedLines().push_back(std::string(module) + ' ' + std::to_string(level) + ' ' + text);
}

void LogProcess::ForceLog(const char* module, EN_LOG_LEVEL level, const char* text, const LocationInfo& location) {
  ForceLog(module, level, std::string(text), location);
}

namespace NS_UTIL {

CDCLogFilter* CDCLogFilter::getInstance() {
  static CDCLogFilter filter;
  return &filter;
}

void CDCLogFilter::replaceAllSensInfo(std::string& text) {
  const size_t at = text.find("classified");
  if (at != std::string::npos) text.replace(at, std::strlen("classified"), "(hidden)");
}

int RepalaceSensInfo::strmcmp(const char* text, const char* pattern) {
  return std::strcmp(text, pattern) == 0 ? 17 : 0;
}

int RemoveFile(const std::string&) {
  return 101;
}

int RemoveDir(const std::string&) {
  return 102;
}

}  // namespace NS_UTIL

namespace KELP_OS {

FILE* fopen(const char* path, const char* mode, const char*) {
  ++FileCalls();
  return std::fopen(path, mode);
}

int stat(const char* path, struct ::stat* buffer, const char*) {
  ++FileCalls();
  return ::stat(path, buffer);
}

}  // namespace KELP_OS

int memcpy_s(void* dest, size_t destMax, const void* src, size_t count) {
  if (count > destMax) return ERANGE;
  std::memcpy(dest, src, count);
  return 0;
}

int memset_s(void* dest, size_t destMax, int c, size_t count) {
  if (count > destMax) return ERANGE;
  std::memset(dest, c, count);
  return 0;
}

int strncpy_s(char* dest, size_t destMax, const char* src, size_t count) {
  const size_t length = strnlen(src, count);
  if (length >= destMax) return ERANGE;
  std::memcpy(dest, src, length);
  dest[length] = '\0';
  return 0;
}

int snprintf_s(char* dest, size_t destMax, size_t count, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int length = std::vsnprintf(dest, destMax, format, arguments);
  va_end(arguments);
  return length < 0 || static_cast<size_t>(length) > count || static_cast<size_t>(length) >= destMax ? -1 : length;
}
