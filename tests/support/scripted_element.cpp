#include "scripted_element.h"

#include <ace/INET_Addr.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <thread>

namespace VARNEL_TEST {

namespace {

bool SendAll(ACE_SOCK_Stream& connection, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t sent = ::send(connection.get_handle(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent < 0) return false;
    bytes.remove_prefix(static_cast<size_t>(sent));
  }
  return true;
}

void WaitForClose(ACE_SOCK_Stream& connection) {
  char ignored[256];
  while (connection.recv(ignored, sizeof ignored) > 0) {
  }
}

// "a\r\x41%" with ctag 7 -> "a", CR, "A7".
std::string Expanded(const std::string& text, const std::string& ctag) {
  std::string expanded;
  for (size_t i = 0; i < text.size(); ++i) {
    const char next = i + 1 < text.size() ? text[i + 1] : '\0';
    if (text[i] == '%') {
      expanded += ctag;
    } else if (text[i] != '\\' || next == '\0') {
      expanded += text[i];
    } else if (next == 'x') {
      expanded += static_cast<char>(std::stoi(text.substr(i + 2, 2), nullptr, 16));
      i += 3;
    } else {
      expanded += next == 'r' ? '\r' : next == 'n' ? '\n' : next;
      ++i;
    }
  }
  return expanded;
}

// Plays the steps of an element on a connection.
class Conversation {
 public:
  Conversation(ACE_SOCK_Stream& connection, std::ostream& received) : m_connection(connection), m_received(received) {}

  // False if the connection is over.
  bool Do(const std::string& line) {
    std::istringstream words(line);
    std::string step;
    size_t number = 1;
    words >> step;
    if (step == "receive") return Receive();
    if (step == "repeat" || step == "wait" || step == "piece") words >> number;
    std::string text;
    std::getline(words >> std::ws, text);
    if (step == "wait") std::this_thread::sleep_for(std::chrono::milliseconds(number));
    if (step == "piece") m_piece = number;
    if (step == "reset") Reset();
    if (step == "stay") WaitForClose(m_connection);
    for (size_t i = 0; (step == "send" || step == "repeat") && i < number; ++i) {
      if (!Send(Expanded(text, m_ctag))) return false;
    }
    return true;
  }

 private:
  bool Receive() {
    std::string command;
    int block = 0;
    bool quoted = false;
    m_ctag.clear();
    for (char c = '\0', before = '\0'; c != ';' || quoted; before = before == '\\' ? '\0' : c) {
      if (m_connection.recv(&c, 1) != 1) return false;
      command += c;
      if (c == '"' && before != '\\') quoted = !quoted;
      if (c == ':' && !quoted) {
        ++block;
      } else if (block == 3 && c != ';') {
        m_ctag += c;
      }
    }
    m_received << command << std::endl;
    return true;
  }

  bool Send(const std::string& bytes) {
    for (size_t begin = 0; begin < bytes.size(); begin += m_piece) {
      if (!SendAll(m_connection, std::string_view(bytes).substr(begin, m_piece))) return false;
      if (m_piece < bytes.size()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
  }

  void Reset() {
    linger none = {1, 0};
    m_connection.set_option(SOL_SOCKET, SO_LINGER, &none, sizeof none);
  }

  ACE_SOCK_Stream& m_connection;
  std::ostream& m_received;
  std::string m_ctag;
  size_t m_piece = std::string::npos;
};

}  // namespace

ScriptedElement::ScriptedElement(const char* host, unsigned short port) {
  ACE_INET_Addr address(port, host);
  if (m_acceptor.open(address) != 0 || m_acceptor.get_local_addr(address) != 0) {
    throw std::runtime_error(std::string(host) + ": " + std::strerror(errno));
  }
  m_port = address.get_port_number();
}

ScriptedElement::~ScriptedElement() {
  m_acceptor.close();
}

void ScriptedElement::Refuse() {
  ::shutdown(m_acceptor.get_handle(), SHUT_RDWR);  // no longer listens, but keeps the port
}

void ScriptedElement::Hang() {
  ::listen(m_acceptor.get_handle(), 0);
  sockaddr_in own = {};
  socklen_t size = sizeof own;
  ::getsockname(m_acceptor.get_handle(), reinterpret_cast<sockaddr*>(&own), &size);
  for (int i = 0; i < 4; ++i)  // more connections than the queue accepts; they stay open
    ::connect(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0), reinterpret_cast<sockaddr*>(&own), size);
}

void ScriptedElement::Talk(const std::string& script, std::ostream& received) {
  ACE_SOCK_Stream connection;
  if (m_acceptor.accept(connection) != 0) return;
  std::istringstream steps(script);
  Conversation conversation(connection, received);
  for (std::string line; std::getline(steps, line) && conversation.Do(line);) {
  }
  connection.close();
}

void ScriptedElement::Serve(const ElementScript& script) {
  ACE_SOCK_Stream connection;
  if (m_acceptor.accept(connection) != 0) return;
  bool connected = SendOnce(connection, script);
  while (connected && script.forEver)
    connected = SendOnce(connection, script);
  if (connected && script.silent) WaitForClose(connection);
  connection.close();
}

bool ScriptedElement::SendOnce(ACE_SOCK_Stream& connection, const ElementScript& script) {
  const size_t size = script.pieceSize == 0 ? script.bytes.size() : script.pieceSize;
  for (size_t begin = 0; begin < script.bytes.size(); begin += size) {
    if (!SendAll(connection, std::string_view(script.bytes).substr(begin, size))) return false;
    std::this_thread::sleep_for(script.pause);
  }
  return true;
}

}  // namespace VARNEL_TEST
