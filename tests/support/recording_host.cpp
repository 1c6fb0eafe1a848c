#include "recording_host.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <tuple>

#include "platform/annex_k.h"
#include "platform/kelp_os.h"
#include "platform/log_process.h"
#include "platform/ns_util.h"

namespace VARNEL_TEST {

bool operator==(const LogLine& a, const LogLine& b) {
  const auto fields = [](const LogLine& line) {
    return std::tie(line.level, line.overload, line.text, line.sourceModule, line.function, line.module);
  };
  return fields(a) == fields(b);
}

std::ostream& operator<<(std::ostream& out, const LogLine& line) {
  return out << line.module << " level " << line.level
             << (line.overload == Overload::StringObject ? " string " : " pointer ") << line.sourceModule
             << "::" << line.function << " \"" << line.text << '"';
}

LogLine Warning(const std::string& text, const std::string& sourceModule, const std::string& function) {
  return {3, Overload::StringObject, text, sourceModule, function};
}

LogLine Error(const std::string& text, const std::string& sourceModule, const std::string& function) {
  return {5, Overload::CharacterPointer, text, sourceModule, function};
}

RecordingHost& RecordingHost::Instance() {
  static RecordingHost host;
  return host;
}

namespace {

RecordingHost& Host() {
  return RecordingHost::Instance();
}

void Record(const char* module, int level, Overload overload, const std::string& text, const LocationInfo& location) {
  if (Host().logThrows) throw std::runtime_error("the log service is down");
  Host().lines.push_back({level, overload, text, location.Module(), location.Function(), module, location.Line()});
}

// A file whose reads fail after its readable bytes, and whose seeks may fail.
struct BrokenFile {
  FILE* file;
  long readable;
};

ssize_t ReadBroken(void* cookie, char* buffer, size_t size) {
  const auto& broken = *static_cast<BrokenFile*>(cookie);
  const long left = broken.readable < 0 ? static_cast<long>(size) : broken.readable - std::ftell(broken.file);
  if (left <= 0) {
    errno = Host().fileError;
    return -1;
  }
  return static_cast<ssize_t>(std::fread(buffer, 1, std::min(size, static_cast<size_t>(left)), broken.file));
}

int SeekBroken(void* cookie, off64_t* offset, int whence) {
  const auto& broken = *static_cast<BrokenFile*>(cookie);
  if (Host().seeks.Next()) {
    errno = Host().fileError;
    return -1;
  }
  if (fseeko(broken.file, *offset, whence) != 0) return -1;
  *offset = ftello(broken.file);
  return 0;
}

int CloseBroken(void* cookie) {
  const std::unique_ptr<BrokenFile> broken(static_cast<BrokenFile*>(cookie));
  return std::fclose(broken->file);
}

FILE* Break(FILE* file, const char* mode) {
  auto broken = std::make_unique<BrokenFile>(BrokenFile{file, Host().readableBytes});
  return fopencookie(broken.release(), mode, {ReadBroken, nullptr, SeekBroken, CloseBroken});
}

}  // namespace

}  // namespace VARNEL_TEST

using VARNEL_TEST::Host;
using VARNEL_TEST::Overload;

void LogProcess::ForceLog(const char* module, EN_LOG_LEVEL level, const std::string& text,
                          const LocationInfo& location) {
  VARNEL_TEST::Record(module, level, Overload::StringObject, text, location);
}

void LogProcess::ForceLog(const char* module, EN_LOG_LEVEL level, const char* text, const LocationInfo& location) {
  VARNEL_TEST::Record(module, level, Overload::CharacterPointer, text, location);
}

namespace NS_UTIL {

CDCLogFilter* CDCLogFilter::getInstance() {
  static CDCLogFilter filter;
  return &filter;
}

void CDCLogFilter::replaceAllSensInfo(std::string& text) {
  if (Host().filterThrows) throw std::runtime_error("the filter is down");
  Host().filtered.push_back(text);
  for (size_t at; (at = text.find("SECRET")) != std::string::npos;)
    text.replace(at, 6, "######");
}

}  // namespace NS_UTIL

namespace KELP_OS {

FILE* fopen(const char* path, const char* mode, const char* encoding) {
  Host().encodings.emplace_back(encoding);
  if (Host().opens.Next()) {
    errno = Host().fileError;
    return nullptr;
  }
  if (Host().aroundOpening) Host().aroundOpening(Host().moments++);
  FILE* file = std::fopen(path, mode);
  if (Host().aroundOpening) Host().aroundOpening(Host().moments++);
  const bool whole = Host().readableBytes < 0 && !Host().seeks.Armed();
  return file == nullptr || whole ? file : VARNEL_TEST::Break(file, mode);
}

int stat(const char* path, struct ::stat* buffer, const char* encoding) {
  Host().encodings.emplace_back(encoding);
  if (Host().stats.Next()) {
    errno = Host().fileError;
    return -1;
  }
  return ::stat(path, buffer);
}

}  // namespace KELP_OS

int memcpy_s(void* dest, size_t destMax, const void* src, size_t count) {
  const bool fails = Host().boundedCopies.Next();
  if (fails && !Host().failingCopiesCopy) return Host().boundedCopyResult;
  if (dest == nullptr || src == nullptr || count > destMax) return EINVAL;
  std::memcpy(dest, src, count);
  return fails ? Host().boundedCopyResult : 0;
}

int memset_s(void* dest, size_t destMax, int c, size_t count) {
  if (dest == nullptr || count > destMax) return EINVAL;
  std::memset(dest, c, count);
  return 0;
}

int strncpy_s(char* dest, size_t destMax, const char* src, size_t count) {
  if (Host().boundedCopies.Next()) return Host().boundedCopyResult;
  const size_t length = strnlen(src, count);
  if (length >= destMax) return EINVAL;
  std::memcpy(dest, src, length);
  dest[length] = '\0';
  return 0;
}

int snprintf_s(char* dest, size_t destMax, size_t count, const char* format, ...) {
  if (Host().formats.Next()) return -1;
  va_list arguments;
  va_start(arguments, format);
  const int length = std::vsnprintf(dest, destMax, format, arguments);
  va_end(arguments);
  return length < 0 || static_cast<size_t>(length) > count ? -1 : length;
}
