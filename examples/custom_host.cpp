// A host with its own log and additional masking: functions defined by a program replace the bundled ones.

#include <varnel_common/pkgfile.h>
#include <varnel_common/platform/log_process.h>
#include <varnel_common/platform/ns_util.h>
#include <varnel_common/str.h>

#include <iostream>
#include <mutex>
#include <string>
#include <string_view>

// May be called from any thread.
void LogProcess::ForceLog(const char* module, EN_LOG_LEVEL level, const char* text, const LocationInfo& location) {
  static std::mutex oneAtATime;
  const std::lock_guard<std::mutex> lock(oneAtATime);
  std::cout << (level >= EN_LOG_LEVEL_ERROR ? "ERROR " : "warning ") << module << '/' << location.Module() << ' '
            << location.Function() << ": " << text << '\n';
}

void LogProcess::ForceLog(const char* module, EN_LOG_LEVEL level, const std::string& text,
                          const LocationInfo& location) {
  ForceLog(module, level, text.c_str(), location);
}

// Masks the text after any "="; the bundled filter masks the values of password-like keys.
void NS_UTIL::CDCLogFilter::replaceAllSensInfo(std::string& text) {
  constexpr std::string_view ENDS = " ,;/\"";
  std::string masked;
  bool inValue = false;
  for (const char c : text) {
    inValue = inValue && ENDS.find(c) == ENDS.npos;
    if (inValue) continue;
    masked += c;
    inValue = c == '=';
    if (inValue) masked += "***";
  }
  text = masked;
}

int main() {
  using namespace VARNEL_COMMON;
  const bool resolved = !ToAbsPath("/upload/user=alice,pwd=hunter2/sample.pkg").empty();
  const bool parsed = CPkgFile("/upload/serial=0815.pkg").ParsePkgFile() == 0;
  return resolved || parsed ? 1 : 0;
}
