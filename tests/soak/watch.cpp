#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <fstream>
#include <memory>
#include <random>
#include <stdexcept>

#include <ace/INET_Addr.h>
#include <ace/SOCK_Acceptor.h>
#include <ace/SOCK_Stream.h>

#include "soak.h"

namespace VARNEL_TEST {

namespace {

constexpr size_t ELEMENTS = 200;
constexpr size_t MOST_GROWTH = 8192;  // kibibytes

using Clock = std::chrono::steady_clock;

struct Element {
  ACE_SOCK_Acceptor acceptor;
  ACE_SOCK_Stream connection;
  unsigned int messages = 0;
};

/// `varnel watch` with its standard output in a pipe.
class Watcher {
 public:
  explicit Watcher(std::vector<std::string> command) {
    std::vector<char*> arguments;
    for (std::string& argument : command)
      arguments.push_back(argument.data());
    arguments.push_back(nullptr);
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("cannot make a pipe");
    m_process = fork();
    if (m_process == 0) {
      dup2(ends[1], STDOUT_FILENO);
      execv(arguments.front(), arguments.data());
      _exit(127);
    }
    close(ends[1]);
    m_output = ends[0];
  }

  int Output() const { return m_output; }

  /// False at the end.
  bool Read() {
    char buffer[65536];
    const ssize_t count = read(m_output, buffer, sizeof buffer);
    if (count <= 0) return false;
    m_rest.append(buffer, static_cast<size_t>(count));
    size_t begin = 0;
    for (size_t end; (end = m_rest.find('\n', begin)) != std::string::npos; begin = end + 1)
      m_messages += m_rest.compare(begin, 8, "{\"type\":") == 0 ? 1U : 0U;
    m_rest.erase(0, begin);
    return true;
  }

  size_t Messages() const { return m_messages; }

  size_t Kibibytes() const {
    std::ifstream status("/proc/" + std::to_string(m_process) + "/status");
    for (std::string line; std::getline(status, line);)
      if (line.compare(0, 6, "VmRSS:") == 0) return std::stoul(line.substr(6));
    return 0;
  }

  /// The exit status.
  int Stop() {
    kill(m_process, SIGTERM);
    while (Read()) {
    }
    int status = 0;
    waitpid(m_process, &status, 0);
    close(m_output);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

 private:
  pid_t m_process;
  int m_output = -1;
  std::string m_rest;
  size_t m_messages = 0;
};

// A connected element sends a message, and sometimes closes the connection after it.
size_t Act(Element& element, std::minstd_rand& random) {
  if (element.connection.get_handle() == ACE_INVALID_HANDLE) {
    ACE_Time_Value none;
    element.acceptor.accept(element.connection, nullptr, &none);
    return 0;
  }
  const std::string message = "\r\n\n   NE 26-03-04 05:06:07\r\nA  " + std::to_string(++element.messages) +
                              " REPT EVT EQPT\r\n   \"SLOT-1:FAN\"\r\n;";
  const bool sent = ::send(element.connection.get_handle(), message.data(), message.size(), MSG_NOSIGNAL) ==
                    static_cast<ssize_t>(message.size());
  if (random() % 100 == 0) element.connection.close();
  return sent ? 1 : 0;
}

}  // namespace

void SoakWatch(const SoakSize& size, const std::string& varnel) {
  std::vector<std::unique_ptr<Element>> elements;
  std::vector<std::string> command{varnel, "watch", "--retry-max", "0.1"};
  for (size_t i = 0; i < ELEMENTS; ++i) {
    elements.push_back(std::make_unique<Element>());
    ACE_INET_Addr address(static_cast<unsigned short>(0), "127.0.0.1");
    if (elements.back()->acceptor.open(address) != 0) throw std::runtime_error("cannot listen");
    elements.back()->acceptor.get_local_addr(address);
    command.push_back(std::to_string(i) + "=127.0.0.1:" + std::to_string(address.get_port_number()));
  }
  Watcher watcher(command);
  std::minstd_rand random;
  size_t sent = 0, early = 0;
  const auto start = Clock::now();
  const auto lasts = [&] { return std::chrono::duration<double>(Clock::now() - start).count(); };
  for (double seconds = 0; seconds < size.watch; seconds = lasts()) {
    for (const auto& element : elements)
      sent += Act(*element, random);
    for (pollfd output{watcher.Output(), POLLIN, 0}; poll(&output, 1, 1) > 0 && watcher.Read();) {
    }
    if (early == 0 && seconds > size.watch / 4) early = watcher.Kibibytes();
  }
  while (watcher.Messages() < sent && lasts() < size.watch + 20 && watcher.Read()) {
  }
  const size_t late = watcher.Kibibytes();
  const size_t arrived = watcher.Messages();
  const int status = watcher.Stop();
  Expect(status == 0 && arrived == sent && sent > 0 && (!MEMORY_COUNTS || late < early + MOST_GROWTH),
         "watch, 200 elements that come and go: " + std::to_string(arrived) + " of " + std::to_string(sent) +
             " messages, " + std::to_string(early) + " KiB, at the end " + std::to_string(late) + " KiB, status " +
             std::to_string(status));
}

}  // namespace VARNEL_TEST
