#include "byte_source.h"

#include <ace/INET_Addr.h>
#include <ace/SOCK_Connector.h>
#include <ace/SOCK_Stream.h>
#include <fcntl.h>
#include <netdb.h>
#include <poll.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <cstring>
#include <future>
#include <optional>
#include <sstream>
#include <thread>
#include <utility>
#include <vector>

#include "deadline.h"

namespace {

using Milliseconds = std::chrono::milliseconds;

constexpr size_t CHUNK_SIZE = 65536;
constexpr double MAX_TIMEOUT = 31536000;            // a year of seconds
constexpr auto LONGEST_WAIT = Milliseconds(60000);  // then it is waited again
constexpr auto RECHECK_INTERVAL = Milliseconds(1000);

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

// A descriptor that is closed with its owner.
class Descriptor {
 public:
  explicit Descriptor(int number = -1) : m_number(number) {}
  ~Descriptor() { Reset(-1); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  void Reset(int number) {
    if (m_number >= 0) close(m_number);
    m_number = number;
  }
  int Get() const { return m_number; }

 private:
  int m_number;
};

// False when nothing came in time or a signal came first. A descriptor in error is ready: reading it tells the error.
bool WaitReadable(int descriptor, Milliseconds most) {
  pollfd waiting = {descriptor, POLLIN, 0};
  const int count = poll(&waiting, 1, static_cast<int>(most.count()));
  return count > 0 || (count < 0 && errno != EINTR);
}

std::string InSeconds(double seconds) {
  std::ostringstream text;
  text << seconds << (seconds == 1 ? " second" : " seconds");
  return text.str();
}

// What all sources share: the order of opening, waiting and reading, and the time limit on them.
class TimedSource : public ByteSource {
 public:
  TimedSource(const SourceOptions& options, Limit limit, Milliseconds tick)
      : m_deadline(std::chrono::ceil<Milliseconds>(std::chrono::duration<double>(options.timeout))),
        m_limit(limit),
        m_seconds(options.timeout),
        m_tick(tick) {}

  Status Read(std::string& bytes) final {
    bytes.clear();
    if (!m_open) {
      const Status status = Open();
      if (status != Status::Data) return status;
      m_open = m_restart = true;
    }
    if (m_restart && m_limit == Limit::Silence) m_deadline.Restart();
    m_restart = false;
    return ReadOpen(bytes);
  }

 protected:
  // Data, or what Read() is to return. The deadline must be kept here.
  virtual Status Open() = 0;
  // Waits until there is something to receive, for `most` at most; false when it cannot tell that there is.
  virtual bool Await(Milliseconds most) = 0;
  // As read(); EAGAIN says that nothing is there yet.
  virtual ssize_t Receive(char* buffer, size_t size) = 0;

  Status Fail(const std::string& error) {
    m_error = error;
    return Status::Failed;
  }
  Status FailWithErrno() { return Fail(std::strerror(errno)); }
  Status TimeOut(const std::string& error) {
    m_error = error + InSeconds(m_seconds);
    return Status::TimedOut;
  }

  Deadline m_deadline;

 private:
  Status ReadOpen(std::string& bytes) {
    const Deadline tick(m_tick);
    for (;;) {
      if (m_limit == Limit::WholeRun && m_deadline.Passed()) return TimeOut("the time is over after ");
      if (Await(m_deadline.Left(tick.Left(LONGEST_WAIT)))) {
        bytes.resize(CHUNK_SIZE);
        const ssize_t count = Receive(bytes.data(), bytes.size());
        bytes.resize(count > 0 ? static_cast<size_t>(count) : 0);
        m_restart = count > 0;
        if (count >= 0) return count > 0 ? Status::Data : Status::End;
        if (errno != EAGAIN && errno != EINTR) return FailWithErrno();
      }
      if (m_limit == Limit::Silence && m_deadline.Passed()) return TimeOut("nothing came for ");
      if (tick.Passed()) return Status::Data;
    }
  }

  Limit m_limit;
  double m_seconds;
  Milliseconds m_tick;
  bool m_open = false;
  bool m_restart = false;
};

// Standard input, a file, a pipe or a terminal line, up to its end.
class FileSource : public TimedSource {
 public:
  FileSource(const SourceOptions& options, Limit limit, Milliseconds tick)
      : TimedSource(options, limit, tick), m_path(options.file) {}

 protected:
  Status Open() override {
    if (m_path == "-") return Status::Data;
    // Not blocking, since opening a pipe that nobody writes to would wait without limit.
    m_file.Reset(open(m_path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (m_file.Get() < 0 || fstat(m_file.Get(), &m_status) != 0) return FailWithErrno();
    return S_ISDIR(m_status.st_mode) ? Fail("is a folder") : Status::Data;
  }

  bool Await(Milliseconds most) override { return WaitReadable(Number(), most); }
  ssize_t Receive(char* buffer, size_t size) override { return read(Number(), buffer, size); }

  int Number() const { return m_file.Get() < 0 ? STDIN_FILENO : m_file.Get(); }

  std::string m_path;
  Descriptor m_file;
  struct ::stat m_status = {};
};

// A regular file that others write to. One that has become shorter is read from its beginning.
class GrowingFileSource final : public FileSource {
 public:
  using FileSource::FileSource;

 private:
  Status Open() override {
    const Status status = FileSource::Open();
    if (status != Status::Data) return status;
    if (!S_ISREG(m_status.st_mode)) return Fail("--follow reads regular files only");
    m_notices.Reset(inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    if (m_notices.Get() >= 0) inotify_add_watch(m_notices.Get(), m_path.c_str(), IN_MODIFY);
    return Status::Data;
  }

  // Looks at the file now and then even without a notice, as some file systems give none.
  bool Await(Milliseconds most) override {
    if (fstat(Number(), &m_status) == 0 && m_status.st_size != m_position) return true;
    if (WaitReadable(m_notices.Get(), std::min(most, RECHECK_INTERVAL))) DropNotices();
    return true;
  }

  ssize_t Receive(char* buffer, size_t size) override {
    if (m_status.st_size < m_position) m_position = 0;
    const ssize_t count = pread(Number(), buffer, size, m_position);
    if (count > 0) m_position += count;
    if (count == 0) errno = EAGAIN;
    return count == 0 ? -1 : count;
  }

  void DropNotices() const {
    char notices[4096];
    while (read(m_notices.Get(), notices, sizeof notices) > 0) {
    }
  }

  Descriptor m_notices;
  off_t m_position = 0;
};

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

std::string CheckAddress(const std::string& text) {
  return ParseAddress(text) ? "" : "is not HOST:PORT, with an IPv6 address in brackets";
}

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
  if (options.follow) return std::make_unique<GrowingFileSource>(options, limit, tick);
  if (options.address.empty()) return std::make_unique<FileSource>(options, limit, tick);
  const std::optional<Address> address = ParseAddress(options.address);
  if (!address) throw CLI::ValidationError("--connect", CheckAddress(options.address));
  return std::make_unique<ConnectionSource>(options, *address, limit, tick);
}
