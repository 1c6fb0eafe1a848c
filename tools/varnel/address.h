#ifndef VARNEL_TOOLS_ADDRESS_H
#define VARNEL_TOOLS_ADDRESS_H

#include <ace/INET_Addr.h>

#include <optional>
#include <string>
#include <vector>

/// The parts of HOST:PORT, without the brackets of an IPv6 address.
struct Address {
  std::string host;
  std::string port;
};

/// Reads HOST:PORT. An IPv6 address is written in brackets; PORT is a number or the name of a service.
std::optional<Address> ParseAddress(const std::string& text);

/// Returns why a text is not HOST:PORT; empty if it is.
std::string CheckAddress(const std::string& text);

struct Lookup {
  std::string error;  ///< empty if there are addresses
  std::vector<ACE_INET_Addr> addresses;
};

/// Calls the resolver, without a time limit. Any thread may call it.
Lookup LookUp(const Address& address);

#endif
