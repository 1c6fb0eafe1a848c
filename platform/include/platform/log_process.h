#ifndef VARNEL_PLATFORM_LOG_PROCESS_H
#define VARNEL_PLATFORM_LOG_PROCESS_H

#include <string>

/// @file
/// The logging service of the host.

// A host that is built with hidden names still offers these.
#pragma GCC visibility push(default)

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

/// The host's logging service. Both overloads write the line unconditionally, whatever level filter the service has,
/// and must be safe to call from several threads at once. The bundled ones throw std::bad_alloc alone.
class LogProcess {
 public:
  /// Writes a line; the library's warnings come this way.
  ///
  /// @param module    the name under which the host files the line; the library always passes "transcommon_log".
  /// @param level     its severity.
  /// @param text      the line, already through the sensitive-text filter. It may hold NULs.
  /// @param location  where it comes from; valid during the call only.
  static void ForceLog(const char* module, EN_LOG_LEVEL level, const std::string& text, const LocationInfo& location);

  /// Writes a line; the library's error reports come this way.
  ///
  /// @param module    as above.
  /// @param level     as above.
  /// @param text      the line, its message already through the sensitive-text filter.
  /// @param location  as above.
  static void ForceLog(const char* module, EN_LOG_LEVEL level, const char* text, const LocationInfo& location);
};

#pragma GCC visibility pop

#endif
