#include <ace/INET_Addr.h>
#include <ace/SOCK_Connector.h>
#include <ace/SOCK_Stream.h>
#include <netdb.h>

#include <cerrno>
#include <charconv>
#include <cstring>
#include <future>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include "timed_source.h"

namespace {

struct Address {
  std::string host;
  std::string port;
};

// Reads HOST:PORT, where an IPv6 address stands in brackets.
std::optional<Address> ParseAddress(const std::string& text) {
  const size_t colon = text.rfind(':');
  if (colon == std::string::npos) return std::nullopt;
  Address address{text.substr(0, colon), text.substr(colon + 1)};
  if (address.host.size() > 2 && address.host.front() == '[' && address.host.back() == ']') {
    address.host = address.host.substr(1, address.host.size() - 2);
  } else if (address.host.empty() || address.host.find_first_of(":[]") != std::string::npos) {
    return std::nullopt;
  }
  unsigned short port = 0;
  const char* const end = address.port.data() + address.port.size();
  const auto [stop, error] = std::from_chars(address.port.data(), end, port);
  if (error != std::errc() || stop != end || port == 0) return std::nullopt;
  return address;
}

struct Lookup {
  std::string error;  // empty when there are addresses
  std::vector<ACE_INET_Addr> addresses;
};

Lookup LookUp(const Address& address) {
  addrinfo hints = {};
  hints.ai_socktype = SOCK_STREAM;
  hints.ai_flags = AI_NUMERICSERV;
  addrinfo* found = nullptr;
  Lookup result;
  const int error = getaddrinfo(address.host.c_str(), address.port.c_str(), &hints, &found);
  if (error != 0) {
    result.error = error == EAI_SYSTEM ? std::strerror(errno) : gai_strerror(error);
    return result;
  }
  const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> list(found, &freeaddrinfo);
  for (const addrinfo* item = found; item != nullptr; item = item->ai_next) {
    const auto* bytes = static_cast<const void*>(item->ai_addr);
    result.addresses.emplace_back(static_cast<const sockaddr_in*>(bytes), static_cast<int>(item->ai_addrlen));
  }
  return result;
}

class ConnectionSource final : public TimedSource {
 public:
  ConnectionSource(const SourceOptions& options, Address address, Limit limit, Milliseconds tick)
      : TimedSource(options, limit, tick), m_address(std::move(address)) {}

  ~ConnectionSource() override { m_stream.close(); }

 private:
  Status Open() override {
    // In a thread of its own, since a look-up knows no time limit. One that is late ends with the process.
    const Address address = m_address;
    std::packaged_task<Lookup()> lookUp([address] { return LookUp(address); });
    std::future<Lookup> result = lookUp.get_future();
    std::thread(std::move(lookUp)).detach();
    while (result.wait_for(m_deadline.Left(LONGEST_WAIT)) != std::future_status::ready) {
      if (m_deadline.Passed()) return TimeOut("no address within ");
    }
    const Lookup found = result.get();
    return found.error.empty() ? Connect(found.addresses) : Fail(found.error);
  }

  Status Connect(const std::vector<ACE_INET_Addr>& addresses) {
    for (const ACE_INET_Addr& address : addresses) {
      while (!ConnectTo(address)) {
        if (m_deadline.Passed()) return TimeOut("no connection within ");
        if (errno != EINTR) break;
      }
      if (m_stream.get_handle() != ACE_INVALID_HANDLE) return Status::Data;
    }
    return FailWithErrno();
  }

  bool ConnectTo(const ACE_INET_Addr& address) {
    const Milliseconds left = m_deadline.Left(Milliseconds::max());
    const ACE_Time_Value limit(left.count() / 1000, static_cast<suseconds_t>(left.count() % 1000 * 1000));
    ACE_SOCK_Connector connector;
    return connector.connect(m_stream, address, m_deadline.Exists() ? &limit : nullptr) == 0;
  }

  bool Await(Milliseconds most) override { return WaitReadable(m_stream.get_handle(), most); }
  ssize_t Receive(char* buffer, size_t size) override { return m_stream.recv(buffer, size); }

  Address m_address;
  ACE_SOCK_Stream m_stream;
};

}  // namespace

std::string CheckAddress(const std::string& text) {
  return ParseAddress(text) ? "" : "is not HOST:PORT, with an IPv6 address in brackets";
}

std::unique_ptr<ByteSource> MakeConnectionSource(const SourceOptions& options, Limit limit, Milliseconds tick) {
  const std::optional<Address> address = ParseAddress(options.address);
  if (!address) throw CLI::ValidationError("--connect", CheckAddress(options.address));
  return std::make_unique<ConnectionSource>(options, *address, limit, tick);
}
