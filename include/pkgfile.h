#ifndef VARNEL_PKGFILE_H
#define VARNEL_PKGFILE_H

#include <list>
#include <string>

#include "varnel_export.h"

/// @file
/// Package description files.

namespace VARNEL_COMMON {

/// One software entry of a package.
struct SOFT_INFO {
  std::string strColumn1;      ///< first column, trimmed
  std::string strColumn2;      ///< second column, trimmed
  unsigned int uiColumn5 = 0;  ///< fifth column as ConvertFromString() reads it; 0 without a number
};

/// A package description file: an NE software file whose text has a section "[File Description]" with one entry per
/// line, eight columns separated by ":".
///
/// The members are the result: read them directly. One object belongs to one thread at a time; memory exhaustion throws
/// std::bad_alloc, the entries read so far stay.
class VARNEL_API CPkgFile {
 public:
  /// Keeps the path; nothing is read yet.
  ///
  /// @param path  of the package description file.
  CPkgFile(const std::string& path);
  CPkgFile(const CPkgFile&) = delete;             ///< not copied: it owns its entries
  CPkgFile& operator=(const CPkgFile&) = delete;  ///< not copied: it owns its entries
  virtual ~CPkgFile();                            ///< deletes all entries

  /// Reads version and entries of the file given at construction. Also accepts files with damaged headers or a
  /// refused type: call CheckZEPFileHead() first to refuse them. Failures to read the headers are logged as
  /// readZEPFileHead() describes.
  ///
  /// m_strVersion becomes the version text, also of a file of a refused type; empty if none could be read.
  ///
  /// @return as ParsePkgSoftInfo(), which describes the entries.
  unsigned int ParsePkgFile();

  /// Appends the entries of a file to m_lstSoftInfo; call ClearSoftInfo() first for a fresh list.
  ///
  /// The section begins after a line that contains "[File Description]" and ends at a line that contains "[END]", at
  /// one that begins with "[", or with the file. Lines without exactly eight columns (also those with a ":" in a value)
  /// and comments (first column beginning with "#" or containing the bytes A3 A3) are skipped silently. Lines are cut
  /// at 1023 bytes and at a NUL.
  ///
  /// @param path  of the file, which need not be the one given at construction. Its headers are not checked.
  /// @return 0; 0x3BA0120F when there is no section (or no readable file), when a column of an entry is longer than 255
  ///         bytes, or when m_lstSoftInfo, including entries of earlier calls, is empty at the end. Each is logged;
  ///         entries read before stay.
  unsigned int ParsePkgSoftInfo(const std::string& path);

  /// Deletes all entries.
  void ClearSoftInfo();

  std::string m_strFilePath;            ///< the path given at construction
  std::string m_strExtra;               ///< empty; free for the caller
  std::string m_strVersion;             ///< version text after the headers, set by ParsePkgFile()
  std::list<SOFT_INFO*> m_lstSoftInfo;  ///< the entries in file order; owned by this object
};

}  // namespace VARNEL_COMMON

#endif
