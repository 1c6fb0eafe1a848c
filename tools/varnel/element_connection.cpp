#include "element_connection.h"

#include <ace/SOCK_Connector.h>
#include <netinet/tcp.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <future>
#include <memory>
#include <thread>

namespace {

using Status = ElementConnection::Status;

// Open if the descriptor is ready.
Status WaitFor(int descriptor, short events, MonotonicTime end, const Signals& signals) {
  pollfd waiting[] = {{descriptor, events, 0}, {signals.Waiting(), POLLIN, 0}};
  PollUntil(waiting, 2, end);
  if (waiting[1].revents != 0) return Status::Interrupted;
  return waiting[0].revents != 0 ? Status::Open : Status::TimedOut;
}

// A look-up has no time limit, therefore it runs in a separate thread. A late one ends with the process.
class Resolving {
 public:
  explicit Resolving(const Address& address) : m_done(std::make_shared<Descriptor>(eventfd(0, EFD_CLOEXEC))) {
    std::packaged_task<Lookup()> lookUp([address] { return LookUp(address); });
    m_result = lookUp.get_future();
    std::thread([lookUp = std::move(lookUp), done = m_done]() mutable {
      lookUp();
      const uint64_t one = 1;
      if (write(done->Get(), &one, sizeof one) < 0) return;  // never, as the counter is 0
    }).detach();
  }

  int Waiting() const { return m_done->Get(); }
  Lookup Result() { return m_result.get(); }

 private:
  std::shared_ptr<Descriptor> m_done;
  std::future<Lookup> m_result;
};

}  // namespace

Status ElementConnection::Open(const Address& address, MonotonicTime end, const Signals& signals) {
  Resolving resolving(address);
  const Status status = WaitFor(resolving.Waiting(), POLLIN, end, signals);
  if (status != Status::Open) return status;
  const Lookup found = resolving.Result();
  return found.error.empty() ? Connect(found.addresses, end, signals) : Fail(found.error);
}

ssize_t ElementConnection::Send(std::string_view bytes) {
  return ::send(m_stream.get_handle(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
}

ssize_t ElementConnection::Receive(char* buffer, size_t size) {
  return ::recv(m_stream.get_handle(), buffer, size, 0);
}

Status ElementConnection::Fail(const std::string& error) {
  m_error = error;
  return Status::Failed;
}

// The time is divided among the addresses: one that does not answer leaves time for the others.
Status ElementConnection::Connect(const std::vector<ACE_INET_Addr>& addresses, MonotonicTime end,
                                  const Signals& signals) {
  Status status = Status::Failed;
  for (size_t i = 0; i < addresses.size(); ++i) {
    const MonotonicTime now = std::chrono::steady_clock::now();
    status = ConnectTo(addresses[i], now + (end - now) / static_cast<int>(addresses.size() - i), signals);
    if (status == Status::Open || status == Status::Interrupted) break;
    Close();
  }
  return status;
}

Status ElementConnection::ConnectTo(const ACE_INET_Addr& address, MonotonicTime end, const Signals& signals) {
  ACE_SOCK_Connector connector;
  if (connector.connect(m_stream, address, &ACE_Time_Value::zero) != 0) {
    if (errno != EWOULDBLOCK) return Fail(std::strerror(errno));
    const Status status = WaitFor(m_stream.get_handle(), POLLOUT, end, signals);
    if (status != Status::Open) return status;
  }
  return FinishConnecting();
}

Status ElementConnection::FinishConnecting() {
  int error = 0, on = 1;
  int size = sizeof error;
  if (m_stream.get_option(SOL_SOCKET, SO_ERROR, &error, &size) != 0) error = errno;
  if (error != 0) return Fail(std::strerror(error));
  m_stream.set_option(SOL_SOCKET, SO_KEEPALIVE, &on, sizeof on);
  m_stream.set_option(IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
  return m_stream.enable(ACE_NONBLOCK) == 0 ? Status::Open : Fail(std::strerror(errno));
}
