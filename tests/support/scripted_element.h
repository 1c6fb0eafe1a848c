#ifndef VARNEL_TESTS_SCRIPTED_ELEMENT_H
#define VARNEL_TESTS_SCRIPTED_ELEMENT_H

#include <ace/SOCK_Acceptor.h>
#include <ace/SOCK_Stream.h>

#include <chrono>
#include <ostream>
#include <string>

namespace VARNEL_TEST {

/// How an element sends its bytes.
struct ElementScript {
  std::string bytes;
  size_t pieceSize = 0;                ///< bytes sent in one piece; 0 for all
  std::chrono::milliseconds pause{0};  ///< between two pieces
  bool forEver = false;                ///< begins again after the last byte, until the other side goes away
  bool silent = false;                 ///< after the last byte keeps the connection open until the other side goes away
};

/// A network element on a loopback port.
class ScriptedElement {
 public:
  /// @param host  127.0.0.1 or ::1
  /// @param port  0 for one of its own
  /// @throw std::runtime_error  when it cannot listen there
  explicit ScriptedElement(const char* host = "127.0.0.1", unsigned short port = 0);
  ~ScriptedElement();
  ScriptedElement(const ScriptedElement&) = delete;
  ScriptedElement& operator=(const ScriptedElement&) = delete;

  /// The port; the element listens on it from its construction.
  unsigned short Port() const { return m_port; }

  /// From now on every connection is refused, and no other process can use the port.
  void Refuse();

  /// From now on connecting neither succeeds nor fails, since the queue of the port is full.
  void Hang();

  /// Accepts one connection and plays the steps of a script, one per line, until the connection ends:
  ///
  ///     receive      a command up to its ";", which is written to `received` as a line
  ///     send TEXT    with \r, \n, \xNN and "%" for the ctag of the command that was received last
  ///     repeat N TEXT   sends a text N times
  ///     piece N      from now on sends N bytes at a time
  ///     wait N       milliseconds
  ///     stay         until the other side goes away
  ///     reset        ends the connection by a reset later
  void Talk(const std::string& script, std::ostream& received);

  /// Accepts one connection, plays the script and closes the connection. It is no error if the other side closes early.
  void Serve(const ElementScript& script);

 private:
  static bool SendOnce(ACE_SOCK_Stream& connection, const ElementScript& script);

  ACE_SOCK_Acceptor m_acceptor;
  unsigned short m_port = 0;
};

}  // namespace VARNEL_TEST

#endif
