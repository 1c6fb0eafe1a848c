#include <ace/INET_Addr.h>
#include <ace/SOCK_Connector.h>
#include <ace/SOCK_Stream.h>
#include <netdb.h>

#include <algorithm>
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

constexpr auto LONGEST_CONNECT = Milliseconds(std::chrono::hours(24 * 366));  // more than a limit can be

struct Address {
  std::string host;
  std::string port;
};

// A number from 1 to 65535, or what may be the name of a service.
bool IsPort(const std::string& text) {
  unsigned short port = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, port);
  if (stop == end) return error == std::errc() && port != 0;
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == '_';
  });
}

// Reads HOST:PORT, with an IPv6 address in brackets.
std::optional<Address> ParseAddress(const std::string& text) {
  const size_t colon = text.rfind(':');
  if (colon == std::string::npos) return std::nullopt;
  Address address{text.substr(0, colon), text.substr(colon + 1)};
  if (address.host.size() > 2 && address.host.front() == '[' && address.host.back() == ']') {
    address.host = address.host.substr(1, address.host.size() - 2);
  } else if (address.host.empty() || address.host.find_first_of(":[]") != std::string::npos) {
    return std::nullopt;
  }
  if (!IsPort(address.port)) return std::nullopt;
  return address;
}

struct Lookup {
  std::string error;  // empty when there are addresses
  std::vector<ACE_INET_Addr> addresses;
};

Lookup LookUp(const Address& address) {
  addrinfo hints = {};
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* found = nullptr;
  Lookup result;
  const int error = getaddrinfo(address.host.c_str(), address.port.c_str(), &hints, &found);
  if (error != 0) {
    result.error = error == EAI_SYSTEM    ? std::strerror(errno)
                   : error == EAI_SERVICE ? "the service \"" + address.port + "\" is not known"
                                          : gai_strerror(error);
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
  ConnectionSource(Address address, TimeLimits& limits, Milliseconds tick)
      : TimedSource(limits, tick), m_address(std::move(address)) {}

  ~ConnectionSource() override { m_stream.close(); }

 private:
  Status Open() override {
    // In a thread of its own, since a look-up knows no time limit. One that is late ends with the process.
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
    const ACE_Time_Value limit(left.count() / 1000, static_cast<suseconds_t>(left.count() % 1000 * 1000));
    ACE_SOCK_Connector connector;
    return connector.connect(m_stream, address, left < LONGEST_CONNECT ? &limit : nullptr) == 0;
  }

  // Notices, if late, that the other side has gone away without a word.
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

std::string CheckAddress(const std::string& text) {
  return ParseAddress(text) ? "" : "is not HOST:PORT, with an IPv6 address in brackets";
}

std::unique_ptr<ByteSource> MakeConnectionSource(const std::string& address, TimeLimits& limits, Milliseconds tick) {
  return std::make_unique<ConnectionSource>(ParseAddress(address).value(), limits, tick);
}
