#ifndef VARNEL_TOOLS_ELEMENT_CONNECTION_H
#define VARNEL_TOOLS_ELEMENT_CONNECTION_H

#include <ace/SOCK_Stream.h>
#include <sys/types.h>

#include <string>
#include <string_view>

#include "address.h"
#include "signals.h"

/// A TCP connection to an element, with keep-alive. Sending and receiving do not block.
class ElementConnection {
 public:
  ElementConnection() = default;
  ~ElementConnection() { Close(); }
  ElementConnection(const ElementConnection&) = delete;
  ElementConnection& operator=(const ElementConnection&) = delete;

  enum class Status {
    Open,
    TimedOut,
    Interrupted,  ///< a signal has arrived
    Failed,       ///< Error() returns why
  };

  /// Looks up the address and connects to the first of its numbers that can be reached.
  Status Open(const Address& address, MonotonicTime end, const Signals& signals);
  const std::string& Error() const { return m_error; }

  /// The descriptor to wait for; -1, which poll() ignores, if the connection is not open.
  int Waiting() const { return m_stream.get_handle(); }

  /// As send() and recv(): -1 and EAGAIN if nothing can be sent or received now.
  ssize_t Send(std::string_view bytes);
  ssize_t Receive(char* buffer, size_t size);

  void Close() { m_stream.close(); }

 private:
  Status Fail(const std::string& error);
  Status Connect(const std::vector<ACE_INET_Addr>& addresses, MonotonicTime end, const Signals& signals);
  Status ConnectTo(const ACE_INET_Addr& address, MonotonicTime end, const Signals& signals);
  Status FinishConnecting();

  ACE_SOCK_Stream m_stream;
  std::string m_error;
};

#endif
