#ifndef VARNEL_TOOLS_CONNECTION_SOURCE_H
#define VARNEL_TOOLS_CONNECTION_SOURCE_H

#include <memory>
#include <string>

#include "timed_source.h"

/// What is wrong with a text that is to be HOST:PORT; empty for one that is fine. An IPv6 address stands in brackets.
std::string CheckAddress(const std::string& text);

/// A TCP connection to options.address.
///
/// @throw CLI::ValidationError  for an address that CheckAddress() refuses
std::unique_ptr<ByteSource> MakeConnectionSource(const SourceOptions& options, Limit limit, Milliseconds tick);

#endif
