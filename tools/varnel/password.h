#ifndef VARNEL_TOOLS_PASSWORD_H
#define VARNEL_TOOLS_PASSWORD_H

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

/// A password in memory, which is wiped when it is replaced or destroyed and has no copies.
class Password {
 public:
  static constexpr size_t MAX_LENGTH = 1024;  ///< bytes

  Password() = default;
  ~Password() { Wipe(); }
  Password(const Password&) = delete;
  Password& operator=(const Password&) = delete;

  /// Reads the first line of a regular file or unnamed pipe, without its line end (LF or CR LF). A file to which users
  /// other than its owner have access is refused, and so is a named pipe, which may never have a writer.
  ///
  /// @param path       "-" is standard input; the bytes after the line stay unread.
  /// @param interrupt  ends the wait for a pipe when it is readable; -1 for none.
  /// @return the error; the password is then empty. An empty text for success.
  std::string ReadFile(const std::string& path, int interrupt);

  /// Asks for a line on the controlling terminal, without echo. The state of the terminal is always restored.
  ///
  /// @param interrupt  ends the wait when it is readable; -1 for none.
  /// @return the error; the password is then empty. An empty text for success.
  std::string Ask(const std::string& prompt, int interrupt);

  std::string_view View() const { return {m_text.data(), m_length}; }

  /// True if it was read from a regular file, which can be read again.
  bool IsFromFile() const { return m_isFromFile; }

  void Wipe();

 private:
  std::string ReadLine(int file, int interrupt);

  std::array<char, MAX_LENGTH + 2> m_text = {};  // with the CR of a line end, and one excess byte
  size_t m_length = 0;
  bool m_isFromFile = false;
};

#endif
