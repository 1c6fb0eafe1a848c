#ifndef VARNEL_PLATFORM_LOG_PROCESS_H
#define VARNEL_PLATFORM_LOG_PROCESS_H

#include <string>

/// @file
/// The logging service of the host.

// These names stay visible in a host that is built with hidden names.
#pragma GCC visibility push(default)

/// Severity of a log line. The library uses only these two values; a host may add its own.
enum EN_LOG_LEVEL : int {
  EN_LOG_LEVEL_WARNING = 3,  ///< a limit was exceeded; the operation truncated or refused its input
  EN_LOG_LEVEL_ERROR = 5,    ///< a call or a consistency check failed; the line carries an error code
};

/// The origin of a log line: source module ("cmdstr"), bare function name ("GetMsg") and source line.
///
/// A plain value. It keeps the two pointers, which must outlive it; the library passes literals.
class LocationInfo {
 public:
  /// @param module    name of the source module.
  /// @param function  bare function name.
  /// @param line      source line.
  LocationInfo(const char* module, const char* function, int line);
  const char* Module() const;    ///< @return the name of the source module.
  const char* Function() const;  ///< @return the bare function name.
  int Line() const;              ///< @return the source line.

 private:
  const char* m_module;
  const char* m_function;
  int m_line;
};

/// The host's logging service. Both overloads write every line, even if the service filters by level, and must be safe
/// to call from several threads concurrently. The bundled ones write control characters of the text, tab and DEL
/// included, as "\xNN", so that a text cannot add a line to the log. They ignore the failure of a sink, and throw only
/// std::bad_alloc, if the line itself cannot be composed.
class LogProcess {
 public:
  /// Writes a line. The library's warnings use this overload.
  ///
  /// @param module    the name of the log; the library always passes "transcommon_log".
  /// @param level     the severity of the line.
  /// @param text      the line, after the sensitive-text filter. May contain NULs.
  /// @param location  the origin of the line; valid during the call only.
  static void ForceLog(const char* module, EN_LOG_LEVEL level, const std::string& text, const LocationInfo& location);

  /// Writes a line. The library's error reports use this overload.
  ///
  /// @param module    as above.
  /// @param level     as above.
  /// @param text      the line, its message after the sensitive-text filter.
  /// @param location  as above.
  static void ForceLog(const char* module, EN_LOG_LEVEL level, const char* text, const LocationInfo& location);
};

#pragma GCC visibility pop

#endif
