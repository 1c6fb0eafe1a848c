#ifndef VARNEL_TOOLS_FILES_H
#define VARNEL_TOOLS_FILES_H

#include <cstdint>
#include <optional>
#include <string>

#include "util/file_handle.h"

/// A descriptor that is closed with its owner.
class Descriptor {
 public:
  explicit Descriptor(int number = -1) : m_number(number) {}
  ~Descriptor() { Reset(-1); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  void Reset(int number);
  int Get() const { return m_number; }

 private:
  int m_number;
};

/// A file named on the command line, opened once and read from start to end. "-" is standard input.
class InputFile {
 public:
  /// Opens the file; for a pipe this waits for a writer. Error() reports a failure.
  explicit InputFile(const std::string& name);

  const std::string& Name() const { return m_name; }
  /// Why the file cannot be opened or read ("No such file or directory"), or empty.
  const std::string& Error() const { return m_error; }
  /// The length of a regular file; nothing for a pipe or a device.
  std::optional<uint64_t> Size() const { return m_size; }

  /// Reads the next bytes: up to `size` of them, 0 at the end and after an error.
  size_t Read(char* buffer, size_t size);

  /// Copies a pipe or device up to its end to a temporary file, from which Read() then reads.
  void StorePipe();

 private:
  std::string Open();

  std::string m_name;
  std::string m_error;
  std::optional<uint64_t> m_size;
  Descriptor m_opened;
};

/// A file that receives its name only when it is complete; "-" is standard output. A symbolic link of that name is
/// replaced, not its target. A failure throws std::runtime_error with the reason.
class OutputFile {
 public:
  explicit OutputFile(const std::string& name);
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  void Write(const void* data, size_t size);
  void Write(const std::string& text) { Write(text.data(), text.size()); }

  /// Renames the complete file to its name. Without this call the file is removed.
  void Finish();

 private:
  void OpenTemporary();
  void RefuseSpecialFiles() const;

  std::string m_name;
  std::string m_temporary;
  VARNEL_UTIL::FileHandle m_file;
};

#endif
