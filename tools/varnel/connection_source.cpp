#include <ace/SOCK_Connector.h>
#include <ace/SOCK_Stream.h>

#include <cerrno>
#include <future>
#include <thread>
#include <utility>

#include "address.h"
#include "timed_source.h"

namespace {

constexpr auto LONGEST_CONNECT = Milliseconds(std::chrono::hours(24 * 366));  // longer than any limit

class ConnectionSource final : public TimedSource {
 public:
  ConnectionSource(Address address, TimeLimits& limits, Milliseconds tick)
      : TimedSource(limits, tick), m_address(std::move(address)) {}

  ~ConnectionSource() override { m_stream.close(); }

 private:
  Status Open() override {
    // In a separate thread, since a look-up has no time limit. A late one ends with the process.
    const Address address = m_address;
    std::packaged_task<Lookup()> lookUp([address] { return LookUp(address); });
    std::future<Lookup> result = lookUp.get_future();
    std::thread(std::move(lookUp)).detach();
    while (result.wait_for(Left(LONGEST_WAIT)) != std::future_status::ready) {
      if (HasPassed()) return FailInTime("no address within ");
    }
    const Lookup found = result.get();
    return found.error.empty() ? Connect(found.addresses) : Fail(found.error);
  }

  Status Connect(const std::vector<ACE_INET_Addr>& addresses) {
    for (const ACE_INET_Addr& address : addresses) {
      while (!ConnectTo(address)) {
        if (HasPassed()) return FailInTime("no connection within ");
        if (errno != EINTR) break;
      }
      if (m_stream.get_handle() != ACE_INVALID_HANDLE) return KeepAlive();
    }
    return FailWithErrno();
  }

  bool ConnectTo(const ACE_INET_Addr& address) {
    const Milliseconds left = Left(LONGEST_CONNECT);
    const ACE_Time_Value limit(left);
    ACE_SOCK_Connector connector;
    return connector.connect(m_stream, address, left < LONGEST_CONNECT ? &limit : nullptr) == 0;
  }

  // Detects, with a delay, that the other side disappeared without closing the connection.
  Status KeepAlive() {
    int on = 1;
    m_stream.set_option(SOL_SOCKET, SO_KEEPALIVE, &on, sizeof on);
    return Status::Data;
  }

  bool Await(Milliseconds most) override { return WaitReadable(m_stream.get_handle(), most); }
  ssize_t Receive(char* buffer, size_t size) override { return m_stream.recv(buffer, size); }

  Address m_address;
  ACE_SOCK_Stream m_stream;
};

}  // namespace

std::unique_ptr<ByteSource> MakeConnectionSource(const std::string& address, TimeLimits& limits, Milliseconds tick) {
  return std::make_unique<ConnectionSource>(ParseAddress(address).value(), limits, tick);
}
