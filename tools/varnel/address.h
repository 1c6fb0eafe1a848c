#ifndef VARNEL_TOOLS_ADDRESS_H
#define VARNEL_TOOLS_ADDRESS_H

#include <ace/INET_Addr.h>

#include <optional>
#include <string>
#include <vector>

/// HOST:PORT taken apart, without the brackets of an IPv6 address.
struct Address {
  std::string host;
  std::string port;
};

/// Reads HOST:PORT. An IPv6 address is written in brackets; PORT is a number or the name of a service.
std::optional<Address> ParseAddress(const std::string& text);

/// What is wrong with a text that must be HOST:PORT, or nothing.
std::string CheckAddress(const std::string& text);

struct Lookup {
  std::string error;  ///< empty if there are addresses
  std::vector<ACE_INET_Addr> addresses;
};

/// Asks the resolver, for as long as that takes. Any thread may call it.
Lookup LookUp(const Address& address);

#endif
