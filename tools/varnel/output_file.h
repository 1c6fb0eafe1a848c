#ifndef VARNEL_TOOLS_OUTPUT_FILE_H
#define VARNEL_TOOLS_OUTPUT_FILE_H

#include <string>

#include "input_file.h"

/// A file that appears under its name only once it is complete; "-" is standard output. A symbolic link of that name is
/// replaced itself. What fails throws std::runtime_error with the reason.
class OutputFile {
 public:
  explicit OutputFile(const std::string& name);
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  void Write(const void* data, size_t size);
  void Write(const std::string& text) { Write(text.data(), text.size()); }

  /// Gives the complete file its name. Without this nothing is left of it.
  void Finish();

 private:
  void OpenTemporary();
  void RefuseSpecialFiles() const;

  std::string m_name;
  std::string m_temporary;
  File m_file;
};

#endif
