#include "scripted_element.h"

#include <ace/INET_Addr.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
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

}  // namespace

ScriptedElement::ScriptedElement(const char* host) {
  const unsigned short anyPort = 0;
  ACE_INET_Addr address(anyPort, host);
  if (m_acceptor.open(address) != 0 || m_acceptor.get_local_addr(address) != 0) {
    throw std::runtime_error(std::string(host) + ": " + std::strerror(errno));
  }
  m_port = address.get_port_number();
}

ScriptedElement::~ScriptedElement() {
  m_acceptor.close();
}

void ScriptedElement::Refuse() {
  ::shutdown(m_acceptor.get_handle(), SHUT_RDWR);  // ends listening, but the socket keeps its port
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
