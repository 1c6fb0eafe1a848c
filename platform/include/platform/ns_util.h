#ifndef VARNEL_PLATFORM_NS_UTIL_H
#define VARNEL_PLATFORM_NS_UTIL_H

#include <string>

/// @file
/// Utility services of the host.

// These names stay visible in a host that is built with hidden names.
#pragma GCC visibility push(default)

/// Utility services of the host. All of them must be safe to call from several threads concurrently.
namespace NS_UTIL {

/// Masks the parts of log texts that the host considers sensitive.
///
/// The bundled filter replaces by "******" the values of password-like keys (PASSWORD, PASSWD, PWD, PSWD, SECRET,
/// TOKEN in any case, with any prefix), the arguments of such options, the content of such elements, passwords in
/// addresses that begin with scheme://user:password, and the password block of the TL1 commands ACT-USER, ED-PID,
/// ENT-USER-SECU and ED-USER-SECU. Values may be in quotes or brackets, at any depth of escaping. Filtering a filtered
/// text changes nothing. Its time is linear in the length of the text.
class CDCLogFilter {
 public:
  /// Returns the filter.
  ///
  /// @return the process-wide filter, never null; the host owns it.
  static CDCLogFilter* getInstance();

  /// Masks a text.
  ///
  /// @param text  rewritten in place. May contain any bytes, NULs included.
  void replaceAllSensInfo(std::string& text);
};

/// Case-sensitive wildcard match. (The misspelled name is part of the interface.)
class RepalaceSensInfo {
 public:
  /// Matches a text with a pattern.
  ///
  /// @param text     the text.
  /// @param pattern  "*" matches any run of characters, also an empty one; every other character matches itself.
  /// @return non-zero if the whole of `text` matches. The bundled matcher returns 0 if either is null, and takes time
  ///         linear in the length of both.
  int strmcmp(const char* text, const char* pattern);
};

/// Removes one file. Of a symbolic link it removes the link, not its target.
///
/// @param path  path of the file.
/// @return 0, or an errno value: ENOENT for a missing file, EISDIR for a folder, EINVAL for a path that contains a NUL
///         or whose last component is "." or "..".
int RemoveFile(const std::string& path);

/// Removes a folder and all its contents. Symbolic links in it are removed, never followed. An empty folder is removed
/// even if it cannot be read. A folder that could not be removed even if it were empty keeps its contents.
///
/// @param path  path of the folder.
/// @return 0, or an errno value: ENOENT for a missing folder; ENOTDIR for anything that is not a folder, including a
///         symbolic link to one; EINVAL, before anything is touched, for a path that contains a NUL or whose last
///         component is "." or "..". After any other failure part of the tree may be removed.
int RemoveDir(const std::string& path);

}  // namespace NS_UTIL

#pragma GCC visibility pop

#endif
