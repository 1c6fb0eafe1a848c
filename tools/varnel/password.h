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

  /// Reads the first line of a regular file or pipe, without its line end (LF or CR LF). A file to which users other
  /// than its owner have access is refused.
  ///
  /// @param path  "-" is standard input; the bytes after the line stay unread.
  /// @return what is wrong, or nothing; the password is then empty.
  std::string ReadFile(const std::string& path);

  /// Asks for a line on the controlling terminal, without echo. The state of the terminal is always restored.
  ///
  /// @param interrupt  ends the wait when it is readable; -1 for none.
  /// @return what is wrong, or nothing; the password is then empty.
  std::string Ask(const std::string& prompt, int interrupt);

  std::string_view View() const { return {m_text.data(), m_length}; }
  void Wipe();

 private:
  std::string ReadLine(int file, int interrupt);

  std::array<char, MAX_LENGTH + 2> m_text = {};  // with the CR of a line end, and one excess byte
  size_t m_length = 0;
};

#endif
