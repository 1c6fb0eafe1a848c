#ifndef VARNEL_SRC_COMMON_H
#define VARNEL_SRC_COMMON_H

#include <string>
#include <string_view>
#include <type_traits>

namespace VARNEL_COMMON {

/// Constants of each module, built when the library is loaded. The prefix is defined by convention; no line uses it.
[[maybe_unused]] static const std::string CALL_FUNCTION_RETURN_ERROR = "Call Function return Error:";
[[maybe_unused]] static const std::string EMPTY_TEXT;

/// Error code of internal consistency failures.
constexpr int CONSISTENCY_ERROR = 0x3B001400;

/// Where a log line comes from; `function` is the bare name, without class or namespace.
struct LogSite {
  const char* module;
  const char* function;
  int line;
};

/// Writes a warning to the host's log. The whole text goes through the sensitive-text filter.
void LogWarning(const LogSite& site, std::string text);

/// Writes an error report, "ErrorCode:0x<code in hexadecimal>, <message>". Only the message goes through the filter.
void LogError(const LogSite& site, int code, std::string message);

inline std::string_view TextOf(std::string_view text) {
  return text;
}
template <typename Number, typename = std::enable_if_t<std::is_integral_v<Number>>>
std::string TextOf(Number number) {
  return std::to_string(number);
}

/// Joins texts and decimal numbers, which never follow the host's global locale.
template <typename... Parts>
std::string StrCat(const Parts&... parts) {
  std::string text;
  (text.append(TextOf(parts)), ...);
  return text;
}

}  // namespace VARNEL_COMMON

#endif
