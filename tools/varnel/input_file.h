#ifndef VARNEL_TOOLS_INPUT_FILE_H
#define VARNEL_TOOLS_INPUT_FILE_H

#include <cstdio>
#include <memory>
#include <string>

struct CloseFile {
  void operator()(FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<FILE, CloseFile>;

/// A file named on the command line. Standard input ("-") and pipes are kept in a temporary file while this object
/// lives, so that they can be read by path and more than once.
class InputFile {
 public:
  explicit InputFile(const std::string& name);

  /// The name given.
  const std::string& Name() const { return m_name; }
  /// Where to read it.
  const std::string& Path() const { return m_path; }
  /// Why it cannot be read ("No such file or directory"); empty when it is a regular file that opens.
  const std::string& Error() const { return m_error; }

  /// Opens it for reading; null where Error() says why.
  File Open() const;

 private:
  std::string Prepare();
  std::string Keep(FILE* stream);

  std::string m_name;
  std::string m_path;
  std::string m_error;
  File m_kept;
};

#endif
