#ifndef VARNEL_PLATFORM_LOG_PROCESS_H
#define VARNEL_PLATFORM_LOG_PROCESS_H

#include <string>

/// Severity of a log line. The library writes under these two values only; a host may add its own.
enum EN_LOG_LEVEL : int {
  EN_LOG_LEVEL_WARNING = 3,  ///< a limit was exceeded; the operation truncated or refused its input
  EN_LOG_LEVEL_ERROR = 5,    ///< a call or a consistency check failed; the line carries an error code
};

/// Where a log line comes from: source module ("cmdstr"), bare function name ("GetMsg") and source line.
///
/// A plain value. It keeps the two pointers it is given, which must outlive it; the library passes literals.
class LocationInfo {
 public:
  LocationInfo(const char* module, const char* function, int line);
  const char* Module() const;
  const char* Function() const;
  int Line() const;

 private:
  const char* m_module;
  const char* m_function;
  int m_line;
};

/// The host's logging service. Both overloads write the line unconditionally, whatever level filter the service has,
/// and must be safe to call from several threads at once.
///
/// @param module    the name under which the host files the line; the library always passes "transcommon_log".
/// @param text      the line, already through the sensitive-text filter. The library writes warnings through the
///                  string overload and error reports through the character-pointer overload.
/// @param location  valid during the call only.
class LogProcess {
 public:
  static void ForceLog(const char* module, EN_LOG_LEVEL level, const std::string& text, const LocationInfo& location);
  static void ForceLog(const char* module, EN_LOG_LEVEL level, const char* text, const LocationInfo& location);
};

#endif
