#include "byte_source.h"

#include <charconv>

#include "connection_source.h"
#include "file_source.h"

namespace {

constexpr double MAX_TIMEOUT = 31536000;  // a year of seconds

std::string CheckTimeout(const std::string& text) {
  double seconds = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, seconds);
  const bool valid = error == std::errc() && stop == end && seconds > 0 && seconds <= MAX_TIMEOUT;
  return valid ? "" : "is not a number of seconds above 0 and up to a year";
}

}  // namespace

void AddSourceOptions(CLI::App& command, SourceOptions& options, const std::string& timeoutHelp) {
  CLI::Option* file = command.add_option("FILE", options.file, "File to read; - is standard input");
  file->capture_default_str();
  CLI::Option* connect = command.add_option("--connect", options.address,
                                            "Read from a TCP connection; an IPv6 address stands in brackets");
  connect->type_name("HOST:PORT")->check(CheckAddress)->excludes(file);
  command.add_flag("--follow", options.follow, "Go on reading as FILE grows")->excludes(connect);
  command.add_option("--timeout", options.timeout, timeoutHelp + ", up to a year")
      ->type_name("SECONDS")
      ->check(CheckTimeout)
      ->default_str("no limit");
}

std::unique_ptr<ByteSource> MakeByteSource(const SourceOptions& options, Limit limit, Milliseconds tick) {
  if (options.follow && options.file == "-") throw CLI::ValidationError("--follow", "goes with a FILE only");
  if (options.address.empty()) return MakeFileSource(options, limit, tick);
  return MakeConnectionSource(options, limit, tick);
}
