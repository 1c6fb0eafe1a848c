#include "watch_elements.h"

#include <session.h>

#include <algorithm>
#include <utility>

#include "address.h"
#include "files.h"

namespace {

constexpr std::string_view BLANKS = " \t";

WatchElement FromArgument(const std::string& argument) {
  const size_t sign = argument.find('=');
  WatchElement element;
  element.address = sign == std::string::npos ? argument : argument.substr(sign + 1);
  element.name = argument.substr(0, sign);
  return element;
}

// A word that begins with "#" begins a comment.
std::vector<std::string> Words(std::string_view line) {
  std::vector<std::string> words;
  for (size_t begin = line.find_first_not_of(BLANKS); begin != std::string_view::npos && line[begin] != '#';) {
    const size_t end = std::min(line.find_first_of(BLANKS, begin), line.size());
    words.emplace_back(line.substr(begin, end - begin));
    begin = line.find_first_not_of(BLANKS, end);
  }
  return words;
}

bool IsControl(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return (byte < ' ' && c != '\t') || byte == 0x7F;
}

// A relative path is resolved in the folder of the list: "lists/all" and "secret" -> "lists/secret".
std::string FromFolderOf(const std::string& list, const std::string& path) {
  return path.front() == '/' ? path : list.substr(0, list.rfind('/') + 1) + path;
}

void CheckLogIn(const WatchElement& element) {
  VARNEL_TL1::Session trial({}, {});
  const char* const fault = trial.LogIn(element.user, element.password->View(), {});
  if (fault != nullptr) throw ElementError(element.name, std::string("cannot log in: ") + fault);
}

}  // namespace

bool WatchElement::IsSameLine(const WatchElement& other) const {
  return address == other.address && user == other.user && passwordFile == other.passwordFile;
}

std::string WatchElements::Check(const std::string& argument) {
  if (argument.compare(0, 1, "=") == 0) return '"' + argument + "\" has no name (expected [NAME=]HOST:PORT)";
  return CheckAddress(FromArgument(argument).address);
}

std::vector<WatchElement> WatchElements::Read() {
  m_elements.clear();
  m_names.clear();
  for (const std::string& argument : arguments)
    Add(FromArgument(argument), argument);
  ReadFile();
  size_t number = 0;
  for (size_t begin = 0; begin < m_list.size();) {
    const size_t end = std::min(m_list.find('\n', begin), m_list.size());
    std::string_view line(&m_list[begin], end - begin);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    AddLine(line, "line " + std::to_string(++number) + " of " + file);
    begin = end + 1;
  }
  FindPasswords();
  return std::move(m_elements);
}

void WatchElements::ReadFile() {
  if (file.empty() || (file == "-" && !m_list.empty())) return;
  InputFile input(file);
  std::string text;
  char buffer[4096];
  while (const size_t count = input.Read(buffer, sizeof buffer))
    text.append(buffer, count);
  if (!input.Error().empty()) throw ElementError(file, input.Error());
  m_list.swap(text);
}

void WatchElements::Add(WatchElement element, const std::string& place) {
  if (!m_names.insert(element.name).second) throw ElementError(place, "the name \"" + element.name + "\" occurs twice");
  if (element.user.empty()) element.user = user;
  if (element.passwordFile.empty()) element.passwordFile = passwordFile;
  if (!element.user.empty() && element.passwordFile.empty())
    throw ElementError(place, "user \"" + element.user + "\" has no password file");
  m_elements.push_back(std::move(element));
}

void WatchElements::AddLine(std::string_view line, const std::string& place) {
  if (std::any_of(line.begin(), line.end(), IsControl)) throw ElementError(place, "contains a control character");
  const std::vector<std::string> words = Words(line);
  if (words.empty()) return;
  if (words.size() == 1) throw ElementError(place, '"' + words[0] + "\" has no address (expected NAME HOST:PORT)");
  if (words.size() > 4) throw ElementError(place, '"' + words[4] + "\" is a word too many after the password file");
  const std::string wrong = CheckAddress(words[1]);
  if (!wrong.empty()) throw ElementError(place, wrong);
  WatchElement element;
  element.name = words[0];
  element.address = words[1];
  if (words.size() > 2) element.user = words[2];
  if (words.size() > 3) element.passwordFile = FromFolderOf(file, words[3]);
  Add(std::move(element), place);
}

void WatchElements::FindPasswords() {
  std::map<std::string, std::shared_ptr<const Password>> passwords = m_passwords;
  for (WatchElement& element : m_elements) {
    if (element.user.empty()) continue;
    std::shared_ptr<const Password>& known = passwords[element.passwordFile];
    if (known == nullptr) known = ReadPassword(element.passwordFile);
    element.password = known;
    CheckLogIn(element);
  }
}

std::shared_ptr<const Password> WatchElements::ReadPassword(const std::string& path) {
  const auto password = std::make_shared<Password>();
  const std::string wrong = password->ReadFile(path, -1);
  if (!wrong.empty()) throw ElementError(path, wrong);
  if (!password->IsFromFile()) m_passwords[path] = password;
  return password;
}
