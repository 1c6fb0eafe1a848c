#ifndef VARNEL_TESTS_TEMP_FOLDER_H
#define VARNEL_TESTS_TEMP_FOLDER_H

#include <filesystem>
#include <string>

namespace VARNEL_TEST {

/// A temporary folder, removed with its contents at the end.
class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  /// Absolute path, without symbolic links.
  const std::string& Path() const { return m_path; }
  std::string Path(const std::string& name) const { return m_path + "/" + name; }

  /// Writes a file and returns its path.
  std::string Write(const std::string& name, const std::string& bytes) const;

 private:
  std::string m_path;
};

/// The bytes of a file.
std::string ReadWhole(const std::string& path);

/// Number of descriptors this process has open.
size_t OpenDescriptors();

}  // namespace VARNEL_TEST

#endif
