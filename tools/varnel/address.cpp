#include "address.h"

#include <netdb.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <memory>

#include "arguments.h"

namespace {

// A number from 1 to 65535, or a text that may be the name of a service.
bool IsPort(const std::string& text) {
  unsigned short port = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, port);
  if (stop == end) return error == std::errc() && port != 0;
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == '_';
  });
}

}  // namespace

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

std::string CheckAddress(const std::string& text) {
  return ParseAddress(text) ? "" : IsNot(text, "HOST:PORT, with an IPv6 address in brackets");
}

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
