#ifndef VARNEL_TOOLS_WATCH_ELEMENTS_H
#define VARNEL_TOOLS_WATCH_ELEMENTS_H

#include <map>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "password.h"

/// An element to watch.
struct WatchElement {
  std::string name;
  std::string address;                       ///< accepted by CheckAddress()
  std::string user;                          ///< empty for no log-in
  std::string passwordFile;                  ///< of the user
  std::shared_ptr<const Password> password;  ///< of the user

  /// True if both descriptions are the same; the password itself may have changed.
  bool IsSameLine(const WatchElement& other) const;
};

/// An error in a list.
class ElementError : public std::runtime_error {
 public:
  ElementError(const std::string& subject, const std::string& what) : std::runtime_error(what), m_subject(subject) {}

  /// An element, a file or "line 3 of FILE".
  const std::string& Subject() const { return m_subject; }

 private:
  std::string m_subject;
};

/// The elements of a command line and of its list.
class WatchElements {
 public:
  std::vector<std::string> arguments;  ///< [NAME=]HOST:PORT, which Check() accepts
  std::string file;                    ///< with lines NAME HOST:PORT [USER [PASSWORD-FILE]]; empty for none
  std::string user;                    ///< of elements that name none; empty for none
  std::string passwordFile;            ///< of users that have none; empty for none

  /// Returns why an argument is refused; empty if it is accepted.
  static std::string Check(const std::string& argument);

  /// Reads the list and all password files; standard input and pipes are not read again.
  ///
  /// @throw ElementError  if a line is wrong, a name occurs twice, or a password is missing or cannot be sent
  std::vector<WatchElement> Read();

 private:
  void ReadFile();
  void Add(WatchElement element, const std::string& place);
  void AddLine(std::string_view line, const std::string& place);
  void FindPasswords();
  std::shared_ptr<const Password> ReadPassword(const std::string& path);

  std::vector<WatchElement> m_elements;  // while they are read
  std::set<std::string> m_names;
  std::string m_list;
  std::map<std::string, std::shared_ptr<const Password>> m_passwords;  // those that cannot be read again, by file
};

#endif
